// Small helpers shared by the benchmark programs: medians, timing, peak memory and the
// server program beside the benchmark.
#pragma once

#include <algorithm>
#include <chrono>
#include <cstdlib>
#include <fstream>
#include <string>
#include <vector>

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

// Peak resident memory of this process so far, in MB (VmHWM); 0 where it cannot be read.
inline double peakMb() {
  std::ifstream in("/proc/self/status");
  std::string line;
  while (std::getline(in, line))
    if (line.rfind("VmHWM:", 0) == 0) return std::atof(line.c_str() + 6) / 1024.0;
  return 0;
}

// odb_server in the folder of the program invoked as argv0 (the build's bin folder).
inline std::string serverBeside(const char* argv0) {
  std::string self = argv0;
  size_t slash = self.rfind('/');
  return (slash == std::string::npos ? "./" : self.substr(0, slash + 1)) + "odb_server";
}

}  // namespace odbs::bench
