// field_stream_bench: how fast the values of one field output reach a parent (command rs),
// against the framed throughput test m of the same run with records of the same size.
//
//   field_stream_bench [--server PATH] [--runs N] [--elements N] [--db PATH]
//
// Writes a database of hexahedra (8 integration points each; 1,250,000 elements by
// default, so that S holds 10,000,000 values of 6 components) to the temporary folder and
// removes it at the end; with --db, uses the database at PATH, writing it there first when
// it does not exist, and keeps it. Starts odb_server (default: beside this program), sends
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
#include <string>
#include <vector>

#include "bench/bench_args.h"
#include "bench/bench_util.h"
#include "bench/gen/generator.h"
#include "bench/reply_timing.h"
#include "client/core_records.h"
#include "client/field_records.h"
#include "client/server_process.h"
#include "odb/odb.h"
#include "platform/platform.h"

namespace {

using odbs::bench::Figure;
using odbs::bench::MatchedTest;
using odbs::bench::ReplySize;
using odbs::bench::since;
using odbs::client::Clock;
using odbs::client::ServerProcess;

constexpr int kTimeoutMs = 600000;

struct Args {
  std::string server;
  int runs = 5;
  int64_t elements = 1250000;
  std::string db;  // a database to use and keep; empty: a temporary one
};

Args parseArgs(int argc, char** argv) {
  Args a;
  odbs::bench::parseServerBenchArgs(
      argc, argv, a.server, a.runs,
      {{"--elements", true,
        [&](const char* v) { a.elements = std::max<int64_t>(1, std::atoll(v)); }},
       {"--db", true, [&](const char* v) { a.db = v; }}},
      "usage: field_stream_bench [--server PATH] [--runs N] [--elements N] [--db PATH]");
  return a;
}

}  // namespace

int main(int argc, char** argv) {
  Args args = parseArgs(argc, argv);
  std::string path =
      args.db.empty() ? odbs::bench::tempPath("field_stream_bench", ".odb") : args.db;
  int code = 0;
  try {
    odb_initializeAPI();
    odbs::platform::FileStat st;
    if (args.db.empty() || !odbs::platform::statFile(path, &st)) {
      auto t0 = Clock::now();
      odbgen::Options o;
      o.elements = args.elements;
      o.frames = 1;
      odbgen::Summary summary = odbgen::generate(path, o);
      std::printf("database written in %.1f s: %lld elements\n", since(t0),
                  static_cast<long long>(summary.elements));
    }
    std::printf("medians of %d runs\n", args.runs);

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

    Figure rs = odbs::bench::measure(server, line, size, args.runs, kTimeoutMs);
    double serverPeak = odbs::bench::peakMbOf(server.pid());
    MatchedTest t = odbs::bench::matchedTest(size);
    Figure m = odbs::bench::measureMatched(server, t, args.runs, kTimeoutMs);

    // Arrays of S: 6 floats, an element label and an integration point per value.
    double fieldMb = double(values) * (6 * 4 + 4 + 4) / 1e6;
    std::printf("rs S: %llu values, %.1f MB of arrays\n", static_cast<unsigned long long>(values),
                fieldMb);
    odbs::bench::printComparison("rs against m", size, rs, t, m);
    std::printf("  goal: reply / m of 0.8 or better\n");
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
  if (args.db.empty()) odbs::platform::removeFile(path);
  return code;
}
