// Command rd on written databases: the opening records, the sentinel of contact outputs,
// complex rows, element status, connector status and failure, rotations and instance
// headers.
#include "results/contact_output.h"

#include <gtest/gtest.h>

#include <cfloat>

#include "tests/history/history_fixture.h"
#include "tests/model/model_fixture.h"
#include "wire/record_types.h"

namespace odbs::test {
namespace {

odb::FieldBlockData block(const std::string& instance, int position, std::vector<int32_t> labels,
                          int width, std::vector<float> data) {
  odb::FieldBlockData b;
  b.instance = instance;
  b.position = position;
  b.width = width;
  b.data = std::move(data);
  if (position == odb_Enum::NODAL)
    b.nodeLabels = std::move(labels);
  else
    b.elementLabels = std::move(labels);
  return b;
}

void field(odb::Writer& w, const std::string& name, std::vector<odb::FieldBlockData> blocks,
           bool complex = false) {
  w.addFieldOutput({name, "", odb_Enum::SCALAR, {}, complex, 0, {}});
  for (auto& b : blocks) w.addFieldBlock(b);
}

void history(odb::Writer& w, const std::string& name, int position, int element,
             const std::string& type, std::vector<odb::HistoryOutputData> outputs) {
  odb::HistoryRegionData r{name, "", pointAt(position, -1, element), std::move(outputs)};
  r.point.elementType = type;
  w.addHistoryRegion(r);
}

odb::HistoryOutputData samples(const std::string& name, std::vector<float> data) {
  return {name, "", odb_Enum::SCALAR, 2, std::move(data), {}};
}

// Step 1 (time, starts at 0): frame 0 with connector status and the rotation components,
// frame 1 (at 0.4) with contact outputs, element status, rotations and connector history.
// Step 2 (frequency): a complex contact status. instances: 1 or 2.
std::function<void(odb::Writer&)> contactModel(int instances) {
  return [instances](odb::Writer& w) {
    w.setTitle("contact job");
    w.setAnalysisCode(odb_Enum::EXPLICIT);
    w.setAssemblyName("ASSEMBLY");
    w.addInstance("PART-1").addNodes({1, 2}, {0, 0, 0, 1, 0, 0});
    if (instances == 2) w.addInstance("PART-2").addNodes({1}, {0, 0, 0});
    const float kNone = -FLT_MAX;

    w.addStep({"Step-1", "", "*STATIC", odb_Enum::TIME, 0.0});
    w.addFrame({-1, odb_Enum::TIME, 0, 0.0, 0.0, ""});
    field(w, "U", {block("PART-1", odb_Enum::NODAL, {1}, 1, {0.5f})});
    odb::FieldBlockData conn =
        block("PART-1", odb_Enum::WHOLE_ELEMENT, {20, 20, 21}, 1, {0.f, 0.f, 0.5f});
    conn.elementType = "CONN3D2";
    odb::FieldBlockData beam = block("PART-1", odb_Enum::WHOLE_ELEMENT, {30}, 1, {0.f});
    beam.elementType = "B31";
    field(w, "CFAILST", {conn, beam});
    field(w, "UR1", {block("PART-1", odb_Enum::NODAL, {1}, 1, {0.1f})});
    field(w, "UR3", {block("PART-1", odb_Enum::NODAL, {1}, 1, {0.3f})});

    w.addFrame({-1, odb_Enum::TIME, 0, 0.4, 0.0, ""});
    for (const char* n : {"CSTATUS", "CPRESS", "PHILSM"})
      field(w, n, {block("PART-1", odb_Enum::NODAL, {1, 2}, 1, {kNone, 2.f})});
    std::vector<odb::FieldBlockData> u = {
        block("PART-1", odb_Enum::NODAL, {1, 2}, 2, {1, 2, 3, 4})};
    if (instances == 2) {
      u.push_back(block("PART-1", odb_Enum::NODAL, {3}, 2, {5, 6}));
      u.push_back(block("", odb_Enum::NODAL, {9}, 2, {7, 8}));
      u.push_back(block("PART-2", odb_Enum::NODAL, {1}, 2, {9, 10}));
    }
    field(w, "U", u);
    odb::FieldBlockData status =
        block("PART-1", odb_Enum::INTEGRATION_POINT, {10, 10, 10, 10, 11, 11, 11, 11}, 1,
              {1, 0, 0, 0, 0, 1, 1, 1});
    status.elementType = "C3D8";
    field(w, "STATUS", {status});
    field(w, "UR", {block("PART-1", odb_Enum::NODAL, {1}, 3, {0.1f, 0.2f, 0.3f})});
    field(w, "UR1", {block("PART-1", odb_Enum::NODAL, {1}, 1, {9.f})});
    // Connector 20 fails at 0.5, connector 21 at 0.3 (its second output is earlier).
    history(w, "E20", odb_Enum::WHOLE_ELEMENT, 20, "CONN3D2",
            {samples("CFAILST1", {0, 0, 0.25f, 0, 0.5f, 1, 0.75f, 1})});
    history(w, "E21", odb_Enum::WHOLE_ELEMENT, 21, "CONN3D2",
            {samples("CFAILST1", {0, 0, 1, 1}), samples("CFAILST2", {0.3f, 2})});
    history(w, "E19", odb_Enum::WHOLE_ELEMENT, 19, "CONN3D2", {samples("CFAILST1", {0, 0, 1, 0})});
    history(w, "E05", odb_Enum::WHOLE_ELEMENT, 5, "B31", {samples("CFAILST1", {0, 1})});
    history(w, "E07", odb_Enum::INTEGRATION_POINT, 7, "CONN3D2", {samples("CFAILST1", {0, 1})});
    history(w, "E00", odb_Enum::WHOLE_ELEMENT, 0, "CONN3D2", {samples("CFAILST1", {0, 1})});
    history(w, "E22", odb_Enum::WHOLE_ELEMENT, 22, "CONN3D2", {samples("OTHER", {0, 1})});

    w.addStep({"Step-2", "", "*FREQUENCY", odb_Enum::FREQUENCY, 1.0});
    w.addFrame({-1, odb_Enum::FREQUENCY, 1, 5.0, 5.0, ""});
    odb::FieldBlockData c = block("PART-1", odb_Enum::NODAL, {1}, 2, {kNone, 1.f});
    c.conjugateData = {kNone, -1.f};
    field(w, "CSTATUS", {c}, true);
  };
}

RequestParams request(int step, int frame, const std::string& name, int positionCode = 4) {
  RequestParams r;
  r.param1 = step;
  r.param2 = frame;
  r.positionCode = positionCode;
  r.text = name;
  r.defined = true;
  return r;
}

struct ContactRun {
  explicit ContactRun(WrittenDatabase& d) : db(d) {}
  WrittenDatabase& db;
  SelectionList selection;
  ConnectorFailureTable table;
  bool built = false;
  int builds = 0;

