// ccx_import: a CalculiX deck and its results into one database.
//
//   ccx_import deck.inp output.odb [--frd results.frd] [--dat prints.dat]
//
// Without --frd and --dat the files beside the deck with the same base name are read when
// they exist. Exit status 0 on success; 1 with the reason (file, line, what was expected)
// on standard error and no database written otherwise; 2 for a wrong command line.
// Warnings and, for large inputs, progress go to standard error.
#include <CLI/CLI.hpp>
#include <iostream>
#include <string>

#include "odb/odb.h"
#include "platform/platform.h"
#include "tools/ccx/importer.h"
#include "tools/common/program.h"

int main(int argc, char** argv) {
  using namespace odbs::ccx;
  CLI::App app{"Imports a CalculiX deck and its results (.frd, .dat) into one database.",
               "ccx_import"};
  odbs::tools::setUpProgram(app);
  ImportRequest request;
  app.add_option("deck", request.deck, "The input deck (.inp)")->required();
  app.add_option("output", request.output, "The database to write")->required();
  CLI::Option* frd =
      app.add_option("--frd", request.results, "The result file (default: beside the deck)");
  CLI::Option* dat =
      app.add_option("--dat", request.prints, "The print file (default: beside the deck)");
  if (int code = odbs::tools::parseCommandLine(app, argc, argv); code >= 0) return code;
  // The import builds and frees arrays of many megabytes (the deck's, the model's, each
  // result block's): reused, they cost no fresh pages (30 to 40 ms of about 230 ms of
  // processor time at 200,000 nodes).
  odbs::platform::keepFreedMemory();
  if (frd->count() == 0) request.results = resultsBeside(request.deck);
  if (dat->count() == 0) request.prints = printsBeside(request.deck);

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
