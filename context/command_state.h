// The state that command lines leave for later commands, and the argument bundles that the
// dispatcher hands to the handlers of the subsystems.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace odbs {

// Set by D (defined = true) and d (defined = false); read by the forms of r.
struct RequestParams {
  int32_t param1 = 0;
  int32_t param2 = 0;
  int32_t positionCode = 0;  // the third number after remapping 0->4, 1->2, 2->3
  std::string text;          // at most 199 bytes; '^' already turned into spaces
  bool defined = false;
};

// Labels set by a (capacity) and filled by b; read by the contact and status output.
struct SelectionList {
  std::vector<int32_t> labels;  // the fill count is labels.size()
  int64_t capacity = 0;         // 0: no list, b lines do nothing
};

// Section point pair of rl; every r line resets it to (-1, -1).
struct SectionPointPair {
  int32_t first = -1;
  int32_t second = -1;
};

// One entry of the criteria list appended by irc; read by irf and irs.
struct Criterion {
  int32_t kind = 0;  // 1..8
  int32_t value = 0;
  std::string text;  // from the scanned word to the end of the line, spaces kept
};

// The region word of rn / rg: A:B:database, each of A and B with an optional suffix.
struct RegionRequest {
  bool byName = false;               // rn: names; rg: numbers
  std::string nameA, nameB;          // rn only, cut at the suffix, at most 199 bytes each
  int32_t numberA = 0, numberB = 0;  // rg only: absolute value of the number
  int32_t codeA = 0, codeB = 0;      // suffix code: .INNER -1, .OUTER -2, .MINIMUM/.MAXIMUM -3,
                                     // .<n> |n|, none 0
  std::string database;
};

// Everything walkField needs from the command line and the state.
struct FieldRequest {
  int32_t param1 = 0;
  int32_t param2 = 0;
  std::string text;
  bool upperCase = false;
  int32_t resultMode = 0;  // 0 values (rl, rs), 1 rm, -1 rv, -2 rt, -3 other letters
  SectionPointPair sectionPoints;
  bool requestDefined = false;
  int32_t positionCode = 0;
};

// Heap buffers that the field output keeps between commands; C frees them.
using ResultCache = std::vector<std::vector<uint8_t>>;

// All state that survives from one command line to the next.
struct CommandState {
  RequestParams request;
  SelectionList selection;
  SectionPointPair sectionPoints;
  std::vector<Criterion> criteria;
  std::vector<std::string> historyNames;
  int32_t catalogueMode = 0;  // 1 after fD/fS/fV/fN, 0 after the lower-case forms
  ResultCache resultCache;
  int32_t vFlag = -1;
};

}  // namespace odbs
