#include "tools/cli/model_filter_option.h"

#include <cerrno>
#include <cstdlib>
#include <map>

namespace odbs::cli {

namespace {

enum Kind { kInstance = 1, kNodeSet, kSection, kMaterial, kType, kElements, kElementSet, kNodes };

const std::map<std::string, int> kKinds = {
    {"instance", kInstance}, {"nset", kNodeSet}, {"section", kSection},
    {"material", kMaterial}, {"type", kType},    {"elements", kElements},
    {"elset", kElementSet},  {"nodes", kNodes},
};

// A whole decimal 32-bit number.
bool label(const std::string& s, long* out) {
  if (s.empty()) return false;
  char* end = nullptr;
  errno = 0;
  long v = std::strtol(s.c_str(), &end, 10);
  if (*end != '\0' || errno != 0 || v < -2147483647L - 1 || v > 2147483647L) return false;
  *out = v;
  return true;
}

}  // namespace

std::string criterionLine(const std::string& filter, std::string* error) {
  size_t eq = filter.find('=');
  auto kind = kKinds.find(filter.substr(0, eq));
  std::string text = eq == std::string::npos ? std::string() : filter.substr(eq + 1);
  if (kind == kKinds.end() || text.empty() || text.find('\n') != std::string::npos) {
    *error =
        "--filter wants KIND=TEXT with KIND one of instance, nset, section, material, "
        "type, elements, elset, nodes; got \"" +
        filter + "\"";
    return "";
  }
  std::string prefix = "irc " + std::to_string(kind->second) + " ";
  long first = 0, last = 0;
  if (kind->second == kElements || kind->second == kNodes) {
    size_t dash = text.find('-', 1);
    std::string a = text.substr(0, dash), b = dash == std::string::npos ? a : text.substr(dash + 1);
    if (!label(a, &first) || !label(b, &last)) {
      *error =
          "--filter " + kind->first + "= wants FIRST or FIRST-LAST labels; got \"" + text + "\"";
      return "";
    }
    return prefix + std::to_string(first) + " " + std::to_string(last);
  }
  if (kind->second == kSection && label(text, &first) && first > 0) {
    return prefix + text + " " + text;
  }
  return prefix + "0 " + text;
}

}  // namespace odbs::cli
