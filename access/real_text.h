// Floating-point values as the catalogue's cache file writes them: exactly the bytes of
// printf's "%.20E", without printf.
#pragma once

#include <cstddef>

namespace odbs {

// The longest text formatRealE20 writes: sign, 21 digits, point, 'E', exponent sign and
// three exponent digits.
inline constexpr size_t kRealE20Size = 28;

// Writes v to out as "%.20E" does: the exact binary value rounded to 21 significant digits
// (ties to even), one digit before the point, an upper-case E and a signed exponent of at
// least two digits; "INF", "-INF", "NAN" and "-NAN" for the special values. Returns the end
// of what it wrote (at most kRealE20Size bytes, no terminating zero).
char* formatRealE20(double v, char* out);

}  // namespace odbs
