// ccx_import: a CalculiX deck and its results into one database.
//
//   ccx_import deck.inp output.odb [--frd results.frd] [--dat prints.dat]
//
// Without --frd and --dat the files beside the deck with the same base name are read when
// they exist. Exit status 0 on success; 1 with the reason (file, line, what was expected)
// on standard error and no database written otherwise; 2 for a wrong command line.
// Warnings and, for large inputs, progress go to standard error.
#include <iostream>
#include <string>

#include "odb/odb.h"
#include "tools/ccx/importer.h"

namespace {

int usage() {
  std::cerr << "usage: ccx_import deck.inp output.odb [--frd results.frd] [--dat prints.dat]\n";
  return 2;
}

}  // namespace

int main(int argc, char** argv) {
  using namespace odbs::ccx;
  ImportRequest request;
  bool frdGiven = false, datGiven = false;
  std::vector<std::string> positional;
  for (int i = 1; i < argc; ++i) {
    std::string arg = argv[i];
    if ((arg == "--frd" || arg == "--dat") && i + 1 < argc) {
      (arg == "--frd" ? request.results : request.prints) = argv[++i];
      (arg == "--frd" ? frdGiven : datGiven) = true;
    } else if (!arg.empty() && arg[0] == '-') {
      return usage();
    } else {
      positional.push_back(arg);
    }
  }
  if (positional.size() != 2) return usage();
  request.deck = positional[0];
  request.output = positional[1];
  if (!frdGiven) request.results = resultsBeside(request.deck);
  if (!datGiven) request.prints = printsBeside(request.deck);

  Warnings warnings(
      [](const std::string& text) { std::cerr << "ccx_import: warning: " << text << "\n"; });
  try {
    odb_initializeAPI();
    ImportSummary s = importCalculix(request, warnings, [](const std::string& message) {
      std::cerr << "ccx_import: " << message << "\n";
    });
    warnings.flush();
    std::cerr << "ccx_import: wrote " << request.output << ": " << s.nodes << " nodes, "
              << s.elements << " elements, "
              << (s.expandedElements > 0
                      ? std::to_string(s.expandedElements) + " expanded shell and beam elements, "
                      : std::string())
              << s.nodeSets + s.elementSets + s.surfaces << " sets and surfaces, " << s.sections
              << " sections, " << s.materials << " materials, " << s.steps << " steps, " << s.frames
              << " frames with " << s.fieldOutputs << " field outputs, " << s.historyRegions
              << " history regions\n";
  } catch (const std::exception& e) {
    warnings.flush();
    std::cerr << "ccx_import: " << e.what() << "\n";
    std::cerr << "ccx_import: no database written\n";
    return 1;
  }
  return 0;
}
