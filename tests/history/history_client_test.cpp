// The client side of the history and contact output: decoders, the regrouping of value
// records into samples, the CSV text and the SVG plot of odb_cli history.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cfloat>
#include <cmath>
#include <sstream>

#include "client/client_error.h"
#include "client/contact_records.h"
#include "client/history_records.h"
#include "tests/history/history_fixture.h"
#include "tests/model/model_fixture.h"
#include "tools/cli/history_command.h"
#include "tools/cli/svg_plot.h"
#include "wire/record_types.h"

namespace odbs::test {
namespace {

std::vector<client::Record> records(const Frames& f) {
  return splitRecords(f.bytes());
}

client::Record one(Frames f) {
  return records(f).at(0);
}

TEST(HistoryDecoders, StepRegionOutputAndValue) {
  auto step = client::decodeHistoryStep(
      one(Frames().begin(kRecHistoryStep).u32(2).u32(1).f64(0.125).text("Step-2").text("d")));
  EXPECT_TRUE(step.number == 2 && step.domain == 1 && step.totalTime == 0.125);
  EXPECT_EQ(step.name + "|" + step.description, "Step-2|d");
  auto region = client::decodeHistoryRegion(
      one(Frames().begin(kRecHistoryRegion).text("Node P.5").text("").u32(6).i32(9).i32(1).i32(0)));
  EXPECT_EQ(region.name, "Node P.5");
  EXPECT_STREQ(client::historyPositionName(region.positionCode), "whole element");
  EXPECT_EQ(region.values[1], 1);
  auto output = client::decodeHistoryOutput(
      one(Frames().begin(kRecHistoryOutput).text("U1").text("disp").u32(2).u32(1)));
  EXPECT_TRUE(output.name == "U1" && output.type == 2 && output.conjugate);

  EXPECT_EQ(client::decodeHistoryValue(one(Frames().begin(kRecHistoryValue).f32(-2.5f))), -2.5f);
}

TEST(HistoryDecoders, MalformedBodiesAreRejected) {
  // One byte short, one byte too many, a text count past the end, another type.
  EXPECT_THROW(client::decodeHistoryStep(one(Frames().begin(kRecHistoryStep).u32(1).u32(0))),
               client::DecodeError);
  EXPECT_THROW(client::decodeHistoryValue(one(Frames().begin(kRecHistoryValue).f32(1).u32(0))),
               client::DecodeError);
  client::Record bad = one(Frames().begin(kRecHistoryOutput).u32(99));
  EXPECT_THROW(client::decodeHistoryOutput(bad), client::DecodeError);
  EXPECT_THROW(client::decodeHistoryValue(one(Frames().begin(kRecTitle).f32(1))),
               client::DecodeError);
}

TEST(HistoryCollector, RegroupsValuesBySampleWidth) {
  Frames f;
  f.begin(kRecHistoryStep).u32(1).u32(0).f64(0).text("S").text("");
  f.begin(kRecHistoryRegion).text("A").text("").u32(1).i32(1).i32(0).i32(0);
  f.begin(kRecHistoryOutput).text("U1").text("").u32(2).u32(0);
  f.values(kRecHistoryValue, {0, 1, 0.5f, 2, 1});  // two samples and a stray value
  f.begin(kRecHistoryRegion).text("B").text("").u32(0).i32(0).i32(0).i32(0);
  f.begin(kRecHistoryOutput).text("C").text("").u32(2).u32(1);
  f.values(kRecHistoryValue, {0, 1, -1, 2, 3, -3});
  f.begin(kRecEnd);
  client::HistoryCollector c;
  for (const auto& r : records(f)) c.add(r);
  ASSERT_EQ(c.series().size(), 2u);
  const auto& a = c.series()[0];
  ASSERT_EQ(a.samples.size(), 2u);
  EXPECT_TRUE(a.samples[1].frameValue == 0.5f && a.samples[1].value == 2.f);
  EXPECT_EQ(a.trailingValues, 1u);
  const auto& b = c.series()[1];
  EXPECT_EQ(b.region.name, "B");
  ASSERT_EQ(b.samples.size(), 2u);
  EXPECT_TRUE(b.samples[1].frameValue == 2.f && b.samples[1].value == 3.f &&
              b.samples[1].conjugate == -3.f);
  EXPECT_EQ(b.trailingValues, 0u);

  client::HistoryCollector early;
  EXPECT_THROW(early.add(one(Frames().begin(kRecHistoryValue).f32(1))), client::DecodeError);
}

TEST(ContactDecoders, RowsRotationsAndStatus) {
  auto real = client::decodeContactRow(one(Frames().begin(kRecRealValue).i32(7).f32(1).f32(2)));
  EXPECT_TRUE(real.kind == client::ContactRowKind::kField && !real.complex && real.label == 7);
  EXPECT_EQ(real.values, (std::vector<float>{1, 2}));

  auto complex = client::decodeContactRow(
      one(Frames().begin(kRecRotation2Complex).i32(-3).f32(1).f32(2).f32(3).f32(4)));
  EXPECT_TRUE(complex.kind == client::ContactRowKind::kRotation2 && complex.complex);
  EXPECT_EQ(complex.label, -3);
  EXPECT_EQ(complex.values, (std::vector<float>{1, 2}));
  EXPECT_EQ(complex.conjugates, (std::vector<float>{3, 4}));

  // A complex row needs pairs; a row needs its label.
  for (const client::Record& bad :
       {one(Frames().begin(kRecComplexValue).i32(1).f32(1)),
        client::Record{kRecRotationReal, {1, 2}}, one(Frames().begin(kRecTitle).i32(1))}) {
    EXPECT_THROW(client::decodeContactRow(bad), client::DecodeError);
  }

  auto status = client::decodeElementStatus(one(Frames().begin(kRecElementStatus).i32(11).f32(1)));
  EXPECT_TRUE(status.element == 11 && status.value == 1.f);
}

// Floats in their shortest text that reads back to the same float.
TEST(HistoryCsv, FullPrecisionAndQuotedNames) {
  client::HistorySeries plain;
  plain.step.number = 2;
  plain.step.totalTime = 2.0;
  plain.region.name = "Node PART-1.5";
  plain.output.name = "U1";
  plain.samples = {{0.1f, 1.0f / 3.0f, 0}, {16777216.f, -FLT_MAX, 0}};
  client::HistorySeries complex;
  complex.step.number = 1;
  complex.region.name = "a,\"b\"";
  complex.output.name = "C";
  complex.output.conjugate = true;
  complex.step.domain = 1;  // frequency: no total time
  complex.samples = {{1, 2, -0.5f}};
  std::ostringstream out;
  cli::writeHistoryCsv({plain, complex}, out);
  EXPECT_EQ(out.str(),
            "step,region,output,frame_value,total_time,value,conjugate\n"
            "2,Node PART-1.5,U1,0.1,2.100000001490116,0.33333334,\n"
            "2,Node PART-1.5,U1,16777216,16777218,-3.4028235e+38,\n"
            "1,\"a,\"\"b\"\"\",C,1,,2,-0.5\n");
}

TEST(SvgPlot, TicksAreRoundAndCoverTheRange) {
  using V = std::vector<double>;
  using ::testing::DoubleNear;
  using ::testing::Pointwise;
  EXPECT_THAT(cli::niceTicks(0, 1), Pointwise(DoubleNear(1e-9), V{0, 0.2, 0.4, 0.6, 0.8, 1}));
  EXPECT_THAT(cli::niceTicks(-7, 43), Pointwise(DoubleNear(1e-9), V{-10, 0, 10, 20, 30, 40, 50}));
  // A flat series still gets an axis: 3 +- 0.3 in steps of 0.1.
  EXPECT_THAT(cli::niceTicks(3, 3),
              Pointwise(DoubleNear(1e-9), V{2.7, 2.8, 2.9, 3, 3.1, 3.2, 3.3}));
  EXPECT_THAT(cli::niceTicks(0, 0), Pointwise(DoubleNear(1e-9), V{-1, -0.5, 0, 0.5, 1}));
}

TEST(SvgPlot, OnePolylinePerSeriesWithEscapedLabels) {
  cli::PlotSeries a{"A <1>", {0, 1, 2}, {0, 1, 4}};
  cli::PlotSeries b{"B & C", {0, 1, std::nan("")}, {1, 1, 1}};
  std::string svg = cli::renderSvgPlot({a, b}, {"t", "x", "y", 400, 300});
  size_t polylines = 0;
  for (size_t p = svg.find("<polyline"); p != std::string::npos; p = svg.find("<polyline", p + 1))
    ++polylines;
  EXPECT_EQ(polylines, 2u);
  EXPECT_NE(svg.find("A &lt;1&gt;"), std::string::npos);
  EXPECT_NE(svg.find("B &amp; C"), std::string::npos);
  EXPECT_EQ(svg.find("nan"), std::string::npos);
  EXPECT_EQ(svg.rfind("</svg>\n"), svg.size() - 7);
}

}  // namespace
}  // namespace odbs::test
