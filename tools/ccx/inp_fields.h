// Internal to the deck parser: the fast reading of the data lines of a large mesh (*NODE,
// *ELEMENT), field by field in one pass over the line, without splitting it into a vector
// of fields first. Each reader gives the same value as the general one (toInteger, toDouble
// of text.h) or refuses the field; the caller then reads the line the general way, which
// also gives the message about a bad field.
#pragma once

#include <cmath>
#include <cstdint>
#include <cstring>
#include <string_view>
#include <vector>

#include "tools/ccx/inp_model.h"
#include "tools/ccx/text.h"
#include "wire/coding.h"

namespace odbs::ccx {

namespace fields_detail {

// One to seven digits at b followed by something else, read as one eight-byte word: sets
// *end past the digits and *value. False where fewer than eight bytes are left, and for no
// digit or eight and more: the caller then reads digit by digit.
inline bool shortDigits(const char* b, const char* e, const char** end, uint64_t* value) {
  if (e - b < 8) return false;
  // The bytes as 0 to 9 where they are digits, the first in the lowest byte.
  const uint64_t v = loadU64(reinterpret_cast<const uint8_t*>(b)) ^ 0x3030303030303030u;
  const uint64_t others = text_detail::nonDigits(v);
  if (others == 0) return false;
  // 0x01 in each byte before the first that is not a digit, then their count.
  const uint64_t ones = (((others & (~others + 1)) >> 7) - 1) & 0x0101010101010101u;
  const int count = static_cast<int>((ones * 0x0101010101010101u) >> 56);
  if (count == 0) return false;
  // The digits moved to the high bytes, zeros before them.
  *value = text_detail::eightDigits(v << (64 - 8 * count));
  *end = b + count;
  return true;
}

}  // namespace fields_detail

// The comma-separated fields of one data line, read in turn. A reader that refuses a field
// leaves the scanner where it was not meant to be: the caller then reads the whole line
// the general way.
class FieldScanner {
 public:
  explicit FieldScanner(std::string_view text) : p_(text.data()), e_(text.data() + text.size()) {}

  // Whether a field is left (a line "1," has two, the second empty).
  bool more() const { return more_; }

  // A blank field (only blanks before the next comma or the line's end): passes over it.
  bool blank() {
    const char* b = skipBlanks(p_);
    if (b != e_ && *b != ',') return false;
    return endField(b);
  }
  // Whether the rest of the line is one blank field: the line ends with a comma.
  bool blankToEnd() const { return skipBlanks(p_) == e_; }

  // A label from least to INT32_MAX, blanks around it allowed.
  bool label(int32_t least, int32_t* out) {
    const char* b = skipBlanks(p_);
    const char* digits = b;
    uint64_t value = 0;
    if (!fields_detail::shortDigits(b, e_, &b, &value)) {
      for (; b < e_ && text_detail::isDigit(*b); ++b) value = value * 10 + (*b - '0');
    }
    if (b == digits || b - digits > 10 || value < static_cast<uint64_t>(least) ||
        value > INT32_MAX) {
      return false;
    }
    *out = static_cast<int32_t>(value);
    return endField(skipBlanks(b));
  }

  // A finite decimal, bit for bit toDouble's value of the field.
  bool decimal(double* out) {
    const char* b = skipBlanks(p_);
    if (const char* stop = text_detail::shortDecimal(b, e_, out)) {
      stop = skipBlanks(stop);
      if (stop == e_ || *stop == ',') return endField(stop);
    }
    // Any other form: the whole field to toDouble.
    const void* comma = std::memchr(p_, ',', static_cast<size_t>(e_ - p_));
    const char* end = comma ? static_cast<const char*>(comma) : e_;
    auto value = toDouble(std::string_view(p_, static_cast<size_t>(end - p_)));
    if (!value || !std::isfinite(*value)) return false;
    *out = *value;
    return endField(end);
  }

 private:
  const char* skipBlanks(const char* b) const {
    while (b < e_ && text_detail::isBlank(*b)) ++b;
    return b;
  }
  // Ends a field at b, the line's end or a comma; false for anything else.
  bool endField(const char* b) {
    if (b == e_) {
      more_ = false;
    } else if (*b == ',') {
      ++b;
    } else {
      return false;
    }
    p_ = b;
    return true;
  }

  const char* p_;
  const char* e_;
  bool more_ = true;
};

// The fast path of a *NODE data line: its label and up to three coordinates (blank ones
// 0), fields past the third coordinate passed over. False for a line that the general path
// must read.
static inline bool readNodeLine(std::string_view text, Node& node) {
  FieldScanner fields(text);
  int32_t label = 0;
  if (!fields.label(1, &label)) return false;
  double coords[3] = {0, 0, 0};
  for (double& c : coords) {
    if (!fields.more()) break;
    if (!fields.blank() && !fields.decimal(&c)) return false;
  }
  node = Node{label, coords[0], coords[1], coords[2]};
  return true;
}

// The fast path of an element's data line: on its first line (first) the element label,
// then node labels appended to nodes, at most `most` of them (0 too where zeroAllowed).
// Tells whether the line ends with a comma. False, with nodes as it was, for a line that
// the general path must read: a field that is not a label, more node labels than most.
static inline bool readElementLine(std::string_view text, bool first, size_t most, bool zeroAllowed,
                                   int32_t* label, std::vector<int32_t>& nodes,
                                   bool* endsWithComma) {
  FieldScanner fields(text);
  *endsWithComma = false;
  if (first && !fields.label(1, label)) return false;
  const size_t before = nodes.size();
  for (size_t index = first ? 1 : 0; fields.more(); ++index) {
    int32_t value = 0;
    if (index > 0 && fields.blankToEnd()) {
      *endsWithComma = true;  // an empty last field after others
      break;
    }
    if (nodes.size() - before == most || !fields.label(zeroAllowed ? 0 : 1, &value)) {
      nodes.resize(before);
      return false;
    }
    nodes.push_back(value);
  }
  return true;
}

}  // namespace odbs::ccx
