// exportFilteredModel (irf): each criterion kind, several criteria of one kind (or) and of
// different kinds (and), node criteria, unknown names, the empty list, instance blocks.
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "client/model_records.h"
#include "model/export_model.h"
#include "model/other_exports.h"
#include "tests/model/model_fixture.h"

namespace odbs::test {
namespace {

using odb_Enum::ELEMENT_SET;
using odb_Enum::NODE_SET;

// PART-1: nodes 1..6 on the x axis; shells 1 (nodes 1-4) and 2 (3-6) in SKIN, of STEEL;
// trusses 3 (5, 6) and 4 (1, 6) in RODS, of ALU. Sections in name order: ROD 1, SKIN 2.
odb::ModelData filterModel() {
  odb::ModelData m;
  m.title = "irf";
  odb::SectionData skin;
  skin.name = "Section-SKIN";
  skin.kind = kseO_HOMOGENEOUS_SHELL;
  skin.material = "STEEL";
  skin.thickness = 2.f;
  odb::SectionData rod = skin;
  rod.name = "Section-ROD";
  rod.kind = kseO_TRUSS;
  rod.material = "ALU";
  m.sections = {skin, rod};
  for (const char* name : {"STEEL", "ALU"}) {
    odb::MaterialData mat;
    mat.name = name;
    m.materials.push_back(mat);
  }
  odb::EntityData part;
  part.name = "PART-1";
  part.nodes = nodeLine(6);
  const int32_t shell1[] = {1, 2, 3, 4}, shell2[] = {3, 4, 5, 6}, rod3[] = {5, 6}, rod4[] = {1, 6};
  part.elements.add("S4", 1, shell1, 4, -1);
  part.elements.add("S4", 2, shell2, 4, -1);
  part.elements.add("T3D2", 3, rod3, 2, -1);
  part.elements.add("T3D2", 4, rod4, 2, -1);
  part.elementSets = {setOf("SKIN", ELEMENT_SET, "PART-1", {1, 2}),
                      setOf("RODS", ELEMENT_SET, "PART-1", {3, 4}),
                      setOf("E13", ELEMENT_SET, "PART-1", {1, 3})};
  part.nodeSets = {setOf("N34", NODE_SET, "PART-1", {3, 4})};
  part.sectionAssignments = {{"Section-SKIN", part.elementSets[0], {}},
                             {"Section-ROD", part.elementSets[1], {}}};
  m.instances.push_back(part);
  return m;
}

Bytes filtered(TestDatabase& db, const std::vector<Criterion>& criteria) {
  return capture([&](ReplyChannel& out) { exportFilteredModel(db.context(), criteria, out); });
}

// The element labels and node labels of a reply, in order.
std::vector<int32_t> labelsOf(const Bytes& reply, uint8_t type) {
  std::vector<int32_t> labels;
  for (const client::Record& r : splitRecords(reply)) {
    if (r.type != type) continue;
    labels.push_back(type == 3 ? client::decodeNode(r).label : client::decodeElement(r).label);
  }
  return labels;
}

using Labels = std::vector<int32_t>;

TEST(FilteredModel, ElementSetAndMaterialNarrowEachOtherByHand) {
  TestDatabase db(filterModel());
  Bytes got = filtered(db, {{7, 0, "E13"}, {4, 0, "STEEL"}});
  Frames want(1);
  want.text("irf").begin(2).i32(0);
  // section 2 SKIN: shell -5, thickness 2, material, u32 0
  want.begin('$').i32(2).text("SKIN").i32(-5).f32(2.f).text("STEEL").i32(0);
  // material STEEL: density 0, no elastic type, acoustic 0
  want.begin(17).text("STEEL").f32(0.f).i32(0).i32(0);
  for (int32_t label : {1, 2, 3, 4}) want.begin(3).i32(label).f32(float(label)).f32(0).f32(0);
  want.begin(4).raw("S4      ").i32(1).i32(2).i32(1).i32(2).i32(3).i32(4);
  EXPECT_EQ(frameLines(got), frameLines(want.bytes()));
}

TEST(FilteredModel, OneKindAddsUpOtherKindsNarrow) {
  TestDatabase db(filterModel());
  Bytes ranges = filtered(db, {{6, 1, "1"}, {6, 3, "3"}});
  EXPECT_EQ(labelsOf(ranges, 4), (Labels{1, 3}));
  EXPECT_EQ(labelsOf(ranges, 3), (Labels{1, 2, 3, 4, 5, 6}));
  Bytes typeAndRange = filtered(db, {{5, 0, "T3D*"}, {6, 4, "9"}});
  EXPECT_EQ(labelsOf(typeAndRange, 4), (Labels{4}));
  EXPECT_EQ(labelsOf(typeAndRange, 3), (Labels{1, 6}));
  EXPECT_EQ(labelsOf(filtered(db, {{5, 0, "T3D"}}), 4), Labels{});  // exact without '*'
}

TEST(FilteredModel, SectionByNumberOrNameSendsItsRecordOnly) {
  TestDatabase db(filterModel());
  for (const Criterion& c :
       {Criterion{3, 1, "x"}, Criterion{3, 0, "ROD"}, Criterion{3, 0, "Section-ROD"}}) {
    Bytes reply = filtered(db, {c});
    EXPECT_EQ(labelsOf(reply, 4), (Labels{3, 4})) << c.text;
    std::vector<client::Record> recs = splitRecords(reply);
    EXPECT_EQ(typeSequence(recs), "1 2 $ 17 3 3 3 4 4") << c.text;
    EXPECT_EQ(client::decodeSection(recs[2]).name, "ROD");
    EXPECT_EQ(client::decodeMaterial(recs[3]).name, "ALU");
  }
  EXPECT_EQ(typeSequence(splitRecords(filtered(db, {{3, 99, "x"}}))), "1 2");
}

TEST(FilteredModel, NodeCriteriaSendTheirNodesAndElementsWhollyInside) {
  TestDatabase db(filterModel());
  Bytes set = filtered(db, {{2, 0, "N34"}});
  EXPECT_EQ(labelsOf(set, 3), (Labels{3, 4}));
  EXPECT_EQ(labelsOf(set, 4), Labels{});
  Bytes range = filtered(db, {{8, 1, "4"}});
  EXPECT_EQ(labelsOf(range, 3), (Labels{1, 2, 3, 4}));
  EXPECT_EQ(labelsOf(range, 4), (Labels{1}));
  Bytes both = filtered(db, {{8, 1, "6"}, {7, 0, "RODS"}});
  EXPECT_EQ(labelsOf(both, 3), (Labels{1, 2, 3, 4, 5, 6}));
  EXPECT_EQ(labelsOf(both, 4), (Labels{3, 4}));
}

TEST(FilteredModel, UnknownNamesSelectNothingBesideKnownOnes) {
  TestDatabase db(filterModel());
  EXPECT_EQ(typeSequence(splitRecords(filtered(db, {{7, 0, "NOPE"}}))), "1 2");
  EXPECT_EQ(typeSequence(splitRecords(filtered(db, {{4, 0, "WOOD"}}))), "1 2");
  EXPECT_EQ(typeSequence(splitRecords(filtered(db, {{1, 0, "NOPE"}}))), "1 2");
  EXPECT_EQ(labelsOf(filtered(db, {{7, 0, "NOPE"}, {7, 0, "PART-1.RODS"}}), 4), (Labels{3, 4}));
  EXPECT_EQ(labelsOf(filtered(db, {{6, 5, "2"}}), 4), Labels{});  // last below first
}

TEST(FilteredModel, EmptyListIsTheModelExport) {
  TestDatabase db(filterModel());
  Bytes g = capture([&](ReplyChannel& out) { exportModel(db.context(), false, out); });
  EXPECT_EQ(frameLines(filtered(db, {})), frameLines(g));
}

TEST(FilteredModel, InstanceCriterionInAMultiInstanceModel) {
  odb::ModelData m = filterModel();
  odb::EntityData other = m.instances[0];
  other.name = "OTHER";
  for (auto* sets : {&other.elementSets, &other.nodeSets})
    for (odb::SetData& s : *sets) s.instanceNames = {"OTHER"};
  for (auto& a : other.sectionAssignments) a.region.instanceNames = {"OTHER"};
  m.instances.push_back(other);
  m.assembly.name = "ROOT";
  TestDatabase db(m);
  // Without a dot, a multi-instance model names the root assembly's set only, as for irs.
  EXPECT_EQ(typeSequence(splitRecords(filtered(db, {{7, 0, "RODS"}}))), "1 2 H H H");
  std::vector<client::Record> recs =
      splitRecords(filtered(db, {{1, 0, "OTHER"}, {7, 0, "OTHER.RODS"}, {7, 0, "PART-1.RODS"}}));
  // Sections are owned by the first instance assigning them (OTHER sorts first).
  EXPECT_EQ(typeSequence(recs), "1 2 H $ I 17 H 3 3 3 4 4 H H");
  EXPECT_EQ(client::decodeInstanceHeader(recs[6]), "OTHER");
  EXPECT_EQ(client::decodeInstanceHeader(recs[12]), "PART-1");
  EXPECT_EQ(client::decodeInstanceHeader(recs[13]), "ROOT");
}

}  // namespace
}  // namespace odbs::test
