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
#include "client/client_error.h"
#include "client/core_records.h"
#include "client/server_process.h"

namespace {

using odbs::bench::median;

using odbs::client::Clock;
using odbs::client::ServerProcess;

struct Args {
  std::string server;
  int runs = 7;
  double scale = 1.0;
};

// Sends line, skips `bytes` reply bytes, reads the end record; returns the seconds taken.
double timeReply(ServerProcess& server, const std::string& line, uint64_t bytes) {
  auto start = Clock::now();
  server.send(line);
  server.reader().skipBytes(bytes, odbs::client::deadlineIn(120000));
  odbs::client::decodeEnd(server.readRecord(120000));
  return std::chrono::duration<double>(Clock::now() - start).count();
}

struct Figure {
  double mbPerSec;
  double recordsPerSec;
};

// One test line run `runs` times after a warm-up; bytes and records per run.
Figure measure(ServerProcess& server, const std::string& line, uint64_t bytes, uint64_t records,
               int runs) {
  timeReply(server, line, bytes);
  std::vector<double> mb, rec;
  for (int i = 0; i < runs; ++i) {
    double s = std::max(timeReply(server, line, bytes), 1e-9);
    mb.push_back(bytes / s / 1e6);
    rec.push_back(records / s);
  }
  return {median(mb), median(rec)};
}

Args parseArgs(int argc, char** argv) {
  Args a;
  a.server = odbs::bench::serverBeside(argv[0]);
  odbs::bench::parseBenchArgs(
      argc, argv,
      {odbs::bench::serverOption(a.server),
       odbs::bench::runsOption(a.runs),
       {"--scale", true, [&](const char* v) { a.scale = std::max(0.001, std::atof(v)); }}},
      "usage: pipe_throughput [--server PATH] [--runs N] [--scale F]");
  return a;
}

}  // namespace

int main(int argc, char** argv) {
  Args args = parseArgs(argc, argv);
  try {
    ServerProcess server({args.server, 0, 120000});

    const int blockSize = 40950;
    const int blocks = std::max(1, static_cast<int>(2000 * args.scale));
    uint64_t rawBytes = uint64_t(blocks) * blockSize;
    Figure raw = measure(server, "M " + std::to_string(blocks) + " " + std::to_string(blockSize),
                         rawBytes, 0, args.runs);

    std::printf("reply pipe throughput, median of %d runs\n", args.runs);
    std::printf("  M  raw writes of %d bytes   %10.0f MB/s   (%llu bytes per run)\n", blockSize,
                raw.mbPerSec, static_cast<unsigned long long>(rawBytes));
    for (int n : {1, 24}) {
      int bodyBytes = 4 + 4 * n;
      int count = std::max(1, static_cast<int>((n == 1 ? 5000000 : 1000000) * args.scale));
      uint64_t bytes = uint64_t(4 * n + 7) * count;  // count, type, sequence, integers
      Figure f = measure(server, "m " + std::to_string(count) + " " + std::to_string(n), bytes,
                         count, args.runs);
      std::printf("  m  framed, %3d-byte bodies  %10.0f MB/s   %8.2f million records/s\n",
                  bodyBytes, f.mbPerSec, f.recordsPerSec / 1e6);
    }
  } catch (const odbs::client::ClientError& e) {
    std::fprintf(stderr, "pipe_throughput: %s\n", e.what());
    return 1;
  }
  return 0;
}
