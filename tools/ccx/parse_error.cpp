#include "tools/ccx/parse_error.h"

namespace odbs::ccx {
namespace {

std::string describe(const std::string& file, int64_t line, const std::string& expected,
                     const std::string& found) {
  std::string text = file;
  if (line > 0) text += ":" + std::to_string(line);
  text += ": expected " + expected;
  if (!found.empty()) {
    // Quote at most a screenful of what was found, printable characters only.
    std::string shown;
    for (char c : found.substr(0, 60)) {
      shown += (c >= 32 && c < 127) ? c : '?';
    }
    if (found.size() > 60) shown += "...";
    text += ", found '" + shown + "'";
  }
  return text;
}

}  // namespace

ParseError::ParseError(const std::string& file, int64_t line, const std::string& expected,
                       const std::string& found)
    : std::runtime_error(describe(file, line, expected, found)), file_(file), line_(line) {}

}  // namespace odbs::ccx
