// ccx_import_bench: times the import of a CalculiX deck and its result file and prints
// the speed in MB of .frd per second: of a plain line loop over the file (fgets, the
// fastest the text can be walked), of reading the result file alone, and of the whole
// import into a database; then the ratio of the import's speed to the line loop's (goal:
// 0.5 or more), the same from processor time (which a busy machine disturbs less than
// the wall clock) and the peak memory beside the result file's size (goal: at most 1).
//   ccx_import_bench <deck.inp> <results.frd> <output.odb> [runs]
#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <ctime>
#include <stdexcept>
#include <string>
#include <vector>

#include "bench/bench_util.h"
#include "odb/odb.h"
#include "platform/platform.h"
#include "tools/ccx/frd_parser.h"
#include "tools/ccx/importer.h"

namespace {

using odbs::bench::median;

class Discard : public odbs::ccx::FrdVisitor {};

double seconds(std::chrono::steady_clock::time_point since) {
  return std::chrono::duration<double>(std::chrono::steady_clock::now() - since).count();
}

// Processor time of this process since `since`: on a shared machine the wall clock also
// counts the time other processes had the processor.
double cpuSeconds(std::clock_t since) {
  return static_cast<double>(std::clock() - since) / CLOCKS_PER_SEC;
}

}  // namespace

int main(int argc, char** argv) {
  if (argc < 4) {
    std::fprintf(stderr, "usage: ccx_import_bench <deck.inp> <results.frd> <output.odb> [runs]\n");
    return 2;
  }
  const std::string deck = argv[1], frd = argv[2], output = argv[3];
  const int runs = argc > 4 ? std::max(1, std::atoi(argv[4])) : 3;
  odbs::platform::FileStat st;
  if (!odbs::platform::statFile(frd, &st)) {
    std::fprintf(stderr, "ccx_import_bench: cannot read %s\n", frd.c_str());
    return 1;
  }
  const double mb = st.size / 1e6;
  odbs::platform::keepFreedMemory();  // as ccx_import does
  odb_initializeAPI();
  std::vector<double> lines, parse, import, linesCpu, parseCpu, importCpu;
  try {
    for (int i = 0; i < runs; ++i) {
      auto start = std::chrono::steady_clock::now();
      std::clock_t cpu = std::clock();
      FILE* f = std::fopen(frd.c_str(), "rb");
      if (!f) throw std::runtime_error("cannot open " + frd);
      char buffer[4096];
      long count = 0;
      while (std::fgets(buffer, sizeof buffer, f)) ++count;
      std::fclose(f);
      lines.push_back(seconds(start));
      linesCpu.push_back(cpuSeconds(cpu));
      if (count == 0) throw std::runtime_error(frd + " has no lines");

      start = std::chrono::steady_clock::now();
      cpu = std::clock();
      odbs::ccx::Warnings warnings;
      Discard discard;
      odbs::ccx::readFrd(frd, discard, warnings);
      parse.push_back(seconds(start));
      parseCpu.push_back(cpuSeconds(cpu));

      // Every run imports to a new file, as a first import does: replacing the last run's
      // database would add the file system's release of its blocks (about 20 ms at the
      // full size) to the rename.
      odbs::platform::removeFile(output);
      start = std::chrono::steady_clock::now();
      cpu = std::clock();
      odbs::ccx::ImportRequest request{deck, frd, "", output};
      odbs::ccx::importCalculix(request, warnings);
      import.push_back(seconds(start));
      importCpu.push_back(cpuSeconds(cpu));
    }
  } catch (const std::exception& e) {
    std::fprintf(stderr, "ccx_import_bench: %s\n", e.what());
    return 1;
  }
  std::printf("result file: %.1f MB\n", mb);
  std::printf("line loop (fgets): %.2f s  %.1f MB/s\n", median(lines), mb / median(lines));
  std::printf("read .frd only:   %.2f s  %.1f MB/s  (median of %d)\n", median(parse),
              mb / median(parse), runs);
  std::printf("whole import:     %.2f s  %.1f MB/s of .frd  (deck, model and results)\n",
              median(import), mb / median(import));
  std::printf("import speed / line loop speed: %.2f  (goal 0.5 or more)\n",
              median(lines) / median(import));
  std::printf(
      "processor time: line loop %.2f s, read .frd %.2f s, whole import %.2f s; "
      "ratio %.2f\n",
      median(linesCpu), median(parseCpu), median(importCpu),
      median(linesCpu) / std::max(median(importCpu), 1e-9));
  std::printf("peak memory: %.1f MB  = %.2f of the result file  (goal 1 or less)\n",
              odbs::bench::peakMb(), odbs::bench::peakMb() / mb);
  return 0;
}
