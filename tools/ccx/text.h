// Small text helpers shared by the deck, result and print file parsers.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace odbs::ccx {

std::string_view trim(std::string_view s);
std::string upper(std::string_view s);
bool startsWith(std::string_view s, std::string_view prefix);

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
std::optional<long long> toInteger(std::string_view s);

// A fixed-column field holding one number (blanks around it allowed), parsed without
// allocating; false when it holds none. The float is the decimal rounded once to single
// precision.
bool parseFloatField(std::string_view field, float* out);
bool parseIntField(std::string_view field, long long* out);

// The field [begin, begin + width) of a fixed-column line, cut at the line's end.
std::string_view column(std::string_view line, size_t begin, size_t width);

}  // namespace odbs::ccx
