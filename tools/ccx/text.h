// Small text helpers shared by the deck, result and print file parsers.
#pragma once

#include <cstdint>
#include <cstring>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "wire/coding.h"

namespace odbs::ccx {

// The small helpers of the parsers' hot loops are inline (defined below).
inline std::string_view trim(std::string_view s);
std::string upper(std::string_view s);
inline bool startsWith(std::string_view s, std::string_view prefix);

// Splits on commas and trims each field; "a, ,b," gives {"a", "", "b", ""}.
std::vector<std::string> splitCommas(std::string_view s);
// The same into out, reusing its strings (no allocation for a line like the last one).
void splitCommasInto(std::string_view s, std::vector<std::string>& out);
// The same as views into s (no copies).
void splitCommasInto(std::string_view s, std::vector<std::string_view>& out);
// Splits on blanks and tabs, dropping empty fields.
std::vector<std::string_view> splitBlanks(std::string_view s);

// Whole-field numbers: the field (leading and trailing blanks allowed) must be exactly one
// number. Fortran exponents written with D ("1.0D+03") are accepted; an empty field is not.
std::optional<double> toDouble(std::string_view s);
inline std::optional<long long> toInteger(std::string_view s);

// A fixed-column field holding one number (blanks around it allowed), parsed without
// allocating; false when it holds none. The float is the decimal rounded once to single
// precision.
bool parseFloatField(std::string_view field, float* out);
inline bool parseIntField(std::string_view field, long long* out);

// The field [begin, begin + width) of a fixed-column line, cut at the line's end.
inline std::string_view column(std::string_view line, size_t begin, size_t width);

// The fast paths of the result file's fixed columns, reading from p, which must hold the
// field's whole width. Each is false for any other form of the field, which the general
// parsers above then read; where it is true, the value is the one they give.
// The solver's E12.5 form in 12 columns: a blank or '-', a digit, '.', five digits, 'E', a
// sign and two digits (" 1.23456E-03"), exponents -17 to 27. The decimal rounded once.
inline bool parseE125(const char* p, float* out);
inline bool parseE125(const char* p, double* out);
// A label in 10 columns: blanks, then one to eight digits ("      1234").
inline bool parseLabel10(const char* p, long long* out);

namespace text_detail {

inline bool isBlank(char c) {
  return c == ' ' || c == '\t' || c == '\r' || c == '\n';
}

// The digits of a long integer (past 18, where the fast loop could overflow).
bool parseLongInteger(const char* b, const char* e, long long* out);

// The powers of ten that a double holds exactly (1e0 to 1e22), and the scales of the
// E12.5 form, 1e-22 to 1e22: scale[22 + k] is 10^k, rounded to a double below 1e0.
extern const double kExactPowers[23];
extern const double kE125Scales[45];

inline bool isDigit(char c) {
  return static_cast<unsigned>(c - '0') <= 9;
}

// Short decimals ("1.5", "-2.25E+03", the solver's own "-1.23456E+02") read from b: with few
// enough digits to be exact in T (7 for a float, 15 for a double), an exponent of at most
// three digits and a power of ten that T holds exactly (up to 10 and 22), one correctly
// rounded multiplication or division gives the decimal rounded once, as the general parser
// gives it. Returns where the number stops, or nullptr when [b, e) does not start with such
// a number (the general parser then reads it).
template <typename T>
inline const char* shortDecimal(const char* b, const char* e, T* out) {
  constexpr bool kFloat = sizeof(T) == sizeof(float);
  constexpr int kMaxDigits = kFloat ? 7 : 15;  // below 2^24 and 2^53
  constexpr int kMaxPower = kFloat ? 10 : 22;  // 5^10 < 2^24, 5^22 < 2^53
  const bool negative = b < e && *b == '-';
  if (negative) ++b;
  uint64_t mantissa = 0;
  int digits = 0, fraction = 0;
  for (; b < e && isDigit(*b); ++b, ++digits) mantissa = mantissa * 10 + (*b - '0');
  if (b < e && *b == '.') {
    for (++b; b < e && isDigit(*b); ++b, ++digits, ++fraction)
      mantissa = mantissa * 10 + (*b - '0');
  }
  if (digits == 0 || digits > kMaxDigits) return nullptr;
  int exponent = 0;
  if (b < e && (*b == 'E' || *b == 'e')) {
    ++b;
    const bool minus = b < e && *b == '-';
    if (b < e && (*b == '-' || *b == '+')) ++b;
    const char* first = b;
    // Four digits at most are read, so a long exponent cannot overflow before it is refused.
    for (; b < e && isDigit(*b) && b - first < 4; ++b) exponent = exponent * 10 + (*b - '0');
    if (b == first || b - first > 3) return nullptr;
    if (minus) exponent = -exponent;
  }
  const int power = exponent - fraction;
  if (power < -kMaxPower || power > kMaxPower) return nullptr;
  // The powers up to 1e10 are exact in a float too.
  const T scale = static_cast<T>(kExactPowers[power < 0 ? -power : power]);
  const T value = power < 0 ? static_cast<T>(mantissa) / scale : static_cast<T>(mantissa) * scale;
  *out = negative ? -value : value;
  return b;
}

// Eight digits to a number, the first in the lowest byte of v, each as 0 to 9: pairs, then
// fours, then the eight, in three multiplications.
inline uint32_t eightDigits(uint64_t v) {
  v = (v * 10) + (v >> 8);
  v = (((v & 0x000000FF000000FFu) * (100 + (1000000ull << 32))) +
       (((v >> 16) & 0x000000FF000000FFu) * (1 + (10000ull << 32)))) >>
      32;
  return static_cast<uint32_t>(v);
}

// Flags (high bit) each byte of v that is not 0 to 9. A byte not flagged is one of those
// whatever carries into it from the byte below; 0 to 9 carry nothing.
inline uint64_t nonDigits(uint64_t v) {
  return ((v + 0x7676767676767676u) | v) & 0x8080808080808080u;
}

// An E12.5 field as its six digits (an integer) and the power of ten that scales them, -22
// to 22; false for another form or exponent.
inline bool e125Parts(const char* p, uint32_t* digits, int* power) {
  // Columns 1-8 (" 1.23456") and 9-12 ("E+02") as words, the first column in the lowest
  // byte, '0' to '9' made 0 to 9.
  const uint8_t* u = reinterpret_cast<const uint8_t*>(p);
  uint64_t head = loadU64(u) ^ 0x3030303030303030u;
  uint32_t tail = loadU32(u + 8);
  // The six digits as an eight-digit number: sign and point cleared, the first digit moved
  // into the point's place.
  uint64_t six = (head & 0xFFFFFFFFFF000000u) | ((head & 0xFF00u) << 8);
  uint32_t exponent = (tail >> 16) ^ 0x3030u;
  // Every test at once, one branch.
  bool other = ((nonDigits(six) | nonDigits(exponent)) != 0) | (p[0] != ' ' && p[0] != '-') |
               (p[2] != '.') | (p[8] != 'E') | (p[9] != '+' && p[9] != '-');
  if (other) return false;
  int e = static_cast<int>((exponent & 0xFF) * 10 + (exponent >> 8));
  *power = (p[9] == '-' ? -e : e) - 5;
  *digits = eightDigits(six);
  return *power >= -22 && *power <= 22;
}

}  // namespace text_detail

inline std::string_view trim(std::string_view s) {
  size_t b = 0, e = s.size();
  while (b < e && text_detail::isBlank(s[b])) ++b;
  while (e > b && text_detail::isBlank(s[e - 1])) --e;
  return s.substr(b, e - b);
}

inline bool startsWith(std::string_view s, std::string_view prefix) {
  return s.size() >= prefix.size() && s.substr(0, prefix.size()) == prefix;
}

inline std::string_view column(std::string_view line, size_t begin, size_t width) {
  if (begin >= line.size()) return {};
  return line.substr(begin, width);
}

// A decimal integer with blanks around it and an optional sign, as std::from_chars would
// read it but without its generality: the hot path of every label in a large mesh. One
// pass: leading blanks, the digits, then only blanks may follow.
inline bool parseIntField(std::string_view field, long long* out) {
  const char* b = field.data();
  const char* e = b + field.size();
  while (b < e && *b == ' ') ++b;
  while (b < e && text_detail::isBlank(*b)) ++b;
  bool negative = false;
  if (b < e && (*b == '+' || *b == '-')) negative = *b++ == '-';
  const char* digits = b;
  unsigned long long value = 0;
  while (b < e) {
    unsigned digit = static_cast<unsigned char>(*b) - '0';
    if (digit > 9) break;
    value = value * 10 + digit;
    ++b;
  }
  const char* end = b;
  while (b < e && text_detail::isBlank(*b)) ++b;
  if (b != e || end == digits) return false;  // something else follows, or no digits
  if (end - digits > 18)
    return text_detail::parseLongInteger(negative ? digits - 1 : digits, end, out);
  *out = negative ? -static_cast<long long>(value) : static_cast<long long>(value);
  return true;
}

inline std::optional<long long> toInteger(std::string_view s) {
  long long value = 0;
  if (!parseIntField(s, &value)) return std::nullopt;
  return value;
}

inline bool parseE125(const char* p, double* out) {
  // The digits and the power are exact in a double: one multiplication or division rounds
  // the decimal once.
  uint32_t digits;
  int power;
  if (!text_detail::e125Parts(p, &digits, &power)) return false;
  double value = static_cast<double>(digits);
  value = power < 0 ? value / text_detail::kExactPowers[-power]
                    : value * text_detail::kExactPowers[power];
  *out = p[0] == '-' ? -value : value;
  return true;
}

inline bool parseE125(const char* p, float* out) {
  // The product of the digits and the scale, in double, lies within 2 units of its last
  // place of the decimal (the scale and the product each round once; a multiplication is
  // much quicker than a division). Rounded to a float it then gives the float nearest the
  // decimal, unless it lies that close to a point halfway between two floats (the 29 bits
  // a float drops near 1 followed by zeros): the general parser decides those. The range
  // of the form keeps to normal floats, where that test holds.
  uint32_t digits;
  int power;
  if (!text_detail::e125Parts(p, &digits, &power)) return false;
  double value = static_cast<double>(digits) * text_detail::kE125Scales[22 + power];
  uint64_t bits;
  std::memcpy(&bits, &value, sizeof bits);
  if ((bits & 0x1FFFFFFFu) - (0x10000000u - 4) <= 8) return false;
  float f = static_cast<float>(value);
  *out = p[0] == '-' ? -f : f;
  return true;
}

inline bool parseLabel10(const char* p, long long* out) {
  // The last eight columns as eight bytes, the first column in the lowest: digits become
  // 0 to 9 and blanks 0x10.
  if (p[0] != ' ' || p[1] != ' ') return false;
  uint64_t v = loadU64(reinterpret_cast<const uint8_t*>(p + 2)) ^ 0x3030303030303030u;
  // 0xFF in every byte that is not a digit: those must be blanks and come first (the
  // lowest bytes), then at least one digit.
  uint64_t other = (text_detail::nonDigits(v) >> 7) * 0xFF;
  if ((other & (other + 1)) != 0 || other == ~0ull) return false;
  if ((v & other) != (0x1010101010101010u & other)) return false;
  v &= ~other;  // leading zeros
  *out = text_detail::eightDigits(v);
  return true;
}

}  // namespace odbs::ccx
