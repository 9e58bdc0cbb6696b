// Values from 1e-7 to about 1e47 (the catalogue's times, frame values and frequencies) are
// formatted with exact integer arithmetic on 128 bits; zero, subnormals, the values outside
// that range and the special values go through the standard library's exact formatter,
// which takes about three times as long.
//
// v = m * 2^e exactly (m < 2^53). With k = floor(log10 v), the 21 digits are
// D = v * 10^(20 - k) rounded to an integer, which lies in [10^20, 10^21]. For p = 20 - k
// from 0 to 27, v * 10^p = m * 5^p * 2^(e + p), where m * 5^p < 2^53 * 2^63 fits in 128
// bits: a shift gives the integer part and the bits shifted out the exact remainder. For
// p from -27 to -1, v * 10^p = (m * 2^(e + p)) / 5^-p (e + p >= 0 there, since v >= 1e21
// means e >= 17): one division with remainder. The remainder against one half decides the
// rounding, ties to even as printf rounds in the default rounding mode.
#include "access/real_text.h"

#include <charconv>
#include <cstdint>
#include <cstring>

namespace odbs {

namespace {

using u128 = unsigned __int128;

constexpr int kMaxFivePower = 27;  // 5^27 < 2^63

constexpr uint64_t fivePower(int n) {
  uint64_t r = 1;
  for (int i = 0; i < n; ++i) r *= 5;
  return r;
}

constexpr uint64_t kTen10 = 10000000000ULL;
constexpr uint64_t kTen20Hi = 10000000000ULL;   // 10^20 = kTen20Hi * 10^10
constexpr uint64_t kTen21Hi = 100000000000ULL;  // 10^21 = kTen21Hi * 10^10

// The integer part of v * 10^p and whether the rest is below, at or above one half (-1, 0,
// 1). False when p or the shift is outside what 128 bits hold exactly.
bool scaled(uint64_t m, int e, int p, u128* whole, int* rest) {
  if (p >= 0) {
    if (p > kMaxFivePower) return false;
    u128 a = static_cast<u128>(m) * fivePower(p);
    int shift = e + p;
    if (shift >= 0) {
      if (shift > 127 - 116) return false;  // a < 2^116
      *whole = a << shift;
      *rest = -1;  // exact: no remainder
      return true;
    }
    int s = -shift;
    if (s > 120) return false;
    *whole = a >> s;
    u128 below = a & ((static_cast<u128>(1) << s) - 1);
    u128 half = static_cast<u128>(1) << (s - 1);
    *rest = below < half ? -1 : below == half ? 0 : 1;
    return true;
  }
  int q = -p;
  int shift = e - q;
  if (q > kMaxFivePower || shift < 0 || shift > 127 - 53) return false;
  u128 num = static_cast<u128>(m) << shift;
  uint64_t den = fivePower(q);
  *whole = num / den;
  uint64_t r = static_cast<uint64_t>(num % den);
  // den is odd: twice the remainder is never exactly den, so there is no tie.
  *rest = 2 * static_cast<u128>(r) < den ? -1 : 1;
  return true;
}

// "00" to "99".
constexpr char kPairs[] =
    "00010203040506070809101112131415161718192021222324252627282930313233343536373839"
    "40414243444546474849505152535455565758596061626364656667686970717273747576777879"
    "8081828384858687888990919293949596979899";

// Writes the n digits of v (v < 10^n), with leading zeros, two at a time.
void putDigits(uint64_t v, int n, char* out) {
  for (; n >= 2; n -= 2) {
    std::memcpy(out + n - 2, kPairs + 2 * (v % 100), 2);
    v /= 100;
  }
  if (n == 1) out[0] = char('0' + v);
}

// The exact path. False when v is outside its range (the caller falls back).
bool formatExact(double v, char* out, char** end) {
  uint64_t bits;
  std::memcpy(&bits, &v, sizeof bits);
  int biased = static_cast<int>((bits >> 52) & 0x7FF);
  if (biased == 0 || biased == 0x7FF) return false;  // zero, subnormal, INF, NAN
  uint64_t m = (bits & ((uint64_t(1) << 52) - 1)) | (uint64_t(1) << 52);
  int e = biased - 1075;
  // v lies in [2^(e + 52), 2^(e + 53)), so floor(log10 v) is floor((e + 52) * log10(2)) or
  // one more. The estimate k, from 78913 / 2^18 (a little below log10(2)), is never above
  // it and at most three below: too low shows as more than 21 digits and is raised.
  int x = e + 52;
  int k = x >= 0 ? (x * 78913) >> 18 : -(((-x) * 78913) >> 18) - 2;
  const u128 ten20 = static_cast<u128>(kTen20Hi) * kTen10;
  const u128 ten21 = static_cast<u128>(kTen21Hi) * kTen10;
  u128 whole;
  int rest;
  if (!scaled(m, e, 20 - k, &whole, &rest)) return false;
  while (whole >= ten21)
    if (!scaled(m, e, 20 - ++k, &whole, &rest)) return false;
  if (whole < ten20 || whole >= ten21) return false;  // not expected; the fallback is exact
  if (rest > 0 || (rest == 0 && (whole & 1) != 0)) ++whole;
  if (whole == ten21) {
    whole = ten20;
    ++k;
  }
  char* p = out;
  if (bits >> 63) *p++ = '-';
  // whole < 10^21 < 2^70: its first 11 digits are (whole / 2^10) / 5^10, on 64 bits.
  uint64_t high = static_cast<uint64_t>(whole >> 10) / fivePower(10);
  uint64_t low = static_cast<uint64_t>(whole - static_cast<u128>(high) * kTen10);
  char digits[21];
  putDigits(high, 11, digits);
  putDigits(low, 10, digits + 11);
  *p++ = digits[0];
  *p++ = '.';
  std::memcpy(p, digits + 1, 20);
  p += 20;
  *p++ = 'E';
  *p++ = k < 0 ? '-' : '+';
  int a = k < 0 ? -k : k;
  if (a >= 100) *p++ = char('0' + a / 100);
  *p++ = char('0' + a / 10 % 10);
  *p++ = char('0' + a % 10);
  *end = p;
  return true;
}

}  // namespace

char* formatRealE20(double v, char* out) {
  char* end;
  if (formatExact(v, out, &end)) return end;
  std::to_chars_result r =
      std::to_chars(out, out + kRealE20Size, v, std::chars_format::scientific, 20);
  // Only letters need changing ('e', "inf", "nan"): lower case to upper case by hand.
  for (char* p = out; p != r.ptr; ++p)
    if (*p >= 'a' && *p <= 'z') *p = char(*p - 'a' + 'A');
  return r.ptr;
}

}  // namespace odbs
