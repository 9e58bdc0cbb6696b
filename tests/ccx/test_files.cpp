#include "tests/ccx/test_files.h"

#include <filesystem>
#include <fstream>
#include <random>
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

ScratchDir::ScratchDir() {
  std::random_device random;
  namespace fs = std::filesystem;
  for (;;) {
    fs::path p = fs::temp_directory_path() / ("ccx_test_" + std::to_string(random()));
    if (fs::create_directory(p)) {
      path_ = p.string();
      return;
    }
  }
}

ScratchDir::~ScratchDir() {
  std::error_code ignored;
  std::filesystem::remove_all(path_, ignored);
}

std::string ScratchDir::write(const std::string& name, const std::string& content) const {
  std::string full = path_ + "/" + name;
  std::ofstream(full, std::ios::binary) << content;
  return full;
}

}  // namespace odbs::ccx::test
