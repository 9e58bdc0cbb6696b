// Number fields of the decks and result files: what counts as one integer.
#include "tools/ccx/text.h"

#include <gtest/gtest.h>

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
  long long v = 0;
  EXPECT_TRUE(parseIntField("     12345", &v));
  EXPECT_EQ(v, 12345);
  EXPECT_FALSE(parseIntField("          ", &v));
}

}  // namespace
}  // namespace odbs::ccx
