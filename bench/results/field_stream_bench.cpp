// field_stream_bench: how fast the values of one field output reach a parent (command rs),
// against the framed throughput test m of the same run with records of the same size.
//
//   field_stream_bench [--server PATH] [--runs N] [--elements N]
//
// Writes a database of hexahedra (8 integration points each; 1,250,000 elements by
// default, so that S holds 10,000,000 values of 6 components) to the temporary folder and
// removes it at the end. Starts odb_server (default: beside this program), sends
// "d 1 0 0 S", then times "rs": the first reply counts bytes and records and the time to
// the first value record; each timed run reads the whole reply. m then runs with as many
// records and the same mean record size. Prints medians in MB/s (10^6 bytes), records/s, the
// ratio of rs to m (goal: 0.8 or better), the time from the command to the first value
// record, and the server's peak memory beside the size of the field's arrays (goal: below
// twice that size).
#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <fstream>
#include <string>
#include <vector>

#include "bench/bench_util.h"
#include "bench/gen/generator.h"
#include "client/core_records.h"
#include "client/field_records.h"
#include "client/server_process.h"
#include "odb/odb.h"
#include "platform/platform.h"

namespace {

using odbs::bench::median;
using odbs::bench::since;
using odbs::client::Clock;
using odbs::client::ServerProcess;

constexpr int kTimeoutMs = 600000;

struct Args {
  std::string server;
  int runs = 5;
  int64_t elements = 1250000;
};

struct ReplySize {
  uint64_t bytes = 0;    // every frame, the end record's included
  uint64_t records = 0;  // records before the end record
};

struct Figure {
  double mbPerSec = 0, recordsPerSec = 0;
};

double timeReply(ServerProcess& server, const std::string& line, uint64_t bytes) {
  auto start = Clock::now();
  server.send(line);
  server.reader().skipBytes(bytes - 3, odbs::client::deadlineIn(kTimeoutMs));
  odbs::client::decodeEnd(server.readRecord(kTimeoutMs));
  return since(start);
}

Figure measure(ServerProcess& server, const std::string& line, const ReplySize& size, int runs) {
  std::vector<double> mb, rec;
  for (int i = 0; i < runs; ++i) {
    double s = std::max(timeReply(server, line, size.bytes), 1e-9);
    mb.push_back(double(size.bytes) / s / 1e6);
    rec.push_back(double(size.records) / s);
  }
  return {median(mb), median(rec)};
}

// Peak resident memory of process pid in MB (VmHWM); 0 where it cannot be read.
double peakMbOf(int pid) {
  std::ifstream in("/proc/" + std::to_string(pid) + "/status");
  std::string line;
  while (std::getline(in, line))
    if (line.rfind("VmHWM:", 0) == 0) return std::atof(line.c_str() + 6) / 1024.0;
  return 0;
}

Args parseArgs(int argc, char** argv) {
  Args a;
  a.server = odbs::bench::serverBeside(argv[0]);
  for (int i = 1; i < argc; ++i) {
    auto next = [&]() -> const char* {
      if (i + 1 >= argc) {
        std::fprintf(stderr, "%s needs a value\n", argv[i]);
        std::exit(2);
      }
      return argv[++i];
    };
    if (std::strcmp(argv[i], "--server") == 0) {
      a.server = next();
    } else if (std::strcmp(argv[i], "--runs") == 0) {
      a.runs = std::max(1, std::atoi(next()));
    } else if (std::strcmp(argv[i], "--elements") == 0) {
      a.elements = std::max<int64_t>(1, std::atoll(next()));
    } else {
      std::fprintf(stderr, "usage: field_stream_bench [--server PATH] [--runs N] [--elements N]\n");
      std::exit(2);
    }
  }
  return a;
}

}  // namespace

int main(int argc, char** argv) {
  Args args = parseArgs(argc, argv);
  const char* tmp = std::getenv("TMPDIR");
  std::string path = std::string(tmp ? tmp : "/tmp") + "/field_stream_bench_" +
                     std::to_string(odbs::platform::processId()) + ".odb";
  int code = 0;
  try {
    odb_initializeAPI();
    auto t0 = Clock::now();
    odbgen::Options o;
    o.elements = args.elements;
    o.frames = 1;
    odbgen::Summary summary = odbgen::generate(path, o);
    std::printf("database written in %.1f s: %lld elements; medians of %d runs\n", since(t0),
                static_cast<long long>(summary.elements), args.runs);

    ServerProcess server({args.server, 0, kTimeoutMs});
    server.send("d 1 0 0 S");
    const std::string line = "rs " + path;

    // First reply: opens the database; counts the reply and the time to the first value.
    ReplySize size;
    uint64_t values = 0;
    double firstValue = -1;
    auto start = Clock::now();
    server.send(line);
    server.readReplyEach(
        {},
        [&](const odbs::client::RecordView& rec) {
          size.bytes += 2 + rec.count();
          ++size.records;
          if (odbs::client::isFieldValueType(rec.type)) {
            if (firstValue < 0) firstValue = since(start);
            ++values;
          }
        },
        kTimeoutMs);
    double firstReply = since(start);
    --size.records;  // the end record
    // Again with the database open: the time to the first value without the open.
    start = Clock::now();
    double openFirstValue = -1;
    server.send(line);
    server.readReplyEach(
        {},
        [&](const odbs::client::RecordView& rec) {
          if (openFirstValue < 0 && odbs::client::isFieldValueType(rec.type))
            openFirstValue = since(start);
        },
        kTimeoutMs);

    Figure rs = measure(server, line, size, args.runs);
    double serverPeak = peakMbOf(server.pid());

    double meanFrame = double(size.bytes - 3) / double(std::max<uint64_t>(1, size.records));
    int n = std::max(1, int((meanFrame - 7) / 4 + 0.5));
    ReplySize testSize{uint64_t(4 * n + 7) * size.records + 3, size.records};
    std::string testLine = "m " + std::to_string(size.records) + " " + std::to_string(n);
    timeReply(server, testLine, testSize.bytes);
    Figure m = measure(server, testLine, testSize, args.runs);

    // Arrays of S: 6 floats, an element label and an integration point per value.
    double fieldMb = double(values) * (6 * 4 + 4 + 4) / 1e6;
    std::printf("rs S: %llu values, %.1f MB of arrays\n", static_cast<unsigned long long>(values),
                fieldMb);
    std::printf("  reply          %10.1f MB, %llu records, %.1f bytes per frame\n",
                double(size.bytes) / 1e6, static_cast<unsigned long long>(size.records), meanFrame);
    std::printf("  rs             %10.0f MB/s   %8.2f million records/s\n", rs.mbPerSec,
                rs.recordsPerSec / 1e6);
    std::printf("  m %llu %d  %10.0f MB/s   %8.2f million records/s\n",
                static_cast<unsigned long long>(size.records), n, m.mbPerSec,
                m.recordsPerSec / 1e6);
    std::printf("  rs / m         %10.2f   (goal: 0.8 or better)\n",
                rs.mbPerSec / std::max(m.mbPerSec, 1e-9));
    std::printf(
        "  first value    %10.3f s after the command, the database opening included "
        "(whole first reply %.2f s); %.3f s with the database open\n",
        firstValue, firstReply, openFirstValue);
    std::printf("  server peak    %10.1f MB = %.2f x the field's arrays   (goal: below 2)\n",
                serverPeak, serverPeak / std::max(fieldMb, 1e-9));
    std::fflush(stdout);
  } catch (const std::exception& e) {
    std::fprintf(stderr, "field_stream_bench: %s\n", e.what());
    code = 1;
  }
  odbs::platform::removeFile(path);
  return code;
}
