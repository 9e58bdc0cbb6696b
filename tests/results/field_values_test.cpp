// The value record family on hand-made databases: every row of the record choice table,
// complex and double-precision blocks, absent label arrays, element type names, orientations,
// the set of places and the mid-surface values of result mode 1.
#include <gtest/gtest.h>

#include <cstring>

#include "client/model_records.h"
#include "odb/odb.h"
#include "tests/model/model_fixture.h"
#include "tests/results/field_db.h"
#include "tests/results/field_reply.h"

namespace odbs::test {
namespace {

using Lines = std::vector<std::string>;

// One frame of Step-1 holding the given fields, each with its blocks.
WrittenDatabase frameWith(
    const std::vector<std::pair<odb::FieldOutputData, std::vector<odb::FieldBlockData>>>& fields,
    const std::vector<std::string>& instances = {"PART-1-1"}) {
  return WrittenDatabase([&](odb::Writer& w) {
    w.setTitle("plate");
    for (const auto& name : instances) w.addInstance(name).addNodes({1}, {0, 0, 0});
    addStepFrame(w, "Step-1");
    for (const auto& [field, blocks] : fields) {
      w.addFieldOutput(field);
      for (const auto& b : blocks) w.addFieldBlock(b);
    }
  });
}

// Every row of the record choice table, in one block: (element, point, node) goes
// (1,1,10) (1,1,10) (1,1,11) (1,2,11) (1,3,12) (2,3,13) (3,3,13) (4,1,13) (5,2,14).
odb::FieldBlockData everyChange() {
  return elementBlock("C3D8", {1, 1, 1, 1, 1, 2, 3, 4, 5}, {1, 1, 1, 2, 3, 3, 3, 1, 2},
                      {10, 10, 11, 11, 12, 13, 13, 13, 14}, 1, {1, 2, 3, 4, 5, 6, 7, 8, 9});
}

const Lines kEveryChange = {"% 1",        "30 C3D8 -1 -1", "31 e1 n10 p1 [1]", "21 [2]",
                            "22 n11 [3]", "23 p2 [4]",     "24 n12 p3 [5]",    "33 e2 n13 [6]",
                            "34 e3 [7]",  "32 e4 p1 [8]",  "31 e5 n14 p2 [9]"};

TEST(FieldValues, EveryRowOfTheRecordTableAndTheSetOfPlaces) {
  WrittenDatabase db = frameWith({{fieldOf("E1", odb_Enum::SCALAR, {"E1"}), {everyChange()}}});
  auto recs = walk(db.context(), fieldRequest(1, 0, "E1", 1));
  ASSERT_GE(recs.size(), 2u);
  EXPECT_EQ(client::decodeTitle(recs[0]), "plate");
  EXPECT_EQ(client::decodeAnalysisCode(recs[1]), 0);
  EXPECT_EQ(describe(recs), kEveryChange);
  // The general path (rs) sends the same records.
  EXPECT_EQ(describe(walk(db.context(), fieldRequest(1, 0, "E1", 0))), kEveryChange);
  // The worked example of the protocol description, byte for byte: the element type record
  // and the first value record.
  EXPECT_EQ(recs[3].frameBytes(), (Bytes{0x11, 0x00, 0x1e, 'C', '3', 'D', '8', ' ', ' ', ' ', ' ',
                                         0xff, 0xff, 0xff, 0xff, 0xff, 0xff, 0xff, 0xff}));
  EXPECT_EQ(recs[4].frameBytes(),
            (Bytes{0x11, 0x00, 0x1f, 1, 0, 0, 0, 10, 0, 0, 0, 1, 0, 0, 0, 0x00, 0x00, 0x80, 0x3f}));
  // D (the set of places): the repeated place (1,1,10) is not sent again, on both paths.
  Lines defined = kEveryChange;
  defined.erase(defined.begin() + 3);
  EXPECT_EQ(describe(walk(db.context(), fieldRequest(1, 0, "E1", 1, true))), defined);
  EXPECT_EQ(describe(walk(db.context(), fieldRequest(1, 0, "E1", 0, true))), defined);
}

TEST(FieldValues, ComplexDoubleBlockWithoutPointsOrNodes) {
  odb::FieldBlockData b;
  b.instance = "PART-1-1";
  b.elementType = "CONTINUUM3D";  // cut to its first 8 characters
  b.position = odb_Enum::CENTROID;
  b.type = odb_Enum::VECTOR;
  b.width = 2;
  b.doublePrecision = true;
  b.dataDouble = {1.5, 2.25, 0.1, 4};
  b.conjugateDataDouble = {-0.5, 0.125, 3, -1};
  b.elementLabels = {7, 8};
  WrittenDatabase db = frameWith({{fieldOf("UC", odb_Enum::VECTOR, {"U1", "U2"}, true), {b}}});
  EXPECT_EQ(describe(walk(db.context(), fieldRequest(1, 0, "UC", 1))),
            (Lines{"% 16", "30 CONTINUU -1 -1", "31 e7 n-1 p0 [1.5 2.25 -0.5 0.125]",
                   "34 e8 [0.1 4 3 -1]"}));
  // 0.1 is sent as the nearest single-precision number.
  auto recs = walk(db.context(), fieldRequest(1, 0, "UC", 0));
  Bytes last = recs.back().frameBytes();
  float sent;
  std::memcpy(&sent, last.data() + 7, 4);
  EXPECT_EQ(sent, 0.1f);
}

TEST(FieldValues, OrientationsOnlyForUpperCase) {
  odb::FieldBlockData b = elementBlock("S4", {1, 2}, {1, 1}, {}, 1, {5, 6});
  b.localCsys = {0, 0, 0, 1, 0, 0, 0, 0};  // identity; a zero quaternion (left as it is)
  b.csysWidth = 4;
  odb::FieldBlockData wide = elementBlock("S4", {3}, {1}, {}, 1, {7});
  wide.localCsys = {1, 2, 3, 4, 5};  // width 5: no orientation record
  wide.csysWidth = 5;
  WrittenDatabase db = frameWith({{fieldOf("SF", odb_Enum::SCALAR, {"SF"}), {b, wide}}});
  EXPECT_EQ(describe(walk(db.context(), fieldRequest(1, 0, "SF", 1, false, true))),
            (Lines{"% 1", "30 S4 -1 -1", "' [1 0 0 0 1 0]", "31 e1 n-1 p1 [5]", "' [1 0 0 0 1 0]",
                   "34 e2 [6]", "30 S4 -1 -1", "34 e3 [7]"}));
  EXPECT_EQ(
      describe(walk(db.context(), fieldRequest(1, 0, "SF", 1))),
      (Lines{"% 1", "30 S4 -1 -1", "31 e1 n-1 p1 [5]", "34 e2 [6]", "30 S4 -1 -1", "34 e3 [7]"}));
}

TEST(FieldValues, MidSurfaceOfFiveAndFourSectionPoints) {
  odb::FieldBlockData solid = elementBlock("C3D8", {9}, {1}, {}, 1, {100});
  std::vector<odb::FieldBlockData> five = {shellAt(1), shellAt(2), shellAt(3),
                                           shellAt(4), shellAt(5), solid};
  std::vector<odb::FieldBlockData> four = {shellAt(1), shellAt(2), shellAt(3), shellAt(4)};
  WrittenDatabase db = frameWith({{fieldOf("T5", odb_Enum::SCALAR, {"T"}), five},
                                  {fieldOf("T4", odb_Enum::SCALAR, {"T"}), four}});
  // Blocks without section points first; then the middle point 3 of elements 1 and 2. The
  // remembered place and data class carry over from the first pass to the second.
  EXPECT_EQ(describe(walk(db.context(), fieldRequest(1, 0, "T5", 1))),
            (Lines{"% 1", "30 C3D8 -1 -1", "31 e9 n-1 p1 [100]", "30 S4R 1 1", "34 e1 [31]",
                   "34 e2 [32]"}));
  // The pair (2, 3): (21 + 31) / 2 and (22 + 32) / 2.
  EXPECT_EQ(describe(walk(db.context(), fieldRequest(1, 0, "T4", 1))),
            (Lines{"% 1", "30 S4R 1 1", "31 e1 n-1 p1 [26]", "34 e2 [27]"}));
}

TEST(FieldValues, MidSurfaceSumIsRoundedBeforeHalving) {
  // 3e38 + 3e38 overflows single precision: the sum is infinite before it is halved.
  odb::FieldBlockData a = shellAt(1, {1}), b = shellAt(2, {1});
  a.data = {3e38f};
  b.data = {3e38f};
  WrittenDatabase db = frameWith({{fieldOf("T", odb_Enum::SCALAR, {"T"}), {a, b}}});
  EXPECT_EQ(describe(walk(db.context(), fieldRequest(1, 0, "T", 1))),
            (Lines{"% 1", "30 S4R 1 1", "31 e1 n-1 p1 [inf]"}));
}

TEST(FieldValues, InstanceRecordsOnlyForSeveralInstances) {
  odb::FieldBlockData a = elementBlock("C3D8", {1}, {1}, {}, 1, {1}, "PART-A");
  odb::FieldBlockData b = elementBlock("C3D8", {1}, {1}, {}, 1, {2}, "PART-B");
  odb::FieldBlockData a2 = elementBlock("C3D4", {5}, {1}, {}, 1, {3}, "PART-A");
  WrittenDatabase two =
      frameWith({{fieldOf("E", odb_Enum::SCALAR, {"E"}), {a, b, a2}}}, {"PART-A", "PART-B"});
  const Lines both = {"H PART-A",      "% 1",    "30 C3D8 -1 -1", "31 e1 n-1 p1 [1]", "H PART-B",
                      "30 C3D8 -1 -1", "21 [2]", "H PART-A",      "30 C3D4 -1 -1",    "34 e5 [3]"};
  EXPECT_EQ(describe(walk(two.context(), fieldRequest(1, 0, "E", 1))), both);
  // The same place in two instances is two places, also with D.
  EXPECT_EQ(describe(walk(two.context(), fieldRequest(1, 0, "E", 1, true))), both);
  EXPECT_EQ(describe(walk(two.context(), fieldRequest(1, 0, "E", 0, true))), both);

  WrittenDatabase one = frameWith({{fieldOf("E", odb_Enum::SCALAR, {"E"}), {a, a2}}}, {"PART-A"});
  EXPECT_EQ(describe(walk(one.context(), fieldRequest(1, 0, "E", 0))),
            (Lines{"% 1", "30 C3D8 -1 -1", "31 e1 n-1 p1 [1]", "30 C3D4 -1 -1", "34 e5 [3]"}));
}

TEST(FieldValues, BlocksWithoutElementLabelsAreSkipped) {
  odb::FieldBlockData nodal;
  nodal.instance = "PART-1-1";
  nodal.position = odb_Enum::NODAL;
  nodal.type = odb_Enum::VECTOR;
  nodal.width = 3;
  nodal.data = {1, 2, 3};
  nodal.nodeLabels = {1};
  WrittenDatabase db = frameWith({{fieldOf("U", odb_Enum::VECTOR, {"U1", "U2", "U3"}), {nodal}}});
  EXPECT_EQ(describe(walk(db.context(), fieldRequest(1, 0, "U", 1))), Lines{});
  EXPECT_EQ(describe(walk(db.context(), fieldRequest(1, 0, "U", 0))), Lines{});
}

}  // namespace
}  // namespace odbs::test
