// Small helpers shared by the benchmark programs: medians, timing, peak memory, temporary
// paths and the server program beside the benchmark.
#pragma once

#include <algorithm>
#include <chrono>
#include <cstdlib>
#include <fstream>
#include <string>
#include <vector>

#include "platform/platform.h"

namespace odbs::bench {

using Clock = std::chrono::steady_clock;

// Seconds from t until now.
inline double since(Clock::time_point t) {
  return std::chrono::duration<double>(Clock::now() - t).count();
}

// The median of v (the mean of the two middle values for an even count); 0 when empty.
inline double median(std::vector<double> v) {
  if (v.empty()) return 0;
  std::sort(v.begin(), v.end());
  size_t n = v.size();
  return n % 2 ? v[n / 2] : (v[n / 2 - 1] + v[n / 2]) / 2;
}

// Peak resident memory so far, in MB (VmHWM), of the process whose status file is given;
// 0 where it cannot be read.
inline double peakMbIn(const std::string& statusFile) {
  std::ifstream in(statusFile);
  std::string line;
  while (std::getline(in, line))
    if (line.rfind("VmHWM:", 0) == 0) return std::atof(line.c_str() + 6) / 1024.0;
  return 0;
}
// Of this process.
inline double peakMb() {
  return peakMbIn("/proc/self/status");
}
// Of process pid (a server the benchmark started).
inline double peakMbOf(int pid) {
  return peakMbIn("/proc/" + std::to_string(pid) + "/status");
}

// A path in the temporary folder ($TMPDIR, else /tmp) unique to this process:
// "<folder>/<stem>_<pid><suffix>". The caller removes the file.
inline std::string tempPath(const std::string& stem, const std::string& suffix) {
  const char* tmp = std::getenv("TMPDIR");
  return std::string(tmp != nullptr && *tmp != 0 ? tmp : "/tmp") + "/" + stem + "_" +
         std::to_string(platform::processId()) + suffix;
}

// odb_server in the folder of the program invoked as argv0 (the build's bin folder).
inline std::string serverBeside(const char* argv0) {
  std::string self = argv0;
  size_t slash = self.rfind('/');
  return (slash == std::string::npos ? "./" : self.substr(0, slash + 1)) + "odb_server";
}

}  // namespace odbs::bench
