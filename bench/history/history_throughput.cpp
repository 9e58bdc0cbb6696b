// history_throughput: the history values of hr against the framed test records of m, in
// one run of one server, so that the ratio of the two carries over between machines.
//
//   history_throughput [--server PATH] [--runs N] [--regions R] [--samples S] [--keep PATH]
//
// Writes a database of R node history regions (default 1,000), each with one output of S
// samples (default 10,000; two floats each), then through one odb_server:
//   hr 1 db   after ho R and one hb per region: every value as a 5-byte '8' record;
//   m 2RS 0   the same number of 5-byte records (a 4-byte body), from memory.
// The first hr reads the samples from the file (cold); later ones are timed warm. Prints
// the medians in records/s and MB/s, and the ratio hr / m (the goal is 0.8 or better).
#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <string>
#include <vector>

#include "bench/bench_args.h"
#include "bench/bench_util.h"
#include "bench/reply_timing.h"
#include "client/client_error.h"
#include "client/core_records.h"
#include "client/server_process.h"
#include "odb/writer.h"
#include "platform/platform.h"

namespace {

using odbs::bench::Clock;
using odbs::bench::median;
using odbs::bench::peakMbOf;
using odbs::bench::since;
using odbs::bench::timeReply;
using odbs::client::ServerProcess;

constexpr int kTimeoutMs = 600000;

struct Args {
  std::string server;
  int runs = 5;
  int regions = 1000;
  int samples = 10000;
  std::string keep;  // database path to keep; empty: a temporary file, removed at the end
};

std::string regionName(int r) {
  return "Node PART-1-1." + std::to_string(r + 1);
}

void writeDatabase(const std::string& path, const Args& a) {
  odb::Writer w(path);
  w.addInstance("PART-1-1").addNodes({1}, {0, 0, 0});
  w.addStep({"Step-1", "", "*DYNAMIC", odb_Enum::TIME, 0.0});
  odb::HistoryRegionData region;
  region.point.position = odb_Enum::NODAL;
  region.outputs.push_back({"U1", "displacement", odb_Enum::SCALAR, 2, {}, {}});
  std::vector<float>& data = region.outputs[0].data;
  data.resize(2 * static_cast<size_t>(a.samples));
  for (int r = 0; r < a.regions; ++r) {
    region.name = regionName(r);
    region.point.nodeLabel = r + 1;
    for (int i = 0; i < a.samples; ++i) {
      data[2 * i] = static_cast<float>(i) * 1e-3f;
      data[2 * i + 1] = static_cast<float>(r) + static_cast<float>(i) * 1e-6f;
    }
    w.addHistoryRegion(region);
  }
  w.close();
}

// Bytes of the hr reply before its end record: the step record, then per region its region
// record, its output record and 7 bytes per value (count, type, one float).
uint64_t historyReplyBytes(const Args& a) {
  uint64_t bytes = 2 + 1 + 4 + 4 + 8 + (4 + 6) + 4;  // '2': "Step-1", no description
  for (int r = 0; r < a.regions; ++r) {
    bytes += 2 + 1 + 4 + regionName(r).size() + 4 + 4 + 12;  // '4': no set name
    bytes += 2 + 1 + (4 + 2) + (4 + 12) + 4 + 4;             // '6': "U1", "displacement"
    bytes += 7ull * 2 * a.samples;
  }
  return bytes;
}

void sendNames(ServerProcess& server, const Args& a) {
  server.send("ho " + std::to_string(a.regions));
  for (int r = 0; r < a.regions; ++r) server.send("hb " + regionName(r));
}

Args parseArgs(int argc, char** argv) {
  Args a;
  odbs::bench::parseServerBenchArgs(
      argc, argv, a.server, a.runs,
      {odbs::bench::intOption("--regions", a.regions),
       odbs::bench::intOption("--samples", a.samples),
       {"--keep", true, [&](const char* v) { a.keep = v; }}},
      "usage: history_throughput [--server PATH] [--runs N] [--regions R] [--samples S] "
      "[--keep PATH]");
  return a;
}

}  // namespace

int main(int argc, char** argv) {
  Args args = parseArgs(argc, argv);
  std::string path =
      args.keep.empty() ? odbs::bench::tempPath("history_throughput", ".odb") : args.keep;
  int status = 0;
  try {
    auto start = Clock::now();
    writeDatabase(path, args);
    std::printf("database: %d regions x %d samples written in %.2f s\n", args.regions, args.samples,
                since(start));

    ServerProcess server({args.server, 0, kTimeoutMs});
    const uint64_t expected = 2ull * args.regions * args.samples;
    const double mb = expected * 7 / 1e6;  // count, type and one float per record
    const std::string hr = "hr 1 " + path;
    const std::string m = "m " + std::to_string(expected) + " 0";
    const uint64_t hrBytes = historyReplyBytes(args) + 3, mBytes = expected * 7 + 3;

    sendNames(server, args);
    double cold = timeReply(server, hr, hrBytes, kTimeoutMs);
    double coldPeak = peakMbOf(server.pid());
    std::vector<double> hrRates, mRates;
    for (int i = 0; i < args.runs; ++i) {
      sendNames(server, args);
      hrRates.push_back(expected / timeReply(server, hr, hrBytes, kTimeoutMs));
      mRates.push_back(expected / timeReply(server, m, mBytes, kTimeoutMs));
    }
    double hrRate = median(hrRates), mRate = median(mRates);
    std::printf("%llu records of 5 bytes per reply, median of %d runs\n",
                static_cast<unsigned long long>(expected), args.runs);
    std::printf("  hr (first, from the file)  %8.2f million records/s  %8.0f MB/s\n",
                expected / cold / 1e6, mb / cold);
    std::printf("  hr                         %8.2f million records/s  %8.0f MB/s\n", hrRate / 1e6,
                mb * hrRate / expected);
    std::printf("  m  (5-byte records)        %8.2f million records/s  %8.0f MB/s\n", mRate / 1e6,
                mb * mRate / expected);
    std::printf("  ratio hr / m               %8.2f   (goal 0.8 or better)\n", hrRate / mRate);
    const double samplesMb = double(expected) * 4 / 1e6;  // every stored float
    std::printf(
        "  server peak memory         %8.0f MB after the first hr = %.2f x the samples "
        "(%.1f MB); %.0f MB at the end\n",
        coldPeak, coldPeak / samplesMb, samplesMb, peakMbOf(server.pid()));
  } catch (const std::exception& e) {
    std::fprintf(stderr, "history_throughput: %s\n", e.what());
    status = 1;
  }
  if (args.keep.empty()) std::remove(path.c_str());
  return status;
}
