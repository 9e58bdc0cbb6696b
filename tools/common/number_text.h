// Numbers as text with every digit that matters: the shortest decimal text that reads back
// as the same value, so that CSV and JSON output loses nothing of the stored precision.
#pragma once

#include <string>

namespace odbs::tools {

// Shortest "%g"-style text of a float that reads back as the same float; "nan", "inf" and
// "-inf" for the values that are not finite.
std::string formatNumber(float v);
// The same for a double.
std::string formatNumber(double v);

// The double nearest to the shortest text of v: a float widened this way prints as the
// float's own short text (0.1f as 0.1, not 0.100000001490116) in writers that print
// doubles with their shortest round-trip text.
double shortestDouble(float v);

}  // namespace odbs::tools
