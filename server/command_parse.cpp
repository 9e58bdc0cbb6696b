#include "server/command_parse.h"

#include <algorithm>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <vector>

namespace odbs {

namespace {

// Field widths of the fixed text areas that the command state keeps.
constexpr size_t kTextField = 199;  // a 200-byte area with its terminator

// |atoi(text)| without the overflow of abs(INT_MIN).
int32_t absoluteNumber(const char* text) {
  long long v = std::atoi(text);
  return static_cast<int32_t>(v < 0 ? (-v > INT32_MAX ? INT32_MAX : -v) : v);
}

// Splits a region part such as "A.INNER" or "B.7" into its base and suffix code.
void splitRegionPart(const std::string& part, std::string* base, int32_t* code) {
  size_t dot = part.rfind('.');
  if (dot == std::string::npos) {
    *base = part;
    *code = 0;
    return;
  }
  *base = part.substr(0, dot);
  std::string suffix = part.substr(dot);
  if (suffix == ".INNER")
    *code = -1;
  else if (suffix == ".OUTER")
    *code = -2;
  else if (suffix == ".MINIMUM" || suffix == ".MAXIMUM")
    *code = -3;  // both extremes share one code
  else
    *code = absoluteNumber(suffix.c_str() + 1);
}

}  // namespace

const char* lineFrom(const char* line, size_t pos) {
  size_t len = std::strlen(line);
  return pos <= len ? line + pos : line + len;
}

RequestParams parseRequest(const char* line, bool defined) {
  RequestParams r;
  r.defined = defined;
  std::vector<char> text(std::strlen(line) + 1, '\0');
  int p1 = 0, p2 = 0, p3 = 0;
  std::sscanf(lineFrom(line, 1), "%d %d %d %s", &p1, &p2, &p3, text.data());
  r.param1 = p1;
  r.param2 = p2;
  switch (p3) {
    case 0:
      r.positionCode = 4;
      break;
    case 1:
      r.positionCode = 2;
      break;
    case 2:
      r.positionCode = 3;
      break;
    default:
      r.positionCode = p3;
      break;
  }
  r.text.assign(text.data(), std::min(std::strlen(text.data()), kTextField));
  for (char& c : r.text)
    if (c == '^') c = ' ';
  return r;
}

void resetSelection(const char* line, SelectionList* list) {
  int n = 0;
  std::sscanf(lineFrom(line, 1), "%d", &n);
  list->labels.clear();
  list->labels.shrink_to_fit();
  list->capacity = n >= 1 ? n : 0;
}

void appendSelection(const char* line, SelectionList* list) {
  if (list->capacity <= 0) return;
  const char* p = lineFrom(line, 1);
  while (*p != '\0') {
    const char* space = std::strchr(p, ' ');
    size_t len = space ? static_cast<size_t>(space - p) : std::strlen(p);
    if (len > 0) {
      if (static_cast<int64_t>(list->labels.size()) >= list->capacity) return;
      list->labels.push_back(std::atoi(std::string(p, len).c_str()));
    }
    if (!space) break;
    p = space + 1;
  }
}

std::optional<Criterion> parseCriterion(const char* line) {
  const char* from = lineFrom(line, 3);
  std::vector<char> word(std::strlen(from) + 1, '\0');
  int kind = 0, value = 0;
  std::sscanf(from, "%d %d %s", &kind, &value, word.data());
  if (kind < 1 || kind > 8 || word[0] == '\0') return std::nullopt;
  const char* at = std::strstr(from, word.data());
  if (at == nullptr) return std::nullopt;
  return Criterion{kind, value, std::string(at)};
}

std::optional<std::string> parseSectionPointRequest(const char* line, SectionPointPair* pair) {
  int a = pair->first, b = pair->second;
  std::sscanf(lineFrom(line, 2), "%d %d", &a, &b);
  pair->first = a;
  pair->second = b;
  const char* comma = std::strchr(lineFrom(line, 3), ',');
  if (comma == nullptr) return std::nullopt;
  return std::string(comma + 1);
}

std::optional<RegionRequest> parseRegionWord(const char* line, bool byName) {
  const char* from = lineFrom(line, 3);
  std::vector<char> buf(std::strlen(from) + 1, '\0');
  std::sscanf(from, "%s", buf.data());
  std::string word(buf.data());
  size_t c1 = word.find(':');
  if (c1 == std::string::npos) return std::nullopt;

  RegionRequest r;
  r.byName = byName;
  std::string partA = word.substr(0, c1), partB;
  size_t c2 = word.find(':', c1 + 1);
  if (c2 == std::string::npos) {
    r.database = word.substr(c1 + 1);
  } else {
    partB = word.substr(c1 + 1, c2 - c1 - 1);
    r.database = word.substr(c2 + 1);
  }
  std::string baseA, baseB;
  splitRegionPart(partA, &baseA, &r.codeA);
  if (c2 != std::string::npos) splitRegionPart(partB, &baseB, &r.codeB);
  if (byName) {
    r.nameA = baseA.substr(0, kTextField);
    r.nameB = baseB.substr(0, kTextField);
  } else {
    r.numberA = absoluteNumber(baseA.c_str());
    r.numberB = absoluteNumber(baseB.c_str());
  }
  return r;
}

void parseHistoryRegion(const char* line, int* number, std::string* name) {
  const char* from = lineFrom(line, 3);
  *number = std::atoi(from);
  const char* space = std::strchr(from, ' ');
  *name = space ? std::string(space + 1) : std::string();
}

}  // namespace odbs
