// A small streaming JSON writer for the summaries of odb_cli, and number formatting shared
// by their text output. Commas and nesting are tracked here; the caller writes keys and
// values in document order. Texts are escaped with jsonString (record_printer.h).
#pragma once

#include <cstdint>
#include <iosfwd>
#include <string>
#include <string_view>
#include <vector>

namespace odbs::cli {

// Shortest "%g"-style text of a float that reads back as the same float.
std::string formatNumber(float v);
// Shortest "%g"-style text of a double that reads back as the same double.
std::string formatNumber(double v);

class JsonWriter {
 public:
  explicit JsonWriter(std::ostream& out) : out_(out) {}

  JsonWriter& beginObject() { return open('{'); }
  JsonWriter& endObject() { return close('}'); }
  JsonWriter& beginArray() { return open('['); }
  JsonWriter& endArray() { return close(']'); }
  // The key of the next value inside an object.
  JsonWriter& key(std::string_view k);
  JsonWriter& value(std::string_view s);
  JsonWriter& value(const char* s) { return value(std::string_view(s)); }
  JsonWriter& value(const std::string& s) { return value(std::string_view(s)); }
  JsonWriter& value(int64_t v);
  JsonWriter& value(float v);
  JsonWriter& value(double v);
  JsonWriter& value(bool v);
  JsonWriter& numbers(const std::vector<float>& v);
  JsonWriter& strings(const std::vector<std::string>& v);

 private:
  JsonWriter& open(char c);
  JsonWriter& close(char c);
  void separate();  // a comma before every value but the first of its container

  std::ostream& out_;
  std::vector<bool> first_;  // per open container: nothing written in it yet
  bool afterKey_ = false;
};

}  // namespace odbs::cli
