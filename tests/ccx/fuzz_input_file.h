// Shared by the fuzz targets of the CalculiX parsers, which read files: writes the fuzzer's
// input to a scratch file of this process and returns its path.
#pragma once

#include <cstddef>
#include <cstdint>
#include <fstream>
#include <string>

#include "platform/platform.h"

namespace odbs::fuzz {

inline std::string writeInputFile(const uint8_t* data, size_t size, const char* suffix) {
  static const std::string path = "/tmp/odb_fuzz_" + std::to_string(platform::processId()) + suffix;
  std::ofstream(path, std::ios::binary | std::ios::trunc)
      .write(reinterpret_cast<const char*>(data), static_cast<std::streamsize>(size));
  return path;
}

}  // namespace odbs::fuzz
