// odb_build: builds a results database from a JSON description.
//   odb_build description.json output.odb
// Exit status 0 on success; 1 with a message on standard error (the position of the first
// error in the description) and no output file otherwise.
#include <fstream>
#include <iostream>
#include <sstream>

#include "odb/odb.h"
#include "tools/odb_build/odb_json.h"

int main(int argc, char** argv) {
  if (argc != 3) {
    std::cerr << "usage: odb_build description.json output.odb\n";
    return 2;
  }
  std::ifstream in(argv[1], std::ios::binary);
  if (!in) {
    std::cerr << "odb_build: cannot read " << argv[1] << "\n";
    return 1;
  }
  std::stringstream text;
  text << in.rdbuf();
  try {
    odb_initializeAPI();
    odb::buildDatabaseFromJson(text.str(), argv[2], {argv[1]});
  } catch (const std::exception& e) {
    std::cerr << "odb_build: " << argv[1] << ": " << e.what() << "\n";
    return 1;
  }
  return 0;
}
