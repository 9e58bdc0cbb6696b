#include "tests/ccx/test_files.h"

#include <fstream>
#include <sstream>

namespace odbs::ccx::test {

std::string dataFile(const std::string& name) {
  return std::string(CCX_DATA_DIR) + "/" + name;
}
std::string exampleFile(const std::string& name) {
  return std::string(CCX_EXAMPLES_DIR) + "/" + name;
}

std::string readWhole(const std::string& path) {
  std::ifstream in(path, std::ios::binary);
  std::ostringstream out;
  out << in.rdbuf();
  return out.str();
}

}  // namespace odbs::ccx::test
