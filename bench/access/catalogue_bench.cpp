// catalogue_bench: command f on a database with many steps and frames, walked once and then
// replayed from the catalogue cache file.
//
//   catalogue_bench [--server PATH] [--steps N] [--frames N] [--runs N] [--dir DIR] [--keep]
//
// Writes a database of N steps with N frames each (defaults 100 x 1000) without field
// output (with --keep, a database of that shape left in DIR by an earlier run is reused and
// kept), starts odb_server through the client library, and times from sending the line to
// receiving the end record, the reply's bytes counted but not decoded:
//   open      o path          the catalogue-only open of the database;
//   plain     fd path         the walk without T: no cache file (on a fresh server);
//   walk      T base, fd path every frame read through the database library, the reply
//                             sent and the cache file written;
//   replay    T base, fd path the same reply replayed from the cache file.
// Prints medians over the runs (the walk runs on a fresh server, with the cache removed).
#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <string>
#include <vector>

#include "bench/bench_args.h"
#include "bench/bench_util.h"
#include "bench/reply_timing.h"
#include "client/server_process.h"
#include "odb/writer.h"
#include "platform/platform.h"

namespace {

using odbs::bench::Clock;
using odbs::bench::median;
using odbs::bench::ReplySize;
using odbs::bench::since;
using odbs::client::ServerProcess;

constexpr int kTimeoutMs = 600000;

struct Args {
  std::string server, dir = "/tmp";
  int steps = 100, frames = 1000, runs = 5;
  bool keep = false;
};

Args parse(int argc, char** argv) {
  Args a;
  odbs::bench::parseServerBenchArgs(
      argc, argv, a.server, a.runs,
      {{"--steps", true, [&](const char* v) { a.steps = std::atoi(v); }},
       {"--frames", true, [&](const char* v) { a.frames = std::atoi(v); }},
       {"--dir", true, [&](const char* v) { a.dir = v; }},
       {"--keep", false, [&](const char*) { a.keep = true; }}},
      "usage: catalogue_bench [--server PATH] [--steps N] [--frames N] [--runs N] [--dir D] "
      "[--keep]");
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

double timed(ServerProcess& server, const std::string& line, const ReplySize& size) {
  return odbs::bench::timeReply(server, line, size.bytes, kTimeoutMs);
}

}  // namespace

int main(int argc, char** argv) {
  Args a = parse(argc, argv);
  std::string shape = std::to_string(a.steps) + "x" + std::to_string(a.frames);
  std::string db = a.dir + "/catalogue_bench_" + shape + ".odb";
  std::string base = odbs::bench::tempPath("catalogue_bench", ".cache");
  odbs::platform::FileStat st;
  if (!a.keep || !odbs::platform::statFile(db, &st)) {
    auto t0 = Clock::now();
    writeDatabase(db, a.steps, a.frames);
    std::printf("database written in %.2f s\n", since(t0));
  }
  odbs::platform::statFile(db, &st);
  std::printf("database: %d steps x %d frames, %.1f MB\n", a.steps, a.frames, st.size / 1e6);

  std::vector<double> open, plain, walk, replay;
  ReplySize size;
  try {
    {
      ServerProcess first({a.server, 0, kTimeoutMs});
      size = odbs::bench::replySize(first, "fd " + db, kTimeoutMs);
    }
    for (int run = 0; run < a.runs; ++run) {
      odbs::platform::removeFile(base);
      {
        ServerProcess fresh({a.server, 0, kTimeoutMs});
        fresh.request("o " + db);
        plain.push_back(timed(fresh, "fd " + db, size));
      }
      ServerProcess server({a.server, 0, kTimeoutMs});
      auto t = Clock::now();
      server.request("o " + db, kTimeoutMs);
      open.push_back(since(t));
      server.request("T " + base);
      walk.push_back(timed(server, "fd " + db, size));
      server.request("T " + base);
      replay.push_back(timed(server, "fd " + db, size));
    }
  } catch (const std::exception& e) {
    std::fprintf(stderr, "catalogue_bench: %s\n", e.what());
  }
  odbs::platform::statFile(base, &st);
  std::printf("reply: %llu records, %.1f MB; cache file %.1f MB\n",
              static_cast<unsigned long long>(size.records), size.bytes / 1e6, st.size / 1e6);
  std::printf("open    %8.1f ms\n", 1e3 * median(open));
  std::printf("plain   %8.1f ms  (f without T: frames read, reply sent, no cache)\n",
              1e3 * median(plain));
  std::printf("walk    %8.1f ms  (first f: frames read, reply sent, cache written)  %.2f x plain\n",
              1e3 * median(walk), median(walk) / std::max(median(plain), 1e-9));
  std::printf("replay  %8.1f ms  (later f: reply replayed from the cache file)     %.2f x plain\n",
              1e3 * median(replay), median(replay) / std::max(median(plain), 1e-9));
  odbs::platform::removeFile(base);
  if (!a.keep) odbs::platform::removeFile(db);
  return 0;
}
