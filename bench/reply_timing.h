// Timing one reply of a running server against the framed throughput test m with records
// of the same number and mean size, for the benchmarks that compare a command's reply with
// what the pipe and the framing allow.
#pragma once

#include <algorithm>
#include <cstdint>
#include <cstdio>
#include <string>
#include <vector>

#include "bench/bench_util.h"
#include "client/core_records.h"
#include "client/server_process.h"

namespace odbs::bench {

struct ReplySize {
  uint64_t bytes = 0;    // every frame, the end record's included
  uint64_t records = 0;  // records before the end record
};

struct Figure {
  double mbPerSec = 0;
  double recordsPerSec = 0;
};

// The size of the reply to line, read whole once (decoded into records, so not timed).
inline ReplySize replySize(client::ServerProcess& server, const std::string& line, int timeoutMs) {
  ReplySize size;
  server.send(line);
  server.readReplyEach(
      {},
      [&](const client::RecordView& rec) {
        size.bytes += 2 + rec.count();
        ++size.records;
      },
      timeoutMs);
  --size.records;  // the end record
  return size;
}

// Seconds from sending line to reading its end record, the reply's other bytes skipped.
// bytes counts every frame of the reply, the end record's (3 bytes) included.
inline double timeReply(client::ServerProcess& server, const std::string& line, uint64_t bytes,
                        int timeoutMs) {
  auto start = Clock::now();
  server.send(line);
  server.reader().skipBytes(bytes - 3, client::deadlineIn(timeoutMs));
  client::decodeEnd(server.readRecord(timeoutMs));
  return since(start);
}

// Medians over runs of MB/s (10^6 bytes) and records/s of the reply to line.
inline Figure measure(client::ServerProcess& server, const std::string& line, const ReplySize& size,
                      int runs, int timeoutMs) {
  std::vector<double> mb, rec;
  for (int i = 0; i < runs; ++i) {
    double s = std::max(timeReply(server, line, size.bytes, timeoutMs), 1e-9);
    mb.push_back(double(size.bytes) / s / 1e6);
    rec.push_back(double(size.records) / s);
  }
  return {median(mb), median(rec)};
}

// measure after one untimed warm-up run.
inline Figure measureWarm(client::ServerProcess& server, const std::string& line,
                          const ReplySize& size, int runs, int timeoutMs) {
  timeReply(server, line, size.bytes, timeoutMs);
  return measure(server, line, size, runs, timeoutMs);
}

// m with as many records as a reply of this size and the nearest mean record size.
struct MatchedTest {
  std::string line;
  ReplySize size;
  int n = 0;  // integers per m record
  double meanFrame = 0;
};

inline MatchedTest matchedTest(const ReplySize& reply) {
  MatchedTest t;
  t.meanFrame = double(reply.bytes - 3) / double(std::max<uint64_t>(1, reply.records));
  t.n = std::max(1, int((t.meanFrame - 7) / 4 + 0.5));
  t.size = {uint64_t(4 * t.n + 7) * reply.records + 3, reply.records};
  t.line = "m " + std::to_string(reply.records) + " " + std::to_string(t.n);
  return t;
}

// Times the matched m test (after one warm-up run).
inline Figure measureMatched(client::ServerProcess& server, const MatchedTest& t, int runs,
                             int timeoutMs) {
  return measureWarm(server, t.line, t.size, runs, timeoutMs);
}

// Prints the reply's size, both figures and their ratio under the heading what.
inline void printComparison(const char* what, const ReplySize& size, const Figure& f,
                            const MatchedTest& t, const Figure& m) {
  std::printf("%s\n", what);
  std::printf("  reply          %10.1f MB, %llu records, %.1f bytes per frame\n",
              double(size.bytes) / 1e6, static_cast<unsigned long long>(size.records), t.meanFrame);
  std::printf("  reply          %10.0f MB/s   %8.2f million records/s\n", f.mbPerSec,
              f.recordsPerSec / 1e6);
  std::printf("  m %llu %d     %10.0f MB/s   %8.2f million records/s\n",
              static_cast<unsigned long long>(size.records), t.n, m.mbPerSec,
              m.recordsPerSec / 1e6);
  std::printf("  reply / m      %10.2f\n", f.mbPerSec / std::max(m.mbPerSec, 1e-9));
  std::fflush(stdout);
}

}  // namespace odbs::bench
