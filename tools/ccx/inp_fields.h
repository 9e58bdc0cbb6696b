// Internal to the deck parser: the fast reading of the data lines of a large mesh (*NODE,
// *ELEMENT), field by field without splitting the line into a vector first. Each reader
// gives the same values as the general one (toInteger, toDouble of text.h); where a field
// is not of the plain forms handled here, the caller reads the line the general way, which
// also gives the message about a bad field.
#pragma once

#include <cmath>
#include <cstdint>
#include <cstring>
#include <string_view>

#include "tools/ccx/text.h"

namespace odbs::ccx {

// The comma-separated fields of one data line in turn, untrimmed (the number readers
// below take blanks around a number).
class FieldCursor {
 public:
  explicit FieldCursor(std::string_view text) : p_(text.data()), e_(text.data() + text.size()) {}
  // The next field; false past the last one.
  bool next(std::string_view& field) {
    if (done_) return false;
    const void* comma = std::memchr(p_, ',', static_cast<size_t>(e_ - p_));
    const char* end = comma ? static_cast<const char*>(comma) : e_;
    field = std::string_view(p_, static_cast<size_t>(end - p_));
    done_ = comma == nullptr;
    p_ = done_ ? e_ : end + 1;
    return true;
  }
  // Whether the field last returned was the line's last.
  bool done() const { return done_; }

 private:
  const char* p_;
  const char* e_;
  bool done_ = false;
};

// A finite decimal in a field (blanks around it allowed), equal to toDouble's value bit for
// bit: the solver's short forms ("1.5", "-2.25E+03", at most 15 digits and a power of ten
// up to 22) by one correctly rounded multiplication or division, as toDouble does, anything
// else by toDouble itself. False for a field that is not a finite number.
inline bool parseDeckDecimal(std::string_view field, double* out) {
  field = trim(field);
  const char* b = field.data();
  const char* e = b + field.size();
  static constexpr double kPowers[] = {1e0,  1e1,  1e2,  1e3,  1e4,  1e5,  1e6,  1e7,
                                       1e8,  1e9,  1e10, 1e11, 1e12, 1e13, 1e14, 1e15,
                                       1e16, 1e17, 1e18, 1e19, 1e20, 1e21, 1e22};
  const bool negative = b < e && *b == '-';
  if (negative) ++b;
  uint64_t mantissa = 0;
  int digits = 0, fraction = 0;
  for (; b < e && static_cast<unsigned>(*b - '0') <= 9; ++b, ++digits)
    mantissa = mantissa * 10 + static_cast<unsigned>(*b - '0');
  if (b < e && *b == '.') {
    for (++b; b < e && static_cast<unsigned>(*b - '0') <= 9; ++b, ++digits, ++fraction)
      mantissa = mantissa * 10 + static_cast<unsigned>(*b - '0');
  }
  bool plain = digits > 0 && digits <= 15;
  int exponent = 0;
  if (plain && b < e && (*b == 'E' || *b == 'e')) {
    ++b;
    const bool minus = b < e && *b == '-';
    if (b < e && (*b == '-' || *b == '+')) ++b;
    plain = b < e && e - b <= 3;
    for (; plain && b < e && static_cast<unsigned>(*b - '0') <= 9; ++b)
      exponent = exponent * 10 + (*b - '0');
    if (minus) exponent = -exponent;
  }
  const int power = exponent - fraction;
  if (plain && b == e && power >= -22 && power <= 22) {
    double value = static_cast<double>(mantissa);
    value = power < 0 ? value / kPowers[-power] : value * kPowers[power];
    *out = negative ? -value : value;
    return true;
  }
  auto value = toDouble(field);
  if (!value || !std::isfinite(*value)) return false;
  *out = *value;
  return true;
}

// A label in a field (blanks around it allowed): an integer from least to INT32_MAX.
inline bool parseDeckLabel(std::string_view field, int32_t least, int32_t* out) {
  long long value = 0;
  if (!parseIntField(field, &value) || value < least || value > INT32_MAX) return false;
  *out = static_cast<int32_t>(value);
  return true;
}

}  // namespace odbs::ccx
