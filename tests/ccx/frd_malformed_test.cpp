// Damaged result files: every truncation of a real file is an error with a place, never a
// crash or a silent partial read; damaged headers name what was expected.
#include <gtest/gtest.h>

#include "tests/ccx/test_files.h"
#include "tools/ccx/frd_parser.h"
#include "tools/ccx/parse_error.h"

namespace odbs::ccx {
namespace {

using test::dataFile;
using test::readWhole;

TEST(FrdMalformed, EveryTruncationOfABinaryOrTextFileFails) {
  test::ScratchDir dir;
  for (const char* fixture : {"beam_steps.frd", "strip_modes.frd"}) {
    std::string whole = readWhole(dataFile(fixture));
    ASSERT_GT(whole.size(), 1000u);
    // The last line " 9999\n" marks a complete file; cut anywhere before it.
    const size_t end = whole.size() - 6, cuts = 60;
    for (size_t i = 1; i <= cuts; ++i) {
      size_t at = end * i / (cuts + 1) + i % 7;
      SCOPED_TRACE(std::string(fixture) + " cut at byte " + std::to_string(at));
      std::string path = dir.write("cut.frd", whole.substr(0, at));
      Warnings warnings;
      try {
        readFrdFile(path, warnings);
        ADD_FAILURE() << "a truncated file was read without error";
      } catch (const ParseError& e) {
        EXPECT_NE(std::string(e.what()).find("cut.frd"), std::string::npos) << e.what();
      }
    }
  }
}

const char* kHead = "    1C\n    1UTitle\n";

struct Bad {
  const char* what;
  std::string text;
  int line;
  const char* expected;
};

TEST(FrdMalformed, DamagedHeadersNameWhatWasExpected) {
  const std::string block =
      "    1PSTEP                         1           1           1\n"
      "  100CL  101 1.000000000           1                     0    1           1\n";
  const Bad bad[] = {
      {"node count beyond the file", std::string(kHead) + "    2C    999999999    3\n", 3,
       "999999999 nodes in the rest of the file"},
      {"node format", std::string(kHead) + "    2C    1    7\n", 3, "node block format"},
      {"node coordinates", std::string(kHead) + "    2C    1    1\n -1         1 1.0\n", 4,
       "three node coordinates"},
      {"element type", std::string(kHead) + "    3C    1    1\n -1         1   99    0    1\n", 4,
       "a known element type code"},
      {"block value", std::string(kHead) + "  100CL  101 abc\n", 3, "a step time or frequency"},
      {"missing name line", std::string(kHead) + block + " -5  D1\n", 5,
       "a -4 line naming the result block"},
      {"component line",
       std::string(kHead) + block +
           " -4  DISP        2    1\n -5  D1          1    2    1    0\n -1\n",
       7, "a -5 line describing component 2 of DISP"},
      {"value line",
       std::string(kHead) + block +
           " -4  DISP        1    1\n -5  D1          1    2    1    0\n -1         1 "
           "x.00000E+00\n",
       7, "1 values of block DISP for node 1"},
      {"missing end", std::string(kHead), 2, "the end line 9999"},
  };
  test::ScratchDir dir;
  for (const Bad& b : bad) {
    SCOPED_TRACE(b.what);
    Warnings warnings;
    test::expectParseError([&] { readFrdFile(dir.write("bad.frd", b.text), warnings); }, b.line,
                           b.expected);
  }
}

TEST(FrdMalformed, UnknownBlocksAndLinesAreSkippedWithOneWarning) {
  test::ScratchDir dir;
  std::string text = std::string(kHead) +
                     "    4C   odd block\n -1 stuff\n -3\n    4C\n -3\n"
                     "    7Zsomething\n    7Zmore\n"
                     "    2C                             1                                     1\n"
                     " -1         5 1.00000E+00 2.00000E+00 3.00000E+00\n -3\n 9999\n";
  Warnings warnings;
  FrdFile file = readFrdFile(dir.write("odd.frd", text), warnings);
  EXPECT_EQ(warnings.texts().size(), 2u);
  EXPECT_EQ(warnings.count("frd-block:4C"), 2);
  ASSERT_EQ(file.nodes.size(), 1u);
  EXPECT_EQ(file.nodes[0].label, 5);
  EXPECT_DOUBLE_EQ(file.nodes[0].z, 3.0);
  EXPECT_EQ(file.header.title, "Title");
}

}  // namespace
}  // namespace odbs::ccx
