// Small text helpers shared by the deck, result and print file parsers.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

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

namespace text_detail {

inline bool isBlank(char c) {
  return c == ' ' || c == '\t' || c == '\r' || c == '\n';
}

// The digits of a long integer (past 18, where the fast loop could overflow).
bool parseLongInteger(const char* b, const char* e, long long* out);

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

}  // namespace odbs::ccx
