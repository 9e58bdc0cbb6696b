// pipe_throughput: how fast the server's output reaches a parent through the reply pipe.
//
//   pipe_throughput [--server PATH] [--runs N] [--scale F]
//
// Starts odb_server (default: beside this program) through the client library and times,
// from sending the line to receiving the end record:
//   M count 40950   raw writes of the pending buffer, no framing;
//   m count n       framed test records gathered in the pending buffer, n = 1 (8-byte
//                   bodies) and n = 24 (100-byte bodies).
// The reader only counts bytes: it skips the expected number and checks that the end
// record follows. Prints the median of the runs in MB/s (10^6 bytes) and, for m, records/s.
// Every later throughput figure of the server is quoted as a ratio to these.
#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <string>
#include <vector>

#include "bench/bench_args.h"
#include "bench/bench_util.h"
#include "bench/reply_timing.h"
#include "client/client_error.h"
#include "client/server_process.h"

namespace {

using odbs::bench::Figure;
using odbs::bench::measureWarm;
using odbs::bench::ReplySize;
using odbs::client::ServerProcess;

constexpr int kTimeoutMs = 120000;

struct Args {
  std::string server;
  int runs = 7;
  double scale = 1.0;
};

Args parseArgs(int argc, char** argv) {
  Args a;
  odbs::bench::parseServerBenchArgs(
      argc, argv, a.server, a.runs,
      {{"--scale", true, [&](const char* v) { a.scale = std::max(0.001, std::atof(v)); }}},
      "usage: pipe_throughput [--server PATH] [--runs N] [--scale F]");
  return a;
}

}  // namespace

int main(int argc, char** argv) {
  Args args = parseArgs(argc, argv);
  try {
    ServerProcess server({args.server, 0, kTimeoutMs});

    const int blockSize = 40950;
    const int blocks = std::max(1, static_cast<int>(2000 * args.scale));
    uint64_t rawBytes = uint64_t(blocks) * blockSize;
    Figure raw =
        measureWarm(server, "M " + std::to_string(blocks) + " " + std::to_string(blockSize),
                    {rawBytes + 3, 0}, args.runs, kTimeoutMs);

    std::printf("reply pipe throughput, median of %d runs\n", args.runs);
    std::printf("  M  raw writes of %d bytes   %10.0f MB/s   (%llu bytes per run)\n", blockSize,
                raw.mbPerSec, static_cast<unsigned long long>(rawBytes));
    for (int n : {1, 24}) {
      int bodyBytes = 4 + 4 * n;
      int count = std::max(1, static_cast<int>((n == 1 ? 5000000 : 1000000) * args.scale));
      uint64_t bytes = uint64_t(4 * n + 7) * count;  // count, type, sequence, integers
      Figure f = measureWarm(server, "m " + std::to_string(count) + " " + std::to_string(n),
                             {bytes + 3, uint64_t(count)}, args.runs, kTimeoutMs);
      std::printf("  m  framed, %3d-byte bodies  %10.0f MB/s   %8.2f million records/s\n",
                  bodyBytes, f.mbPerSec, f.recordsPerSec / 1e6);
    }
  } catch (const odbs::client::ClientError& e) {
    std::fprintf(stderr, "pipe_throughput: %s\n", e.what());
    return 1;
  }
  return 0;
}
