#include "tools/common/number_text.h"

#include <cmath>
#include <cstdio>
#include <cstdlib>

namespace odbs::tools {

namespace {

std::string notFinite(double v) {
  return v != v ? "nan" : (v > 0 ? "inf" : "-inf");
}

}  // namespace

std::string formatNumber(float v) {
  if (!std::isfinite(v)) return notFinite(v);
  char buf[32];
  for (int precision = 6; precision <= 9; ++precision) {
    std::snprintf(buf, sizeof buf, "%.*g", precision, double(v));
    if (std::strtof(buf, nullptr) == v) break;
  }
  return buf;
}

std::string formatNumber(double v) {
  if (!std::isfinite(v)) return notFinite(v);
  char buf[40];
  for (int precision = 6; precision <= 17; ++precision) {
    std::snprintf(buf, sizeof buf, "%.*g", precision, v);
    if (std::strtod(buf, nullptr) == v) break;
  }
  return buf;
}

double shortestDouble(float v) {
  if (!std::isfinite(v)) return v;
  return std::strtod(formatNumber(v).c_str(), nullptr);
}

}  // namespace odbs::tools
