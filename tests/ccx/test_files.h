// Helpers of the CalculiX parser tests: where the fixtures are, and scratch folders.
#pragma once

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "tests/support/scratch_dir.h"
#include "tools/ccx/parse_error.h"

namespace odbs::ccx::test {

// Path of a committed result fixture (tests/data/ccx/<name>) or example deck
// (examples/<name>).
std::string dataFile(const std::string& name);
std::string exampleFile(const std::string& name);

std::string readWhole(const std::string& path);

using odbs::test::ScratchDir;

// The lines of a deck whose *NODE and *ELEMENT cards span several of the parser's 256 KB
// read buffers: node n (1 to nodes) at (n / 4, -n, n % 7 + 0.5), written as short decimals
// ("13, 3.25, -13., 6.5"), in two *NODE, NSET=ALL cards with "*NSET, NSET=MID" and "1, 2"
// between them after node nodes / 2; then *ELEMENT, TYPE=C3D8, ELSET=BRICKS with brick e
// (1 to elements, at most nodes - 7) on nodes e to e + 7. A comment line comes before every
// 1000th node and brick, a blank line before every 1500th. Then, when quads > 0,
// *ELEMENT, TYPE=C3D20, ELSET=QUADS with element 100000 + q (q from 1 to quads, at most
// nodes - 19) on nodes q to q + 19: 15 on its first line, 5 on the next, a comment line
// between the two for every 1000th. Line numbers (from 1) of node n, brick e and the first
// line of quad q: nodeLine[n], brickLine[e], quadLine[q].
struct LargeMesh {
  std::vector<std::string> lines;
  std::vector<int> nodeLine, brickLine, quadLine;
  // The lines, each ended by lineEnd.
  std::string text(const std::string& lineEnd = "\n") const;
};
LargeMesh largeMesh(int nodes, int elements, int quads = 0);

// Runs parse, which must throw a ParseError at line whose message holds expected; returns
// the message ("" when nothing was thrown).
template <typename Parse>
std::string expectParseError(Parse parse, int line, const std::string& expected) {
  try {
    parse();
    ADD_FAILURE() << "no error";
    return "";
  } catch (const ParseError& e) {
    EXPECT_EQ(e.line(), line) << e.what();
    EXPECT_NE(std::string(e.what()).find(expected), std::string::npos) << e.what();
    return e.what();
  }
}

}  // namespace odbs::ccx::test