  Bytes operator()(const RequestParams& req) {
    ConnectorFailureSource failures = [this](const odb_Step& step) -> const ConnectorFailureTable& {
      if (!built) {
        table = buildConnectorFailures(step);
        built = true;
        ++builds;
      }
      return table;
    };
    return capture(
        [&](ReplyChannel& out) { sendContactOutput(db.odb(), req, selection, failures, out); });
  }
  std::string types(const RequestParams& req) { return typeSequence(splitRecords((*this)(req))); }
};

Frames& opening(Frames& f) {
  return f.begin(kRecTitle).text("contact job").begin(kRecAnalysisCode).u32(1);
}

class ContactOutput : public ::testing::Test {
 protected:
  WrittenDatabase db{contactModel(1)};
  ContactRun run{db};
};

// Step 0 or below and a missing field send the title and analysis code only; a step or
// frame past the end throws after them.
TEST_F(ContactOutput, OpeningRecordsAlone) {
  Frames f;
  opening(f);
  for (auto req : {request(0, 0, "U"), request(-3, 0, "U"), request(1, 1, "NOSUCH")})
    EXPECT_EQ(frameLines(run(req)), frameLines(f.bytes())) << req.param1;
  for (auto req : {request(3, 0, "U"), request(1, 2, "U")}) {
    Bytes got = capture([&](ReplyChannel& out) {
      EXPECT_THROW(sendContactOutput(db.odb(), req, {}, {}, out), std::out_of_range);
    });
    EXPECT_EQ(frameLines(got), frameLines(f.bytes()));
  }
}

TEST_F(ContactOutput, MostNegativeFloatBecomesTinyForStatusAndLevelSetOnly) {
  auto expect = [&](const std::string& name, float first) {
    Frames f;
    opening(f);
    f.begin(kRecRealValue).i32(1).f32(first).begin(kRecRealValue).i32(2).f32(2.f);
    EXPECT_EQ(frameLines(run(request(1, 1, name))), frameLines(f.bytes())) << name;
  };
  expect("CSTATUS", -1e-30f);
  expect("PHILSM", -1e-30f);
  expect("CPRESS", -FLT_MAX);

  // Complex rows: values then conjugates, and no replacement.
  Frames f;
  opening(f);
  f.begin(kRecComplexValue).i32(1).f32(-FLT_MAX).f32(1.f).f32(-FLT_MAX).f32(-1.f);
  EXPECT_EQ(frameLines(run(request(2, 0, "CSTATUS"))), frameLines(f.bytes()));
}

TEST_F(ContactOutput, DisplacementBringsElementStatusOncePerElement) {
  Frames f;
  opening(f);
  f.begin(kRecRealValue).i32(1).f32(1).f32(2).begin(kRecRealValue).i32(2).f32(3).f32(4);
  f.begin(kRecElementStatus).i32(10).f32(1.f).begin(kRecElementStatus).i32(11).f32(0.f);
  // Position code 2: no connector failures.
  EXPECT_EQ(frameLines(run(request(1, 1, "U", 2))), frameLines(f.bytes()));
  EXPECT_EQ(run.builds, 0);
  // UT is treated alike; any other name gets no status.
  EXPECT_EQ(run.types(request(1, 1, "CPRESS", 2)), "1 2 17 17");
}

TEST_F(ContactOutput, ConnectorStatusOfConnectorBlocks) {
  Frames f;
  opening(f);
  f.begin(kRecRealValue).i32(1).f32(0.5f);
  // 20 (first row 0.0) is reported as 1.0, 21 (0.5) as 0.0; the B31 block is left out.
  f.begin(kRecElementStatus).i32(20).f32(1.f).begin(kRecElementStatus).i32(21).f32(0.f);
  EXPECT_EQ(frameLines(run(request(1, 0, "U"))), frameLines(f.bytes()));
  EXPECT_EQ(run.builds, 0);  // a CFAILST field makes the failure table unnecessary
}

TEST_F(ContactOutput, FailedConnectorsByTheFrameTime) {
  Bytes got = run(request(1, 1, "U"));
  auto records = splitRecords(got);
  ASSERT_EQ(typeSequence(records), "1 2 17 17 \" \" \"");
  // At 0.4 connector 21 (failed at 0.3) is reported with 0.0; 20 fails at 0.5.
  Frames f;
  f.begin(kRecElementStatus).i32(21).f32(0.f);
  EXPECT_EQ(records.back().frameBytes(), f.bytes());
  EXPECT_EQ(run.builds, 1);
  // By 0.5 both have failed; no other region is a failing whole connector element.
  Bytes late = capture([&](ReplyChannel& out) {
    queueFailedConnectors(run.table, 0.5, out);
    out.flush();
  });
  Frames both;
  both.begin(kRecElementStatus).i32(20).f32(0.f).begin(kRecElementStatus).i32(21).f32(0.f);
  EXPECT_EQ(frameLines(late), frameLines(both.bytes()));
}

TEST_F(ContactOutput, RotationsOnlyWithASelection) {
  EXPECT_EQ(run.types(request(1, 1, "U", 2)), "1 2 17 17 \" \"");
  run.selection.capacity = 2;
  run.selection.labels = {7};
  auto records = splitRecords(run(request(1, 1, "U", 2)));
  // UR is present: its rows only, as 19, whatever UR1 holds.
  ASSERT_EQ(typeSequence(records), "1 2 17 17 \" \" 19");
  Frames f;
  f.begin(kRecRotationReal).i32(1).f32(0.1f).f32(0.2f).f32(0.3f);
  EXPECT_EQ(records.back().frameBytes(), f.bytes());
  // Without UR the components present, in order, with their own types.
  EXPECT_EQ(run.types(request(1, 0, "U", 2)), "1 2 17 \" \" & L");
  EXPECT_EQ(run.types(request(1, 0, "CPRESS", 2)), "1 2");
}

TEST_F(ContactOutput, InstanceHeadersOnlyForMultiInstanceModels) {
  WrittenDatabase two(contactModel(2));
  ContactRun multi{two};
  auto records = splitRecords(multi(request(1, 1, "U", 2)));
  ASSERT_EQ(typeSequence(records), "1 2 H 17 17 17 H 17 H 17 H \" \"");
  auto name = [&](size_t i) {
    return std::string(records[i].body.begin() + 4, records[i].body.end());
  };
  EXPECT_EQ(name(2), "PART-1");
  EXPECT_EQ(name(6), "ASSEMBLY");  // a block without instance: the root assembly's name
  EXPECT_EQ(name(8), "PART-2");
  EXPECT_EQ(name(10), "PART-1");  // status: a fresh walk announces its instance again
}

}  // namespace
}  // namespace odbs::test
