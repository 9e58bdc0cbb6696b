// Shared by the fuzz targets that read files: writes the fuzzer's input to a scratch file
// and returns its path. The file lies in the current folder (the fuzz build folder when
// scripts/fuzz.sh runs the target), never in the system's temporary folder, is named after
// this process, and is removed when the process ends normally.
#pragma once

#include <cstddef>
#include <cstdint>
#include <fstream>
#include <string>

#include "platform/platform.h"

namespace odbs::fuzz {

// A scratch file of this process, removed with the object.
class ScratchFile {
 public:
  explicit ScratchFile(const std::string& suffix)
      : path_("fuzz_scratch_" + std::to_string(platform::processId()) + suffix) {}
  ~ScratchFile() { platform::removeFile(path_); }
  ScratchFile(const ScratchFile&) = delete;
  ScratchFile& operator=(const ScratchFile&) = delete;

  const std::string& write(const void* data, size_t size) const {
    std::ofstream(path_, std::ios::binary | std::ios::trunc)
        .write(static_cast<const char*>(data), static_cast<std::streamsize>(size));
    return path_;
  }
  const std::string& path() const { return path_; }

 private:
  std::string path_;
};

// The input file of a target; one per process and suffix.
inline std::string writeInputFile(const uint8_t* data, size_t size, const char* suffix) {
  static const ScratchFile file(suffix);
  return file.write(data, size);
}

}  // namespace odbs::fuzz
