#include "tools/cli/json_text.h"

#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <ostream>

#include "tools/cli/record_printer.h"

namespace odbs::cli {

std::string formatNumber(float v) {
  if (!std::isfinite(v)) return v != v ? "nan" : (v > 0 ? "inf" : "-inf");
  char buf[32];
  for (int precision = 6; precision <= 9; ++precision) {
    std::snprintf(buf, sizeof buf, "%.*g", precision, double(v));
    if (std::strtof(buf, nullptr) == v) break;
  }
  return buf;
}

std::string formatNumber(double v) {
  if (!std::isfinite(v)) return v != v ? "nan" : (v > 0 ? "inf" : "-inf");
  char buf[40];
  for (int precision = 6; precision <= 17; ++precision) {
    std::snprintf(buf, sizeof buf, "%.*g", precision, v);
    if (std::strtod(buf, nullptr) == v) break;
  }
  return buf;
}

void JsonWriter::separate() {
  if (afterKey_) {
    afterKey_ = false;
    return;
  }
  if (!first_.empty()) {
    if (!first_.back()) out_ << ',';
    first_.back() = false;
  }
}

JsonWriter& JsonWriter::open(char c) {
  separate();
  out_ << c;
  first_.push_back(true);
  return *this;
}

JsonWriter& JsonWriter::close(char c) {
  out_ << c;
  if (!first_.empty()) first_.pop_back();
  return *this;
}

JsonWriter& JsonWriter::key(std::string_view k) {
  separate();
  out_ << jsonString(k) << ':';
  afterKey_ = true;
  return *this;
}

JsonWriter& JsonWriter::value(std::string_view s) {
  separate();
  out_ << jsonString(s);
  return *this;
}

JsonWriter& JsonWriter::value(int64_t v) {
  separate();
  out_ << v;
  return *this;
}

JsonWriter& JsonWriter::value(float v) {
  separate();
  // JSON has no text for the values that are not finite.
  out_ << (std::isfinite(v) ? formatNumber(v) : "null");
  return *this;
}

JsonWriter& JsonWriter::value(double v) {
  separate();
  out_ << (std::isfinite(v) ? formatNumber(v) : "null");
  return *this;
}

JsonWriter& JsonWriter::value(bool v) {
  separate();
  out_ << (v ? "true" : "false");
  return *this;
}

JsonWriter& JsonWriter::numbers(const std::vector<float>& v) {
  beginArray();
  for (float f : v) value(f);
  return endArray();
}

JsonWriter& JsonWriter::strings(const std::vector<std::string>& v) {
  beginArray();
  for (const auto& s : v) value(s);
  return endArray();
}

}  // namespace odbs::cli
