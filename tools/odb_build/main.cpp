// odb_build: builds a results database from a JSON description (docs/odb_json.md).
//   odb_build description.json output.odb
// Exit status 0 on success; 1 with a message on standard error (the position of the first
// error in the description) and no output file otherwise; 2 for a bad command line.
#include <CLI/CLI.hpp>
#include <fstream>
#include <iostream>
#include <sstream>

#include "odb/odb.h"
#include "tools/common/program.h"
#include "tools/odb_build/odb_json.h"

int main(int argc, char** argv) {
  CLI::App app{"Builds a results database from a JSON description (docs/odb_json.md).",
               "odb_build"};
  odbs::tools::setUpProgram(app);
  std::string description, output;
  app.add_option("description", description, "The JSON description")->required();
  app.add_option("output", output, "The database to write")->required();
  if (int code = odbs::tools::parseCommandLine(app, argc, argv); code >= 0) return code;

  std::ifstream in(description, std::ios::binary);
  if (!in) {
    std::cerr << "odb_build: cannot read " << description << "\n";
    return 1;
  }
  std::stringstream text;
  text << in.rdbuf();
  try {
    odb_initializeAPI();
    odb::buildDatabaseFromJson(text.str(), output);
  } catch (const std::exception& e) {
    std::cerr << "odb_build: " << description << ": " << e.what() << "\n";
    return 1;
  }
  return 0;
}
