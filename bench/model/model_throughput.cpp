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
#include "client/client_error.h"
#include "client/core_records.h"
#include "client/server_process.h"
#include "odb/odb.h"
#include "platform/platform.h"

namespace {

using odbs::bench::median;

using odbs::client::Clock;
using odbs::client::ServerProcess;

constexpr int kTimeoutMs = 600000;

struct Args {
  std::string server;
  int runs = 7;
  int n = 50;
  int sets = 10000;
};

struct ReplySize {
  uint64_t bytes = 0;    // every frame, the end record's included
  uint64_t records = 0;  // records before the end record
};

struct Figure {
  double mbPerSec = 0;
  double recordsPerSec = 0;
};

double timeReply(ServerProcess& server, const std::string& line, uint64_t bytes) {
  auto start = Clock::now();
  server.send(line);
  server.reader().skipBytes(bytes - 3, odbs::client::deadlineIn(kTimeoutMs));
  odbs::client::decodeEnd(server.readRecord(kTimeoutMs));
  return std::chrono::duration<double>(Clock::now() - start).count();
}

Figure measure(ServerProcess& server, const std::string& line, const ReplySize& size, int runs) {
  std::vector<double> mb, rec;
  for (int i = 0; i < runs; ++i) {
    double s = std::max(timeReply(server, line, size.bytes), 1e-9);
    mb.push_back(size.bytes / s / 1e6);
    rec.push_back(size.records / s);
  }
  return {median(mb), median(rec)};
}

// Times the reply to line and m with the same number of records of the same mean size.
void compare(ServerProcess& server, const char* what, const std::string& line, int runs) {
  ReplySize size;
  server.send(line);
  server.readReplyEach(
      {},
      [&](const odbs::client::RecordView& rec) {
        size.bytes += 2 + rec.count();
        ++size.records;
      },
      kTimeoutMs);
  --size.records;  // the end record
  Figure f = measure(server, line, size, runs);

  double meanFrame = double(size.bytes - 3) / double(std::max<uint64_t>(1, size.records));
  int n = std::max(1, int((meanFrame - 7) / 4 + 0.5));
  ReplySize testSize{uint64_t(4 * n + 7) * size.records + 3, size.records};
  std::string testLine = "m " + std::to_string(size.records) + " " + std::to_string(n);
  timeReply(server, testLine, testSize.bytes);
  Figure m = measure(server, testLine, testSize, runs);

  std::printf("%s\n", what);
  std::printf("  reply          %10.1f MB, %llu records, %.1f bytes per frame\n", size.bytes / 1e6,
              static_cast<unsigned long long>(size.records), meanFrame);
  std::printf("  reply          %10.0f MB/s   %8.2f million records/s\n", f.mbPerSec,
              f.recordsPerSec / 1e6);
  std::printf("  m %llu %d     %10.0f MB/s   %8.2f million records/s\n",
              static_cast<unsigned long long>(size.records), n, m.mbPerSec, m.recordsPerSec / 1e6);
  std::printf("  reply / m      %10.2f\n", f.mbPerSec / std::max(m.mbPerSec, 1e-9));
  std::fflush(stdout);
}

Args parseArgs(int argc, char** argv) {
  Args a;
  a.server = odbs::bench::serverBeside(argv[0]);
  odbs::bench::parseBenchArgs(
      argc, argv,
      {odbs::bench::serverOption(a.server),
       odbs::bench::runsOption(a.runs),
       {"--n", true, [&](const char* v) { a.n = std::max(1, std::atoi(v)); }},
       {"--full", false, [&](const char*) { a.n = 100; }},
       {"--sets", true, [&](const char* v) { a.sets = std::max(2, std::atoi(v)); }}},
      "usage: model_throughput [--server PATH] [--runs N] [--n N | --full] [--sets K]");
  return a;
}

}  // namespace

int main(int argc, char** argv) {
  Args args = parseArgs(argc, argv);
  const char* tmp = std::getenv("TMPDIR");
  std::string base = std::string(tmp ? tmp : "/tmp") + "/model_throughput_" +
                     std::to_string(odbs::platform::processId());
  std::string hexPath = base + "_hex.odb", setPath = base + "_sets.odb";
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
    compare(server, what.c_str(), "g " + hexPath, args.runs);
    what = "S on " + std::to_string(args.sets) + " sets";
    compare(server, what.c_str(), "S 0 0 " + setPath, args.runs);
  } catch (const std::exception& e) {
    std::fprintf(stderr, "model_throughput: %s\n", e.what());
    code = 1;
  }
  odbs::platform::removeFile(hexPath);
  odbs::platform::removeFile(setPath);
  return code;
}
