// Helpers of the CalculiX parser tests: where the fixtures are, and scratch files.
#pragma once

#include <string>

namespace odbs::ccx::test {

// Path of a committed result fixture (tests/data/ccx/<name>) or example deck
// (examples/<name>).
std::string dataFile(const std::string& name);
std::string exampleFile(const std::string& name);

std::string readWhole(const std::string& path);

// A fresh folder under the system's temporary folder, removed with everything in it when
// the object goes.
class ScratchDir {
 public:
  ScratchDir();
  ~ScratchDir();
  ScratchDir(const ScratchDir&) = delete;
  ScratchDir& operator=(const ScratchDir&) = delete;

  // Writes content to <dir>/<name> and returns the full path.
  std::string write(const std::string& name, const std::string& content) const;
  const std::string& path() const { return path_; }

 private:
  std::string path_;
};

}  // namespace odbs::ccx::test
