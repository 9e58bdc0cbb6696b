// The history output of hi and hr: the position code table and point fields, the name
// list, and the walk over steps, regions and outputs, record by record.
#include "results/history_walk.h"

#include <gtest/gtest.h>

#include <stdexcept>

#include "results/history_point_fields.h"
#include "tests/history/history_fixture.h"
#include "tests/model/model_fixture.h"
#include "wire/record_types.h"

namespace odbs::test {
namespace {

// Steps, regions and outputs in memory; the unreadable ones throw when loaded.
odb_HistoryOutput historyOutput(const std::string& name, std::vector<float> data,
                                std::vector<float> conjugate = {}, int width = 2) {
  odb::HistoryOutputData d{name,  "desc " + name,  odb_Enum::SCALAR,
                           width, std::move(data), std::move(conjugate)};
  return odb_HistoryOutput(name, d.description, d.type, odb::Lazy<odb::HistoryOutputData>(d));
}

odb_HistoryOutput unreadableOutput(const std::string& name) {
  return odb_HistoryOutput(
      name, "", odb_Enum::SCALAR,
      odb::Lazy<odb::HistoryOutputData>(std::function<odb::HistoryOutputData()>(
          []() -> odb::HistoryOutputData { throw std::runtime_error("damaged samples"); })));
}

odb_HistoryRegion historyRegion(const std::string& name, const odb::HistoryPointData& point,
                                const std::vector<odb_HistoryOutput>& outputs) {
  odb_HistoryOutputRepository repo;
  for (const auto& o : outputs) repo.insert(o.name(), o);
  return odb_HistoryRegion(name, "", odb_HistoryPoint(point),
                           odb::Lazy<odb_HistoryOutputRepository>(std::move(repo)));
}

odb_HistoryRegion unreadableRegion(const std::string& name) {
  return odb_HistoryRegion(
      name, "", odb_HistoryPoint(pointAt(odb_Enum::NODAL, 1)),
      odb::Lazy<odb_HistoryOutputRepository>(std::function<odb_HistoryOutputRepository()>(
          []() -> odb_HistoryOutputRepository { throw std::runtime_error("damaged region"); })));
}

// Step "S" ("about S", total time 2.5) of domain with regions.
odb_Step historyStep(int domain, const std::vector<odb_HistoryRegion>& regions = {}) {
  odb::StepData d;
  d.name = "S";
  d.description = "about S";
  d.domain = domain;
  d.totalTime = 2.5;
  odb_HistoryRegionRepository repo;
  for (const auto& r : regions) repo.insert(r.name(), r);
  return odb_Step(d, odb_SequenceFrame(), odb::Lazy<odb_HistoryRegionRepository>(std::move(repo)));
}

// The code and the point's values by position. Positions 3, 5 and 8 share one branch: one
// case each, with negative and zero values.
TEST(HistoryPointFields, ValuesByRawPosition) {
  struct Case {
    int position, node, element, ip, sectionPoint;
    std::vector<int32_t> want;  // the code and the three values
  };
  const Case cases[] = {
      {1, 7, 9, 2, 3, {1, 7, 0, 0}},
      {1, -1, 9, 2, 3, {1, 0, 0, 0}},
      {2, 7, 9, 2, 3, {2, 7, 9, 0}},
      {2, -1, -4, 2, 3, {2, 0, 0, 0}},
      {3, 7, 9, 2, 3, {3, 9, 2, 3}},
      {5, 7, -9, -2, -1, {5, 0, -2, 0}},
      {8, 7, 9, 0, 0, {6, 9, 0, 0}},
      // Face and surface integration points: code 3 but none of the element-based values.
      {6, 7, 9, 2, 3, {3, 0, 0, 0}},
      {7, 7, 9, 2, 3, {3, 0, 0, 0}},
      {4, 7, 9, 2, 3, {4, 0, 0, 0}},
      // The codes past 6 keep their gaps up to position 15; outside 0..15 the code is 0.
      {15, 7, 9, 2, 3, {13, 0, 0, 0}},
      {16, 7, 9, 2, 3, {0, 0, 0, 0}},
      {-1, 7, 9, 2, 3, {0, 0, 0, 0}}};
  for (const Case& c : cases) {
    HistoryPointFields f = historyPointFields(c.position, c.node, c.element, c.ip, c.sectionPoint);
    EXPECT_EQ(
        (std::vector<int32_t>{static_cast<int32_t>(f.code), f.values[0], f.values[1], f.values[2]}),
        c.want)
        << "position " << c.position;
  }
}

TEST(HistoryNameList, SlotsFilledInOrderAndBoundedByTheCount) {
  HistoryNameList names;
  names.open(3);
  names.append("A");
  names.append("B b");
  EXPECT_EQ(names.capacity(), 3);
  EXPECT_EQ(names.filled(), (std::vector<std::string>{"A", "B b"}));
  names.append("C");
  names.append("D");  // past the announced count: ignored
  EXPECT_EQ(names.filled(), (std::vector<std::string>{"A", "B b", "C"}));
  names.open(1);  // a new list forgets the old names
  EXPECT_TRUE(names.filled().empty());
  names.open(-5);
  names.append("A");
  EXPECT_EQ(names.capacity(), 0);
  EXPECT_TRUE(names.filled().empty());
}

Frames& outputRecord(Frames& f, const std::string& name, uint32_t conjugate) {
  return f.begin(kRecHistoryOutput)
      .text(name)
      .text("desc " + name)
      .u32(odb_Enum::SCALAR)
      .u32(conjugate);
}

// The catalogue reads an output's data only for the conjugate flag of frequency and modal
// steps: an unreadable output of a time or arc length step is listed.
TEST(HistoryOutputWalk, CatalogueReadsTheDataOfFrequencyAndModalStepsOnly) {
  for (int domain : {odb_Enum::TIME, odb_Enum::ARC_LENGTH}) {
    Bytes got = capture([&](ReplyChannel& out) {
      walkHistoryOutput(historyStep(domain), unreadableOutput("U1"), false, out);
    });
    Frames f;
    f.begin(kRecHistoryOutput).text("U1").text("").u32(odb_Enum::SCALAR).u32(0);
    EXPECT_EQ(frameLines(got), frameLines(f.bytes())) << "domain " << domain;
  }
  for (int domain : {odb_Enum::FREQUENCY, odb_Enum::MODAL}) {
    odb_Step step = historyStep(domain);
    Bytes got = capture([&](ReplyChannel& out) {
      walkHistoryOutput(step, historyOutput("A", {1, 2}, {1, 3}), false, out);
      walkHistoryOutput(step, historyOutput("B", {1, 2}), false, out);
    });
    Frames f;
    outputRecord(f, "A", 1);
    outputRecord(f, "B", 0);
    EXPECT_EQ(frameLines(got), frameLines(f.bytes())) << "domain " << domain;
  }
}

TEST(HistoryOutputWalk, ValuesFollowTheOutputRecordSampleBySample) {
  odb_Step step = historyStep(odb_Enum::TIME);
  Bytes got = capture([&](ReplyChannel& out) {
    walkHistoryOutput(step, historyOutput("A", {0.f, 1.5f, 0.5f, 2.5f}), true, out);
    // Conjugate: the conjugate of the value follows each sample, its frame value is not sent.
    walkHistoryOutput(step, historyOutput("B", {0.f, 1.f, 2.f, 3.f}, {0.f, -1.f, 2.f, -3.f}), true,
                      out);
    // Three floats per sample are all sent.
    walkHistoryOutput(step, historyOutput("C", {1, 2, 3, 4, 5, 6}, {}, 3), true, out);
    walkHistoryOutput(step, historyOutput("Empty", {}), true, out);
  });
  Frames f;
  outputRecord(f, "A", 0).values(kRecHistoryValue, {0.f, 1.5f, 0.5f, 2.5f});
  outputRecord(f, "B", 1).values(kRecHistoryValue, {0.f, 1.f, -1.f, 2.f, 3.f, -3.f});
  outputRecord(f, "C", 0).values(kRecHistoryValue, {1, 2, 3, 4, 5, 6});
  outputRecord(f, "Empty", 0);
  EXPECT_EQ(frameLines(got), frameLines(f.bytes()));
}

TEST(HistoryOutputWalk, LongSeriesCrossTheBatchLimitUnchanged) {
  std::vector<float> data;
  for (int i = 0; i < 20000; ++i) data.push_back(static_cast<float>(i) * 0.25f);
  odb_Step step = historyStep(odb_Enum::TIME);
  Bytes got = capture(
      [&](ReplyChannel& out) { walkHistoryOutput(step, historyOutput("A", data), true, out); });
  Frames f;
  outputRecord(f, "A", 0).values(kRecHistoryValue, data);
  EXPECT_EQ(got, f.bytes());
}

// Regions "A", "B" (two outputs), "" and "BAD" (unreadable), each holding one sample.
odb_Step listedStep(bool withEmptyName) {
  std::vector<odb_HistoryRegion> regions = {
      historyRegion("A", pointAt(odb_Enum::NODAL, 5, -1, 0, -1, "SET-A"),
                    {historyOutput("U1", {0, 1})}),
      historyRegion(
          "B", pointAt(odb_Enum::WHOLE_ELEMENT, -1, 9, 1, 2),
          {historyOutput("S11", {0, 2}), unreadableOutput("S22"), historyOutput("S33", {0, 3})}),
      unreadableRegion("BAD")};
  if (withEmptyName) regions.push_back(historyRegion("", pointAt(0), {}));
  return historyStep(odb_Enum::TIME, regions);
}

TEST(HistoryStepWalk, ListedRegionsInListOrderWithValues) {
  odb_Step step = listedStep(false);
  HistoryNameList names;
  names.open(5);
  for (const char* n : {"BAD", "A", "missing", "B", "A"}) names.append(n);
  Bytes got = capture([&](ReplyChannel& out) { walkHistoryStep(step, 4, true, names, out); });
  Frames f;
  f.begin(kRecHistoryStep).u32(4).u32(odb_Enum::TIME).f64(2.5).text("S").text("about S");
  // BAD: its outputs cannot be read, so nothing is sent and the walk goes on.
  auto regionA = [&] {
    f.begin(kRecHistoryRegion).text("A").text("SET-A").u32(1).i32(5).i32(0).i32(0);
    outputRecord(f, "U1", 0).values(kRecHistoryValue, {0, 1});
  };
  regionA();
  // B: S11 is sent whole; S22 fails before its record, which abandons the region (S33 is
  // not sent).
  f.begin(kRecHistoryRegion).text("B").text("").u32(6).i32(9).i32(1).i32(2);
  outputRecord(f, "S11", 0).values(kRecHistoryValue, {0, 2});
  regionA();
  EXPECT_EQ(frameLines(got), frameLines(f.bytes()));
}

// A region named "" is found by each of the two unfilled slots.
TEST(HistoryStepWalk, UnfilledSlotsAreEmptyNames) {
  HistoryNameList names;
  names.open(3);
  names.append("A");
  odb_Step step = listedStep(true);
  EXPECT_EQ(typeSequence(splitRecords(
                capture([&](ReplyChannel& out) { walkHistoryStep(step, 1, true, names, out); }))),
            "2 4 6 8 8 4 4");
}

TEST(HistoryStepWalk, CatalogueWalksEveryRegionInKeyOrderWithoutValues) {
  odb_Step step = historyStep(
      odb_Enum::TIME, {historyRegion("Z", pointAt(odb_Enum::NODAL, 1), {}),
                       historyRegion("A", pointAt(odb_Enum::NODAL, 2),
                                     {historyOutput("U2", {0, 1}), historyOutput("U1", {0, 1})})});
  HistoryNameList names;
  names.open(1);
  names.append("Z");  // the list does not restrict hi
  Bytes got = capture([&](ReplyChannel& out) { walkHistoryStep(step, 1, false, names, out); });
  auto records = splitRecords(got);
  ASSERT_EQ(typeSequence(records), "2 4 6 6 4");
  EXPECT_EQ(records[1].body[4], 'A');
  EXPECT_EQ(records[2].body[4], 'U');
  EXPECT_EQ(records[2].body[5], '1');
  EXPECT_EQ(records[4].body[4], 'Z');
}

// Three steps of a written database, each with one region "N" holding one sample.
void threeSteps(odb::Writer& w) {
  w.addInstance("P").addNodes({1}, {0, 0, 0});
  for (int s = 1; s <= 3; ++s) {
    w.addStep({"Step-" + std::to_string(s), "", "*STATIC", odb_Enum::TIME, s * 1.0});
    odb::HistoryRegionData r{"N", "", pointAt(odb_Enum::NODAL, 1), {}};
    r.outputs = {{"U1", "", odb_Enum::SCALAR, 2, {0.f, float(s)}, {}}};
    w.addHistoryRegion(r);
  }
}

std::string walkTypes(odb_Odb& odb, bool withValues, int filter, HistoryNameList& names) {
  return typeSequence(splitRecords(
      capture([&](ReplyChannel& out) { walkHistory(odb, withValues, filter, names, out); })));
}

TEST(HistoryWalk, StepFilterAndTheListEmptiedAtTheEnd) {
  WrittenDatabase db(threeSteps);
  HistoryNameList names;
  names.open(1);
  names.append("N");
  EXPECT_EQ(walkTypes(db.odb(), true, 0, names), "2 4 6 8 8 2 4 6 8 8 2 4 6 8 8");
  EXPECT_EQ(names.capacity(), 0);
  // Without names (hr without ho, or after a walk) only the step records are sent.
  EXPECT_EQ(walkTypes(db.odb(), true, 0, names), "2 2 2");

  names.open(1);
  names.append("N");
  Bytes third = capture([&](ReplyChannel& out) { walkHistory(db.odb(), true, 3, names, out); });
  Frames f;
  f.begin(kRecHistoryStep).u32(3).u32(odb_Enum::TIME).f64(3.0).text("Step-3").text("");
  f.begin(kRecHistoryRegion).text("N").text("").u32(1).i32(1).i32(0).i32(0);
  f.begin(kRecHistoryOutput).text("U1").text("").u32(odb_Enum::SCALAR).u32(0);
  f.values(kRecHistoryValue, {0.f, 3.f});
  EXPECT_EQ(frameLines(third), frameLines(f.bytes()));

  names.open(1);
  names.append("N");
  EXPECT_EQ(walkTypes(db.odb(), true, 4, names), "");
  EXPECT_EQ(names.capacity(), 0);  // the walk reached its end
  names.open(1);
  EXPECT_EQ(walkTypes(db.odb(), false, 0, names), "2 4 6 2 4 6 2 4 6");
  EXPECT_EQ(names.capacity(), 0);  // hi empties the list too
}

}  // namespace
}  // namespace odbs::test
