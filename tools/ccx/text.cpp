#include "tools/ccx/text.h"

#include <fast_float/fast_float.h>

#include <cctype>
#include <charconv>
#include <cstdint>

namespace odbs::ccx {

std::string upper(std::string_view s) {
  std::string out(s);
  for (char& c : out) c = static_cast<char>(std::toupper(static_cast<unsigned char>(c)));
  return out;
}

std::vector<std::string> splitCommas(std::string_view s) {
  std::vector<std::string> out;
  splitCommasInto(s, out);
  return out;
}

void splitCommasInto(std::string_view s, std::vector<std::string>& out) {
  size_t n = 0, start = 0;
  while (true) {
    size_t comma = s.find(',', start);
    std::string_view field =
        trim(s.substr(start, comma == std::string_view::npos ? s.npos : comma - start));
    if (n < out.size()) {
      out[n].assign(field.data(), field.size());
    } else {
      out.emplace_back(field);
    }
    ++n;
    if (comma == std::string_view::npos) break;
    start = comma + 1;
  }
  out.resize(n);
}

void splitCommasInto(std::string_view s, std::vector<std::string_view>& out) {
  out.clear();
  size_t start = 0;
  while (true) {
    size_t comma = s.find(',', start);
    out.push_back(trim(s.substr(start, comma == std::string_view::npos ? s.npos : comma - start)));
    if (comma == std::string_view::npos) break;
    start = comma + 1;
  }
}

std::vector<std::string_view> splitBlanks(std::string_view s) {
  std::vector<std::string_view> out;
  size_t i = 0;
  while (i < s.size()) {
    while (i < s.size() && (s[i] == ' ' || s[i] == '\t' || s[i] == '\r')) ++i;
    size_t b = i;
    while (i < s.size() && s[i] != ' ' && s[i] != '\t' && s[i] != '\r') ++i;
    if (i > b) out.push_back(s.substr(b, i - b));
  }
  return out;
}

std::optional<double> toDouble(std::string_view s) {
  s = trim(s);
  if (s.empty() || s.size() > 64) return std::nullopt;
  {
    // The common forms first, without copying.
    double value = 0;
    const char* last = s.data() + s.size();
    if (text_detail::shortDecimal(s.data(), last, &value) == last) return value;
    auto [end, ec] = fast_float::from_chars(s.data(), last, value);
    if (ec == std::errc() && end == last) return value;
  }
  // from_chars takes neither a leading '+' nor a 'D' exponent; rewrite those in a copy.
  char buf[72];
  size_t n = 0;
  for (size_t i = 0; i < s.size(); ++i) {
    char c = s[i];
    if (c == 'd' || c == 'D') c = 'E';
    if (c == '+' && i == 0) continue;
    buf[n++] = c;
  }
  if (n == 0) return std::nullopt;
  double value = 0;
  auto [end, ec] = fast_float::from_chars(buf, buf + n, value);
  if (ec != std::errc() || end != buf + n) return std::nullopt;
  return value;
}

bool parseFloatField(std::string_view field, float* out) {
  const char* b = field.data();
  const char* e = b + field.size();
  while (b < e && *b == ' ') ++b;
  while (e > b && (e[-1] == ' ' || e[-1] == '\r')) --e;
  if (b == e) return false;
  if (text_detail::shortDecimal(b, e, out) == e) return true;
  auto [end, ec] = fast_float::from_chars(b, e, *out);
  if (ec == std::errc() && end == e) return true;
  auto slow = toDouble(std::string_view(b, e - b));  // '+' signs, 'D' exponents
  if (!slow) return false;
  *out = static_cast<float>(*slow);
  return true;
}

namespace text_detail {

const double kExactPowers[23] = {1e0,  1e1,  1e2,  1e3,  1e4,  1e5,  1e6,  1e7,
                                 1e8,  1e9,  1e10, 1e11, 1e12, 1e13, 1e14, 1e15,
                                 1e16, 1e17, 1e18, 1e19, 1e20, 1e21, 1e22};
const double kE125Scales[45] = {1e-22, 1e-21, 1e-20, 1e-19, 1e-18, 1e-17, 1e-16, 1e-15, 1e-14,
                                1e-13, 1e-12, 1e-11, 1e-10, 1e-9,  1e-8,  1e-7,  1e-6,  1e-5,
                                1e-4,  1e-3,  1e-2,  1e-1,  1e0,   1e1,   1e2,   1e3,   1e4,
                                1e5,   1e6,   1e7,   1e8,   1e9,   1e10,  1e11,  1e12,  1e13,
                                1e14,  1e15,  1e16,  1e17,  1e18,  1e19,  1e20,  1e21,  1e22};

bool parseLongInteger(const char* b, const char* e, long long* out) {
  auto [stop, ec] = std::from_chars(b, e, *out);
  return ec == std::errc() && stop == e;
}

}  // namespace text_detail

}  // namespace odbs::ccx
