// Number fields of the decks and result files: what counts as one number.
#include "tools/ccx/text.h"

#include <gtest/gtest.h>

#include <cmath>

namespace odbs::ccx {
namespace {

TEST(TextNumbers, IntegersWithBlanksAndSigns) {
  EXPECT_EQ(toInteger(" 12 "), 12);
  EXPECT_EQ(toInteger("\t5\r\n"), 5);
  EXPECT_EQ(toInteger("+7"), 7);
  EXPECT_EQ(toInteger("-3"), -3);
  EXPECT_EQ(toInteger("000042"), 42);
  EXPECT_EQ(toInteger("-2147483648"), -2147483648LL);
  // Up to the range of a 64-bit integer, and not beyond it.
  EXPECT_EQ(toInteger("1234567890123456789"), 1234567890123456789LL);
  EXPECT_EQ(toInteger("-9223372036854775808"), INT64_MIN);
  EXPECT_FALSE(toInteger("9223372036854775808"));
  EXPECT_FALSE(toInteger("99999999999999999999"));
  for (const char* bad : {"", "   ", "-", "+", "1.5", "12a", "1 2", "+-5", "0x10"}) {
    EXPECT_FALSE(toInteger(bad)) << bad;
  }
  // An exponent with more digits than any double needs rounds to infinity, which the
  // callers refuse (the fuzzer's "1E2222222222" once overflowed the exponent's counter).
  EXPECT_EQ(toDouble("1E2222222222"), HUGE_VAL);
  float f = 0;
  EXPECT_TRUE(parseFloatField("  -1.5E2222222222", &f));
  EXPECT_EQ(f, -HUGE_VALF);
  EXPECT_EQ(toDouble("1.5E+003"), 1500.0);
  long long v = 0;
  EXPECT_TRUE(parseIntField("     12345", &v));
  EXPECT_EQ(v, 12345);
  EXPECT_FALSE(parseIntField("          ", &v));
}

// The fast paths of the result file's columns: the solver's exact forms only, and the same
// values as the general parsers.
TEST(TextNumbers, ResultFileColumns) {
  float f = 0;
  double d = 0;
  ASSERT_TRUE(parseE125(" 1.23456E+02", &f));
  EXPECT_EQ(f, 123.456f);
  ASSERT_TRUE(parseE125("-2.50000E-01", &d));
  EXPECT_EQ(d, -0.25);
  ASSERT_TRUE(parseE125("-0.00000E+00", &f));
  EXPECT_TRUE(f == 0 && std::signbit(f));
  // 67108900 lies halfway between the floats 67108896 and 67108904 (8 apart above 2^26):
  // the tie goes to the even one, 67108896.
  float halfway = 0;
  EXPECT_TRUE(parseE125(" 6.71089E+07", &halfway) || parseFloatField(" 6.71089E+07", &halfway));
  EXPECT_EQ(halfway, 67108896.0f);
  for (const char* other : {"+1.00000E+00", " 1.00000D+00", " 1.00000E-18", "1.00000E+00 ",
                            " 1.0000E+000", " 1,00000E+00"}) {
    EXPECT_FALSE(parseE125(other, &f)) << other;
  }
  long long v = 0;
  ASSERT_TRUE(parseLabel10("         7", &v));
  EXPECT_EQ(v, 7);
  ASSERT_TRUE(parseLabel10("  12345678", &v));
  EXPECT_EQ(v, 12345678);
  for (const char* other :
       {"          ", " 123456789", "  1234 567", "     1234 ", "     -1234", "0000000012"}) {
    EXPECT_FALSE(parseLabel10(other, &v)) << other;
  }
}

}  // namespace
}  // namespace odbs::ccx
