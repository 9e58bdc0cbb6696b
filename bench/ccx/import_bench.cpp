// ccx_import_bench: times the import of a CalculiX deck and its result file and prints
// the speed in MB of .frd per second, for the result file alone (parse) and for the whole
// import into a database.
//   ccx_import_bench <deck.inp> <results.frd> <output.odb> [runs]
#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
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
  odb_initializeAPI();
  std::vector<double> parse, import;
  try {
    for (int i = 0; i < runs; ++i) {
      auto start = std::chrono::steady_clock::now();
      odbs::ccx::Warnings warnings;
      Discard discard;
      odbs::ccx::readFrd(frd, discard, warnings);
      parse.push_back(seconds(start));

      start = std::chrono::steady_clock::now();
      odbs::ccx::ImportRequest request{deck, frd, "", output};
      odbs::ccx::importCalculix(request, warnings);
      import.push_back(seconds(start));
    }
  } catch (const std::exception& e) {
    std::fprintf(stderr, "ccx_import_bench: %s\n", e.what());
    return 1;
  }
  std::printf("result file: %.1f MB\n", mb);
  std::printf("read .frd only:   %.2f s  %.1f MB/s  (median of %d)\n", median(parse),
              mb / median(parse), runs);
  std::printf("whole import:     %.2f s  %.1f MB/s of .frd  (deck, model and results)\n",
              median(import), mb / median(import));
  return 0;
}
