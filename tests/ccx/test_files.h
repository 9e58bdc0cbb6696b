// Helpers of the CalculiX parser tests: where the fixtures are, and scratch folders.
#pragma once

#include <gtest/gtest.h>

#include <string>

#include "tests/support/scratch_dir.h"
#include "tools/ccx/parse_error.h"

namespace odbs::ccx::test {

// Path of a committed result fixture (tests/data/ccx/<name>) or example deck
// (examples/<name>).
std::string dataFile(const std::string& name);
std::string exampleFile(const std::string& name);

std::string readWhole(const std::string& path);

using odbs::test::ScratchDir;

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
