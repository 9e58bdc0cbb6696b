// exportSectionAssignments (is): the assignment record 'T' with section numbers, offsets
// and thicknesses, each followed by its region as a set; instance blocks and root assembly
// assignments spanning instances.
#include <gtest/gtest.h>

#include <string>

#include "client/client_error.h"
#include "client/model_records.h"
#include "model/other_exports.h"
#include "tests/model/model_fixture.h"

namespace odbs::test {
namespace {

using odb_Enum::ELEMENT_SET;

odb::ModelData assignedModel() {
  odb::ModelData m;
  m.title = "is";
  m.sections = {{"Section-SHELL", kseO_HOMOGENEOUS_SHELL, "STEEL", 0, 0, {}},
                {"P7", kseO_HOMOGENEOUS_SOLID, "STEEL", 0, 0, {}}};
  odb::EntityData part;
  part.name = "PART-1";
  part.nodes = nodeLine(4);
  part.sectionAssignments = {{"Section-SHELL",
                              setOf("SKIN", ELEMENT_SET, "PART-1", {1, 2}),
                              {true, 0.5f, 0.25f, true, 2.f}},
                             {"MISSING", setOf("X", ELEMENT_SET, "PART-1", {3}), {}}};
  m.instances.push_back(part);
  m.assembly.sectionAssignments = {
      {"P7", setOf("ROOTSET", ELEMENT_SET, "PART-1", {4}), {false, 9.f, 9.f, true, 1.5f}}};
  return m;
}

Bytes assignmentsReply(TestDatabase& db) {
  return capture([&](ReplyChannel& out) { exportSectionAssignments(db.context(), out); });
}

TEST(SectionAssignments, SingleInstanceRecordsByHand) {
  TestDatabase db(assignedModel());
  // SHELL numbers 1 (P7 keeps 7); MISSING names no section: 0. Flags 1 offset, 2 thickness;
  // an absent offset is sent as zeros whatever the database holds.
  Frames want(1);
  want.text("is").begin(2).i32(0);
  want.begin('T').i32(1).text("SHELL").i32(3).f32(0.5f).f32(0.25f).f32(2.f);
  want.begin(6).text("SKIN").begin(9).i32(1).i32(2).begin(11);
  want.begin('T').i32(0).text("MISSING").i32(0).f32(0.f).f32(0.f).f32(0.f);
  want.begin(6).text("X").begin(9).i32(3).begin(11);
  want.begin('T').i32(7).text("P7").i32(2).f32(0.f).f32(0.f).f32(1.5f);
  want.begin(6).text("ROOTSET").begin(9).i32(4).begin(11);
  EXPECT_EQ(frameLines(assignmentsReply(db)), frameLines(want.bytes()));
}

TEST(SectionAssignments, MultiInstanceBlocksAndRootRegionPerInstance) {
  odb::ModelData m = assignedModel();
  odb::EntityData other;
  other.name = "A-0";  // sorts first: an instance without assignments
  other.nodes = nodeLine(2);
  m.instances.push_back(other);
  m.assembly.name = "ROOT";
  m.assembly.sectionAssignments[0].region.addMembers("A-0", {8, 9});
  TestDatabase db(m);
  std::vector<client::Record> recs = splitRecords(assignmentsReply(db));
  EXPECT_EQ(typeSequence(recs),
            "1 2 H I "
            "H T 6 9 11 T 6 9 11 I "     // PART-1
            "T 6 H 9 11 I 6 H 9 11 I");  // P7 on ROOTSET, in PART-1 and A-0
  EXPECT_EQ(client::decodeInstanceHeader(recs[2]), "A-0");
  EXPECT_EQ(client::decodeInstanceHeader(recs[16]), "PART-1");
  EXPECT_EQ(client::decodeInstanceHeader(recs[21]), "A-0");
  EXPECT_EQ(client::decodeLabelBlock(recs[22]), (std::vector<int32_t>{8, 9}));
}

TEST(SectionAssignments, NoAssignmentsSendTheHeaderOnly) {
  odb::ModelData m;
  m.title = "bare";
  odb::EntityData part;
  part.name = "P";
  part.nodes = nodeLine(1);
  m.instances.push_back(part);
  TestDatabase db(m);
  EXPECT_EQ(typeSequence(splitRecords(assignmentsReply(db))), "1 2");
}

TEST(SectionAssignments, DecoderRefusesBadBodies) {
  client::Record shortBody = Frames('T').i32(1).text("S").i32(0).f32(0.f).record();
  EXPECT_THROW(client::decodeSectionAssignment(shortBody), client::DecodeError);
  client::Record badFlags = Frames('T').i32(1).text("S").i32(4).f32(0.f).f32(0.f).f32(0.f).record();
  EXPECT_THROW(client::decodeSectionAssignment(badFlags), client::DecodeError);
}

}  // namespace
}  // namespace odbs::test
