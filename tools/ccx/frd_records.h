// The records of the result file's text blocks, one parser each: a node line, an element
// (its -1 line and the -2 lines with its nodes) and a result row (its -1 line and the -2
// lines with more values). The line-by-line reading turns a fault into a message at the
// line where it was found; the bulk path stops before a faulty record and leaves it to
// the line-by-line reading. Both read every field the same way, here.
#pragma once

#include <algorithm>
#include <cstdint>
#include <string_view>

#include "tools/ccx/element_types.h"
#include "tools/ccx/frd_model.h"
#include "tools/ccx/text.h"

namespace odbs::ccx {

constexpr int kFrdValueWidth = 12;  // E12.5 fields of the text format

namespace frd_records {

// A label or value in the fixed columns from begin: the fast path of the solver's own
// form (text.h), else the general parser. False when the field holds none.
inline bool labelAt(std::string_view line, size_t begin, int width, long long* out) {
  if (width == 10 && begin + 10 <= line.size() && parseLabel10(line.data() + begin, out))
    return true;
  return parseIntField(column(line, begin, width), out);
}
template <typename T>
bool valueAt(std::string_view line, size_t begin, T* out) {
  if (begin + kFrdValueWidth <= line.size() && parseE125(line.data() + begin, out)) return true;
  if constexpr (sizeof(T) == sizeof(float)) {
    return parseFloatField(column(line, begin, kFrdValueWidth), out);
  } else {
    auto v = toDouble(column(line, begin, kFrdValueWidth));
    if (v) *out = *v;
    return v.has_value();
  }
}

}  // namespace frd_records

// What a record parser found wrong, at the line it names.
enum class RecordFault {
  none,
  start,        // the first line does not start with " -1"
  label,        // the node or element label
  type,         // the element type code is not a number
  group,        // the element group is not a number
  unknownType,  // the element type code is none of the solver's
  nextLine,     // a -2 line was due; the line found is another, or the file ended
  node,         // a node label of an element
  values,       // a value of a node or a row
};

// The node line r (" -1", label, three coordinates) with labels labelWidth wide.
inline RecordFault nodeRecord(std::string_view r, int labelWidth, FrdNode* node) {
  using namespace frd_records;
  long long label = 0;
  if (!startsWith(r, " -1")) return RecordFault::start;
  if (!labelAt(r, 3, labelWidth, &label)) return RecordFault::label;
  node->label = static_cast<int32_t>(label);
  double* xyz[3] = {&node->x, &node->y, &node->z};
  for (int i = 0; i < 3; ++i) {
    if (!valueAt(r, 3 + labelWidth + kFrdValueWidth * i, xyz[i])) return RecordFault::values;
  }
  return RecordFault::none;
}

// The element whose -1 line is r; its -2 lines come from lines.next(std::string_view&)
// (false at the end of the file). *at is the line of a fault (empty when the file ended);
// r may be invalid once lines.next is called.
template <typename Lines>
RecordFault elementRecord(std::string_view r, Lines& lines, int labelWidth, FrdElement* e,
                          std::string_view* at) {
  using namespace frd_records;
  const int w = labelWidth;
  *at = r;
  long long label = 0, type = 0, group = 0;
  if (!startsWith(r, " -1")) return RecordFault::start;
  if (!labelAt(r, 3, w, &label)) return RecordFault::label;
  e->label = static_cast<int32_t>(label);
  if (!labelAt(r, 3 + w, 5, &type)) return RecordFault::type;
  if (!labelAt(r, 8 + w, 5, &group)) return RecordFault::group;
  e->typeCode = static_cast<int>(type);
  e->group = static_cast<int>(group);
  // Fluid models name the material here ("WATER"): no number then.
  auto material = toInteger(column(r, 13 + w, 5));
  e->material = material ? static_cast<int>(*material) : 0;
  const int nodes = frdNodeCount(e->typeCode);
  if (nodes < 0) return RecordFault::unknownType;
  e->nodes.resize(nodes);
  for (int got = 0; got < nodes;) {
    std::string_view m;
    if (!lines.next(m)) {
      *at = {};
      return RecordFault::nextLine;
    }
    *at = m;
    if (!startsWith(m, " -2")) return RecordFault::nextLine;
    for (size_t col = 3; col < m.size() && got < nodes; col += w) {
      long long node = 0;
      if (!labelAt(m, col, w, &node)) {
        if (trim(column(m, col, w)).empty()) break;  // the line's labels end early
        return RecordFault::node;
      }
      e->nodes[got++] = static_cast<int32_t>(node);
    }
  }
  return RecordFault::none;
}

// The result row whose -1 line is r: its label into *label and stored values into values
// (room for stored), six a line, more in -2 lines from lines as for elementRecord.
template <typename Lines>
RecordFault rowRecord(std::string_view r, Lines& lines, int labelWidth, int stored, int32_t* label,
                      float* values, std::string_view* at) {
  using namespace frd_records;
  *at = r;
  long long l = 0;
  if (!startsWith(r, " -1")) return RecordFault::start;
  if (!labelAt(r, 3, labelWidth, &l)) return RecordFault::label;
  *label = static_cast<int32_t>(l);
  for (int got = 0; got < stored;) {
    if (got > 0) {
      if (!lines.next(r)) {
        *at = {};
        return RecordFault::nextLine;
      }
      *at = r;
      if (!startsWith(r, " -2")) return RecordFault::nextLine;
    }
    const int n = std::min(6, stored - got);
    for (int i = 0; i < n; ++i, ++got) {
      if (!valueAt(r, 3 + labelWidth + kFrdValueWidth * i, &values[got]))
        return RecordFault::values;
    }
  }
  return RecordFault::none;
}

}  // namespace odbs::ccx
