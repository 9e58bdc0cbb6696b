// catalogue_bench: command f on a database with many steps and frames, walked once and then
// replayed from the catalogue cache file.
//
//   catalogue_bench [--server PATH] [--steps N] [--frames N] [--runs N] [--dir DIR]
//
// Writes a database of N steps with N frames each (defaults 100 x 1000) without field
// output, starts odb_server through the client library, and times from sending the line to
// receiving the end record:
//   open      o path          the catalogue-only open of the database;
//   walk      T base, fd path every frame read through the database library, the reply
//                             sent and the cache file written;
//   replay    T base, fd path the same reply replayed from the cache file.
// Prints medians over the runs (the walk runs on a fresh server, with the cache removed).
#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <string>
#include <vector>

#include "bench/bench_args.h"
#include "bench/bench_util.h"
#include "client/server_process.h"
#include "odb/writer.h"
#include "platform/platform.h"

namespace {

using odbs::bench::median;

using Clock = std::chrono::steady_clock;

struct Args {
  std::string server, dir = "/tmp";
  int steps = 100, frames = 1000, runs = 5;
};

Args parse(int argc, char** argv) {
  Args a;
  a.server = odbs::bench::serverBeside(argv[0]);
  odbs::bench::parseBenchArgs(
      argc, argv,
      {odbs::bench::serverOption(a.server),
       odbs::bench::runsOption(a.runs),
       {"--steps", true, [&](const char* v) { a.steps = std::atoi(v); }},
       {"--frames", true, [&](const char* v) { a.frames = std::atoi(v); }},
       {"--dir", true, [&](const char* v) { a.dir = v; }}},
      "usage: catalogue_bench [--server PATH] [--steps N] [--frames N] [--runs N] [--dir D]");
  return a;
}

void writeDatabase(const std::string& path, int steps, int frames) {
  odb::Writer w(path);
  w.setTitle("catalogue benchmark");
  w.addInstance("PART-1-1").addNodes({1}, {0.f, 0.f, 0.f}, 3);
  for (int s = 0; s < steps; ++s) {
    w.addStep({"Step-" + std::to_string(s + 1), "generated", "*STATIC", odb_Enum::TIME, 1.0 * s});
    for (int f = 0; f < frames; ++f)
      w.addFrame({f, odb_Enum::TIME, 0, 1.0 * f / frames, 0.0, "Increment " + std::to_string(f)});
  }
  w.close();
}

double timed(odbs::client::ServerProcess& server, const std::string& line, size_t* records) {
  auto start = Clock::now();
  odbs::client::Reply r = server.request(line, 600000);
  if (records) *records = r.records.size();
  return std::chrono::duration<double>(Clock::now() - start).count();
}

}  // namespace

int main(int argc, char** argv) {
  Args a = parse(argc, argv);
  std::string db = a.dir + "/catalogue_bench.odb", base = a.dir + "/catalogue_bench.cache";
  auto t0 = Clock::now();
  writeDatabase(db, a.steps, a.frames);
  odbs::platform::FileStat st;
  odbs::platform::statFile(db, &st);
  std::printf("database: %d steps x %d frames, %.1f MB, written in %.2f s\n", a.steps, a.frames,
              st.size / 1e6, std::chrono::duration<double>(Clock::now() - t0).count());

  std::vector<double> open, walk, replay;
  size_t records = 0;
  for (int run = 0; run < a.runs; ++run) {
    odbs::platform::removeFile(base);
    odbs::client::ServerProcess server({a.server, 0, 600000});
    open.push_back(timed(server, "o " + db, nullptr));
    server.request("T " + base);
    walk.push_back(timed(server, "fd " + db, &records));
    server.request("T " + base);
    replay.push_back(timed(server, "fd " + db, nullptr));
  }
  odbs::platform::statFile(base, &st);
  std::printf("reply: %zu records; cache file %.1f MB\n", records, st.size / 1e6);
  std::printf("open    %8.1f ms\n", 1e3 * median(open));
  std::printf("walk    %8.1f ms  (first f: frames read, reply sent, cache written)\n",
              1e3 * median(walk));
  std::printf("replay  %8.1f ms  (later f: reply replayed from the cache file)\n",
              1e3 * median(replay));
  odbs::platform::removeFile(base);
  odbs::platform::removeFile(db);
  return 0;
}
