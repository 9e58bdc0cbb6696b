// CSV and JSON tables: quoting, full-precision numbers, values that are not finite, and
// JSON that a JSON parser reads back.
#include "tools/common/table_writer.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <nlohmann/json.hpp>
#include <sstream>

#include "tools/common/number_text.h"

namespace odbs::tools {
namespace {

void fill(TableWriter& t) {
  t.cell("PART-1").cell(7).cell(0.1f).cell(1.0 / 3.0).endRow();
  t.cell("a \"quoted\", name").cell(-2).cell(std::numeric_limits<float>::quiet_NaN());
  t.endRow();  // the last cell left empty
}

TEST(TableWriter, CsvQuotesTextsAndKeepsEveryDigit) {
  std::ostringstream out;
  {
    TableWriter t(out, TableFormat::kCsv, {"instance", "node", "U1", "ratio"});
    fill(t);
  }
  EXPECT_EQ(out.str(),
            "instance,node,U1,ratio\n"
            "PART-1,7,0.1,0.3333333333333333\n"
            "\"a \"\"quoted\"\", name\",-2,nan,\n");
}

TEST(TableWriter, JsonReadsBackWithTheSameValues) {
  std::ostringstream out;
  TableWriter t(out, TableFormat::kJson, {"instance", "node", "U1", "ratio"});
  fill(t);
  t.finish();
  nlohmann::json j = nlohmann::json::parse(out.str());
  ASSERT_EQ(j.size(), 2u);
  EXPECT_EQ(j[0]["instance"], "PART-1");
  EXPECT_EQ(j[0]["node"], 7);
  EXPECT_EQ(static_cast<float>(j[0]["U1"].get<double>()), 0.1f);
  EXPECT_EQ(j[0]["ratio"].get<double>(), 1.0 / 3.0);
  EXPECT_EQ(j[1]["instance"], "a \"quoted\", name");
  EXPECT_TRUE(j[1]["U1"].is_null());
  EXPECT_TRUE(j[1]["ratio"].is_null());
  // Keys in column order, one row per line.
  EXPECT_EQ(out.str().find("{\"instance\":\"PART-1\",\"node\":7,\"U1\":0.1,"), 2u) << out.str();
}

TEST(TableWriter, EmptyTablesAndTooManyCells) {
  std::ostringstream json, csv;
  TableWriter(json, TableFormat::kJson, {"a"}).finish();
  EXPECT_EQ(json.str(), "[]\n");
  TableWriter(csv, TableFormat::kCsv, {"a", "b"}).finish();
  EXPECT_EQ(csv.str(), "a,b\n");
  std::ostringstream out;
  TableWriter t(out, TableFormat::kCsv, {"a"});
  t.cell(1);
  EXPECT_THROW(t.cell(2), std::logic_error);
}

TEST(NumberText, ShortestTextThatReadsBack) {
  EXPECT_EQ(formatNumber(16777217.0), "16777217");
  EXPECT_EQ(formatNumber(1.0f / 3.0f), "0.33333334");
  EXPECT_EQ(formatNumber(-std::numeric_limits<double>::infinity()), "-inf");
  EXPECT_EQ(shortestDouble(0.1f), 0.1);
}

}  // namespace
}  // namespace odbs::tools
