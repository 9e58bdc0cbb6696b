// The result file's large text blocks, which are read in pieces on two threads: a generated
// file of several read buffers (records of two and three lines among them, Windows line
// ends) reads to the values it was written from, and a damaged or cut-off line deep in a
// block is reported at its own line. Also the piece runner's contract.
#include <gtest/gtest.h>

#include <atomic>
#include <cstdio>
#include <stdexcept>
#include <string>
#include <vector>

#include "platform/piece_runner.h"
#include "tests/ccx/test_files.h"
#include "tools/ccx/frd_parser.h"

namespace odbs::ccx {
namespace {

constexpr int kNodes = 20000, kElements = 4000, kStored = 8;

// Coordinate k of node n and its stress component k: exact in E12.5 and in a float.
double value(int node, int k) {
  return (node % 1000) * 0.25 + k;
}
int elementNode(int element, int k) {
  return (element + k) % kNodes + 1;
}

// A result file of kNodes nodes, kElements 20-node bricks (two -2 lines each) and one
// block of kStored components (two lines per row).
std::string generate(const char* lineEnd) {
  std::string text;
  char buf[160];
  auto add = [&](const std::string& line) { text += line + lineEnd; };
  add("    1C");
  add("    1UBulk");
  std::snprintf(buf, sizeof buf, "    2C%30d%37d", kNodes, 1);
  add(buf);
  for (int n = 1; n <= kNodes; ++n) {
    std::snprintf(buf, sizeof buf, " -1%10d%12.5E%12.5E%12.5E", n, value(n, 0), value(n, 1),
                  value(n, 2));
    add(buf);
  }
  add(" -3");
  std::snprintf(buf, sizeof buf, "    3C%30d%37d", kElements, 1);
  add(buf);
  for (int e = 1; e <= kElements; ++e) {
    std::snprintf(buf, sizeof buf, " -1%10d%5d%5d%5d", e, 4, 0, 1);
    add(buf);
    for (int part = 0; part < 2; ++part) {
      std::string labels = " -2";
      for (int k = 10 * part; k < 10 * part + 10; ++k) {
        std::snprintf(buf, sizeof buf, "%10d", elementNode(e, k));
        labels += buf;
      }
      add(labels);
    }
  }
  add(" -3");
  add("    1PSTEP                         1           1           1");
  std::snprintf(buf, sizeof buf, "  100CL  101 1.000000000%12d                     0    1%11d",
                kNodes, 1);
  add(buf);
  std::snprintf(buf, sizeof buf, " -4  STRESS%8d    1", kStored);
  add(buf);
  for (int c = 0; c < kStored; ++c) {
    std::snprintf(buf, sizeof buf, " -5  C%-7d%5d%5d%5d%5d", c + 1, 1, 1, c + 1, 0);
    add(buf);
  }
  for (int n = 1; n <= kNodes; ++n) {
    std::snprintf(buf, sizeof buf, " -1%10d", n);
    std::string row = buf;
    for (int c = 0; c < 6; ++c) {
      std::snprintf(buf, sizeof buf, "%12.5E", value(n, c));
      row += buf;
    }
    add(row);
    std::snprintf(buf, sizeof buf, " -2%10s%12.5E%12.5E", "", value(n, 6), value(n, 7));
    add(buf);
  }
  add(" -3");
  add(" 9999");
  return text;
}

TEST(FrdBulk, LargeBlocksReadToTheirValuesWithEitherLineEnd) {
  test::ScratchDir dir;
  for (const char* lineEnd : {"\n", "\r\n"}) {
    SCOPED_TRACE(lineEnd[0] == '\r' ? "CRLF" : "LF");
    Warnings warnings;
    FrdFile file = readFrdFile(dir.write("bulk.frd", generate(lineEnd)), warnings);
    EXPECT_TRUE(warnings.texts().empty());
    ASSERT_EQ(file.nodes.size(), size_t(kNodes));
    for (int n = 1; n <= kNodes; ++n) {
      const FrdNode& node = file.nodes[n - 1];
      ASSERT_EQ(node.label, n);
      ASSERT_EQ(node.x, value(n, 0)) << n;
      ASSERT_EQ(node.z, value(n, 2)) << n;
    }
    ASSERT_EQ(file.elements.size(), size_t(kElements));
    for (int e = 1; e <= kElements; ++e) {
      const FrdElement& element = file.elements[e - 1];
      ASSERT_EQ(element.label, e);
      ASSERT_EQ(element.typeCode, 4);
      ASSERT_EQ(element.nodes.size(), 20u);
      for (int k = 0; k < 20; ++k) ASSERT_EQ(element.nodes[k], elementNode(e, k)) << e;
    }
    ASSERT_EQ(file.blocks.size(), 1u);
    const FrdBlock& block = file.blocks[0];
    ASSERT_EQ(block.nodes.size(), size_t(kNodes));
    ASSERT_EQ(block.values.size(), size_t(kNodes) * kStored);
    for (int n = 1; n <= kNodes; ++n) {
      ASSERT_EQ(block.nodes[n - 1], n);
      for (int c = 0; c < kStored; ++c)
        ASSERT_EQ(block.values[(n - 1) * kStored + c], static_cast<float>(value(n, c)))
            << n << " " << c;
    }
  }
}

TEST(FrdBulk, DamageDeepInALargeBlockIsReportedAtItsLine) {
  test::ScratchDir dir;
  // The second line of node 12345's row, its 7th component not a number: after 3 header,
  // kNodes + 1 node, 1 + 3 kElements + 1 element and 3 + kStored block lines, 12344 rows.
  std::string whole = generate("\n"), damaged = whole;
  damaged[damaged.find(" -2", damaged.rfind(" -1     12345")) + 14] = 'x';
  const int damagedLine =
      3 + (kNodes + 1) + (1 + 3 * kElements + 1) + (3 + kStored) + 2 * 12344 + 2;
  Warnings warnings;
  test::expectParseError([&] { readFrdFile(dir.write("bad.frd", damaged), warnings); }, damagedLine,
                         "8 values of block STRESS for node 12345");
  // Cut inside the element block: the 2,001st element has its -1 line and one of its
  // two -2 lines.
  size_t elements = whole.find("    3C");
  size_t cut = elements;
  for (int lines = 0; lines < 1 + 3 * 2000 + 2; ++lines) cut = whole.find('\n', cut) + 1;
  const int cutLine = 3 + kNodes + 1 + 1 + 3 * 2000 + 2;
  test::expectParseError([&] { readFrdFile(dir.write("cut.frd", whole.substr(0, cut)), warnings); },
                         cutLine, "a -2 line with the nodes of an element");
}

TEST(PieceRunner, EveryPieceOnceAndTheFirstErrorAfterAll) {
  platform::PieceRunner runner;
  for (size_t count : {size_t(0), size_t(1), size_t(2), size_t(1000)}) {
    std::vector<std::atomic<int>> calls(count);
    runner.run(count, [&](size_t i) { ++calls[i]; });
    for (size_t i = 0; i < count; ++i) ASSERT_EQ(calls[i].load(), 1) << count << " " << i;
  }
  std::atomic<int> done{0};
  EXPECT_THROW(runner.run(64,
                          [&](size_t i) {
                            ++done;
                            if (i % 16 == 3) throw std::runtime_error("piece");
                          }),
               std::runtime_error);
  EXPECT_EQ(done.load(), 64);
}

}  // namespace
}  // namespace odbs::ccx
