// model_throughput: how fast the model and set replies reach a parent through the reply
// pipe, against the framed throughput test m of the same run.
//
//   model_throughput [--server PATH] [--runs N] [--n N | --full] [--sets K]
//
// Writes two databases to the temporary folder and removes them at the end:
//   - n x n x n hexahedra ((n+1)^3 nodes; n = 50 by default, 100 with --full, which gives
//     1,000,000 elements and 1,030,301 nodes) for g;
//   - K sets (10,000 by default) of 1 to 61 members for S.
// Starts odb_server (default: beside this program). The first reply of each command opens
// the database, loads its arrays and counts the reply's bytes and records; each timed run
// then sends the line, skips that many bytes and reads the end record, as pipe_throughput
// does for M and m. m runs with as many records as the reply and the same mean record size.
// Prints medians in MB/s (10^6 bytes), records/s and the ratio to m.
#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <string>
#include <vector>

#include "bench/bench_args.h"
#include "bench/bench_util.h"
#include "bench/model/model_generator.h"
#include "bench/reply_timing.h"
#include "client/client_error.h"
#include "client/core_records.h"
#include "client/server_process.h"
#include "odb/odb.h"
#include "platform/platform.h"

namespace {

using odbs::bench::Figure;
using odbs::bench::MatchedTest;
using odbs::bench::matchedTest;
using odbs::bench::measure;
using odbs::bench::measureMatched;
using odbs::bench::printComparison;
using odbs::bench::ReplySize;

using odbs::client::Clock;
using odbs::client::ServerProcess;

constexpr int kTimeoutMs = 600000;

struct Args {
  std::string server;
  int runs = 7;
  int n = 50;
  int sets = 10000;
};

// Times the reply to line and m with the same number of records of the same mean size.
// With largestMb > 0, also the first reply of a fresh server after "o path" (arrays not yet
// loaded) and that server's peak memory against the model's largest array (largestMb).
void compare(ServerProcess& server, const char* what, const std::string& line,
             const std::string& path, int runs, double largestMb) {
  ReplySize size = odbs::bench::replySize(server, line, kTimeoutMs);
  Figure f = measure(server, line, size, runs, kTimeoutMs);
  MatchedTest t = matchedTest(size);
  Figure m = measureMatched(server, t, runs, kTimeoutMs);
  printComparison(what, size, f, t, m);
  if (largestMb <= 0) return;
  std::vector<double> mb;
  double peak = 0;
  for (int i = 0; i < std::max(1, runs / 2); ++i) {
    ServerProcess fresh(server.options());
    fresh.request("o " + path, kTimeoutMs);
    mb.push_back(double(size.bytes) / odbs::bench::timeReply(fresh, line, size.bytes, kTimeoutMs) /
                 1e6);
    peak = std::max(peak, odbs::bench::peakMbOf(fresh.pid()));
  }
  double coldMb = odbs::bench::median(mb);
  std::printf("  first reply    %10.0f MB/s   (fresh server, after o; median of %zu)\n", coldMb,
              mb.size());
  std::printf("  first / m      %10.2f\n", coldMb / std::max(m.mbPerSec, 1e-9));
  std::printf(
      "  server peak    %10.1f MB after the first reply = %.2f x the largest array "
      "(%.1f MB)\n",
      peak, peak / largestMb, largestMb);
  std::fflush(stdout);
}

Args parseArgs(int argc, char** argv) {
  Args a;
  odbs::bench::parseServerBenchArgs(
      argc, argv, a.server, a.runs,
      {odbs::bench::intOption("--n", a.n),
       {"--full", false, [&](const char*) { a.n = 100; }},
       odbs::bench::intOption("--sets", a.sets, 2)},
      "usage: model_throughput [--server PATH] [--runs N] [--n N | --full] [--sets K]");
  return a;
}

}  // namespace

int main(int argc, char** argv) {
  Args args = parseArgs(argc, argv);
  std::string hexPath = odbs::bench::tempPath("model_throughput", "_hex.odb"),
              setPath = odbs::bench::tempPath("model_throughput", "_sets.odb");
  int code = 0;
  try {
    odb_initializeAPI();
    auto t0 = Clock::now();
    odbs::bench::writeHexModel(hexPath, args.n);
    odbs::bench::writeSetModel(setPath, 100000, args.sets);
    std::printf("databases written in %.1f s; medians of %d runs\n",
                std::chrono::duration<double>(Clock::now() - t0).count(), args.runs);

    ServerProcess server({args.server, 0, kTimeoutMs});
    long m = args.n + 1;
    std::string what = "g on " + std::to_string(long(args.n) * args.n * args.n) + " elements, " +
                       std::to_string(m * m * m) + " nodes";
    double connectivityMb = double(args.n) * args.n * args.n * 8 * 4 / 1e6;  // 8 nodes each
    compare(server, what.c_str(), "g " + hexPath, hexPath, args.runs, connectivityMb);
    what = "S on " + std::to_string(args.sets) + " sets";
    compare(server, what.c_str(), "S 0 0 " + setPath, setPath, args.runs, 0);
  } catch (const std::exception& e) {
    std::fprintf(stderr, "model_throughput: %s\n", e.what());
    code = 1;
  }
  odbs::platform::removeFile(hexPath);
  odbs::platform::removeFile(setPath);
  return code;
}
