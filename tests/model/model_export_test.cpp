// exportModel (G and g): record order, instance blocks, element records and the section
// number of every element.
#include <gtest/gtest.h>

#include "access/registry.h"
#include "client/model_records.h"
#include "model/export_model.h"
#include "odb/h5.h"
#include "server/dispatcher.h"
#include "tests/model/model_fixture.h"

namespace odbs::test {
namespace {

Bytes exportBytes(TestDatabase& db, bool nodesOnly) {
  return capture([&](ReplyChannel& out) { exportModel(db.context(), nodesOnly, out); });
}

// One instance; sections reached through an instance assignment, an assembly-level
// assignment and element categories; element type names of 4, 7, 8 and 9 characters.
odb::ModelData singleInstanceModel() {
  odb::ModelData m;
  m.title = "one";
  m.analysisCode = odb_Enum::EXPLICIT;
  m.annotations = {{"xml", "a\nb"}, {"other", "not sent"}};
  m.sectionCategories = {
      {"solid < elset = B", "", {}}, {"connector < elset = CONN", "", {}}, {"loose", "", {}}};
  odb::SectionData a{"Section-A", kseO_HOMOGENEOUS_SOLID, "M", 0, 0, {}};
  odb::SectionData b{"Section-B", kseO_HOMOGENEOUS_SOLID, "M", 0, 0, {}};
  odb::SectionData z{"Section-Z", kseO_TRUSS, "M", 0, 0, {}};
  m.sections = {a, b, z};
  odb::MaterialData mat;
  mat.name = "M";
  m.materials = {mat};

  odb::EntityData part;
  part.name = "PART-1";
  part.nodes = nodeLine(3);
  int32_t n[3] = {1, 2, 3};
  part.elements.add("T3D2", 10, n, 2, -1);
  part.elements.add("C3D20RHT", 11, n, 3, 0);
  part.elements.add("CONN3D2", 12, n + 1, 2, 1);
  part.elements.add("SPRINGA12", 13, n + 2, 1, 2);
  part.elements.add("EMPTY", 14, n, 0, -1);
  part.elementSets.push_back(setOf("EA", odb_Enum::ELEMENT_SET, part.name, {10}));
  part.sectionAssignments.push_back({"Section-A", part.elementSets.back(), {}});
  m.instances.push_back(part);

  m.assembly.name = "ASSEMBLY";
  m.assembly.nodes.labels = {100};
  m.assembly.nodes.coordinates = {9, 9, 9};
  m.assembly.elements.add("CONN3D2", 100, n, 2, -1);
  m.assembly.sectionAssignments.push_back(
      {"Section-Z", setOf("EZ", odb_Enum::ELEMENT_SET, "PART-1", {11}), {}});
  return m;
}

TEST(ExportModel, SingleInstanceModelByteForByte) {
  TestDatabase db(singleInstanceModel());
  Frames expected;
  expected.begin(1).text("one");
  expected.begin(2).i32(1);
  expected.begin(21).text("a\n");
  expected.begin(21).text("b");
  // Section-A 1, Section-B 2 (unassigned: no record), Section-Z 3; the categories that
  // lead to no section: "connector < elset = CONN" 4, "loose" 5.
  expected.begin('$').i32(1).text("A").i32(-6).text("M").i32(0);
  expected.begin('$').i32(3).text("Z").i32(-7).text("M").i32(0);
  expected.begin(17).text("M").f32(0).i32(0).i32(0);
  for (int i = 1; i <= 3; ++i) expected.begin(3).i32(i).f32(float(i)).f32(0).f32(0);
  expected.begin(4).raw("T3D2    ").i32(10).i32(1).i32(1).i32(2);
  // PART-1 owns a section, so its elements read its own map only: element 11, assigned
  // at assembly level, finds its section through its category.
  expected.begin(4).raw("C3D20RHT").i32(11).i32(2).i32(1).i32(2).i32(3);
  // A connector category names section CONN, which does not exist: no section.
  expected.begin(4).raw("CONN3D2 ").i32(12).i32(0).i32(2).i32(2).i32(3).i32(0).i32(0);
  expected.begin(4).raw("SPRINGA12").i32(13).i32(5).i32(3);
  EXPECT_EQ(frameLines(exportBytes(db, false)), frameLines(expected.bytes()));
}

TEST(ExportModel, SingleInstanceWithoutOwnSectionsReadsTheAssemblyMap) {
  odb::ModelData m = singleInstanceModel();
  m.instances[0].sectionAssignments.clear();
  TestDatabase db(m);
  std::vector<client::Record> recs = splitRecords(exportBytes(db, false));
  ASSERT_EQ(typeSequence(recs), "1 2 21 21 $ 17 3 3 3 4 4 4 4");
  EXPECT_EQ(client::decodeSection(recs[4]).name, "Z");
  EXPECT_EQ(client::decodeElement(recs[9]).section, 0);
  EXPECT_EQ(client::decodeElement(recs[10]).section, 3);
}

odb::ModelData multiInstanceModel() {
  odb::ModelData m;
  m.title = "two";
  m.sections = {{"Section-A", kseO_HOMOGENEOUS_SOLID, "M", 0, 0, {}},
                {"Section-R", kseO_CONNECTOR, "", 0, 0, {}},
                {"Section-U", kseO_HOMOGENEOUS_SOLID, "M", 0, 0, {}},
                {"Section-N", kseO_HOMOGENEOUS_SOLID, "M", 0, 0, {}}};
  int32_t n[2] = {1, 2};
  for (const char* name : {"B-1", "A-1"}) {
    odb::EntityData part;
    part.name = name;
    part.nodes = nodeLine(2);
    part.elements.add("T3D2", 1, n, 2, -1);
    m.instances.push_back(part);
  }
  odb::EntityData& a = m.instances[1];
  a.elementSets.push_back(setOf("EA", odb_Enum::ELEMENT_SET, "A-1", {1}));
  a.sectionAssignments.push_back({"Section-A", a.elementSets.back(), {}});
  // A region that is a node set has no elements: its section is not sent.
  a.sectionAssignments.push_back({"Section-N", setOf("NA", odb_Enum::NODE_SET, "A-1", {1}), {}});
  m.assembly.name = "ROOT";
  m.assembly.nodes.labels = {100};
  m.assembly.nodes.coordinates = {0, 0, 1};
  m.assembly.elements.add("CONN3D2", 1, n, 2, -1);
  m.assembly.sectionAssignments.push_back(
      {"Section-R", setOf("ER", odb_Enum::ELEMENT_SET, "ROOT", {1}), {}});
  return m;
}

TEST(ExportModel, MultiInstanceModelBlocks) {
  TestDatabase db(multiInstanceModel());
  std::vector<client::Record> recs = splitRecords(exportBytes(db, false));
  ASSERT_EQ(typeSequence(recs), "1 2 H $ I H $ I H 3 3 4 H 3 3 4 H 3 4");
  // Sections: A 1 owned by A-1; N 2 (node-set region, not sent); R 3 at the root only.
  EXPECT_EQ(client::decodeInstanceHeader(recs[2]), "A-1");
  EXPECT_EQ(client::decodeSection(recs[3]).number, 1u);
  EXPECT_EQ(client::decodeInstanceHeader(recs[5]), "ROOT");
  EXPECT_EQ(client::decodeSection(recs[6]).name, "R");
  EXPECT_EQ(client::decodeInstanceHeader(recs[8]), "A-1");
  EXPECT_EQ(client::decodeElement(recs[11]).section, 1);
  // B-1 owns no section: its element 1 gets none, although the root's map holds label 1.
  EXPECT_EQ(client::decodeInstanceHeader(recs[12]), "B-1");
  EXPECT_EQ(client::decodeElement(recs[15]).section, 0);
  EXPECT_EQ(client::decodeInstanceHeader(recs[16]), "ROOT");
  EXPECT_EQ(client::decodeNode(recs[17]).label, 100);
  client::ElementRecord conn = client::decodeElement(recs[18]);
  EXPECT_EQ(conn.section, 3);
  EXPECT_EQ(conn.nodes, (std::vector<int32_t>{1, 2}));
}

// G: a single instance sends no assembly block; several keep their headers and the root's
// nodes.
TEST(ExportModel, NodesOnly) {
  TestDatabase one(singleInstanceModel());
  EXPECT_EQ(typeSequence(splitRecords(exportBytes(one, true))), "1 2 3 3 3");
  TestDatabase several(multiInstanceModel());
  EXPECT_EQ(typeSequence(splitRecords(exportBytes(several, true))), "1 2 H 3 3 H 3 3 H 3");
}

// B-1's elements cannot be read: the reply stops after B-1's nodes were queued, and those
// queued records must not reach this reply or a later one. The dispatcher drops them for
// the model family and still closes the reply.
TEST(ExportModel, FailureLeavesNothingPendingForTheNextReply) {
  TestDatabase db(multiInstanceModel(), [](const std::string& path) {
    odb::h5::File f = odb::h5::File::open(path, false);
    H5Ldelete(f.root().open("assembly/instances/0/elements").id(), "type_names", H5P_DEFAULT);
  });
  Bytes bytes = capture([&](ReplyChannel& out) {
    Dispatcher dispatcher(out.fd());
    dispatcher.run(("g " + db.path()).c_str());
    dispatcher.run("p");  // a later reply carries none of the dropped records
  });
  std::string sequence = typeSequence(splitRecords(bytes));
  EXPECT_EQ(sequence, "1 2 H $ I H $ I H 3 3 4 ~ } ~");
  shutdownAll();
}

}  // namespace
}  // namespace odbs::test
