// The database of tests/odb/data/small_model.json, for the tests through the server.
#pragma once

#include <fstream>
#include <sstream>
#include <string>

#include "tools/odb_build/odb_json.h"

namespace odbs::test {

// Builds the small JSON model into a database at path (replacing a file there).
inline void buildSmallModel(const std::string& path) {
  std::ifstream in(std::string(ODB_TEST_DATA) + "/small_model.json");
  std::stringstream text;
  text << in.rdbuf();
  odb::buildDatabaseFromJson(text.str(), path);
}

}  // namespace odbs::test
