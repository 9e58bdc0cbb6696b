// Section and material records of g, byte for byte.
#include <gtest/gtest.h>

#include "model/export_model.h"
#include "tests/model/model_fixture.h"

namespace odbs::test {
namespace {

// One instance with one two-node element per section, each element in an element set of
// the section's name that the section is assigned to.
odb::ModelData modelWithSections(const std::vector<odb::SectionData>& sections) {
  odb::ModelData m;
  m.title = "sections";
  odb::EntityData part;
  part.name = "PART-1";
  part.nodes = nodeLine(2);
  int label = 1;
  for (const auto& s : sections) {
    int32_t nodes[2] = {1, 2};
    part.elements.add("T3D2", label, nodes, 2, -1);
    part.elementSets.push_back(setOf(s.name, odb_Enum::ELEMENT_SET, part.name, {label}));
    part.sectionAssignments.push_back({s.name, part.elementSets.back(), {}});
    ++label;
  }
  m.instances.push_back(part);
  m.sections = sections;
  return m;
}

odb::SectionData section(const std::string& name, int kind, const std::string& material = "") {
  odb::SectionData s;
  s.name = name;
  s.kind = kind;
  s.material = material;
  return s;
}

std::vector<Bytes> framesOfType(const odb::ModelData& model, uint8_t type) {
  TestDatabase db(model);
  std::vector<Bytes> out;
  for (const auto& r :
       splitRecords(capture([&](ReplyChannel& o) { exportModel(db.context(), false, o); }))) {
    if (r.type == type) out.push_back(r.frameBytes());
  }
  return out;
}

TEST(SectionRecords, KindsWithTheirData) {
  odb::SectionData shell = section("Section-SHELL", kseO_HOMOGENEOUS_SHELL, "AL");
  shell.thickness = 1.5f;
  odb::SectionData point = section("MASS", kseO_POINT);
  point.mass = 2.5f;
  odb::ModelData m = modelWithSections(
      {shell, point, section("Section-", kseO_PEG, "R"), section("GASK", kseO_GASKET, "G"),
       section("COH", kseO_COHESIVE, "C"), section("BEAM", kseO_BEAM, "B"),
       section("ODD", kseO_OTHER_SECTION), section("MEM", kseO_MEMBRANE, "M")});
  std::vector<Bytes> got = framesOfType(m, kRecSection);
  // Name order: BEAM 1, COH 2, GASK 3, MASS 4, MEM 5, ODD 6, Section- 7, Section-SHELL 8.
  ASSERT_EQ(got.size(), 8u);
  EXPECT_EQ(got[0], Frames('$').i32(1).text("BEAM").i32(0).bytes());
  EXPECT_EQ(got[1], Frames('$').i32(2).text("COH").i32(-11).text("C").i32(0).bytes());
  EXPECT_EQ(got[2], Frames('$').i32(3).text("GASK").i32(-10).text("G").i32(0).bytes());
  EXPECT_EQ(got[3], Frames('$').i32(4).text("MASS").i32(-4).f32(2.5f).i32(0).bytes());
  EXPECT_EQ(got[4], Frames('$').i32(5).text("MEM").i32(-9).text("M").i32(0).bytes());
  EXPECT_EQ(got[5], Frames('$').i32(6).text("ODD").i32(0).bytes());
  EXPECT_EQ(got[6], Frames('$').i32(7).text("Section-").i32(-8).text("R").i32(0).bytes());
  EXPECT_EQ(got[7], Frames('$').i32(8).text("SHELL").i32(-5).f32(1.5f).text("AL").i32(0).bytes());
}

TEST(SectionRecords, CompositeRunsPairANumberWithTheNextLayersProperties) {
  odb::SectionData comp = section("Section-SKIN", kseO_COMPOSITE_SHELL);
  comp.layers = {{"L1", 0.1f, odb_Union::ofFloat(10.f)},
                 {"L2", 0.2f, odb_Union::ofString("ORI-1")},
                 {"L3", 0.3f, odb_Union::ofFloat(30.f)}};
  odb::SectionData bare = section("Section-BARE", kseO_COMPOSITE_SHELL);
  bare.layers = comp.layers;
  odb::ModelData m = modelWithSections({comp, bare});
  odb::SectionCategoryData cat{"shell < elset = SKIN", "", {}};
  // Layer 9 is outside the layup and ignored; a point without a layer too.
  for (const char* d : {"Layer = 1", "Layer = 1", "middle", "Layer = 2", "Layer = 9", "Layer = 2",
                        "Layer = 2", "Layer = 3"}) {
    cat.sectionPoints.push_back({int32_t(cat.sectionPoints.size() + 1), d});
  }
  m.sectionCategories.push_back(cat);
  m.sectionCategories.push_back({"shell < elset = BARE", "", {{1, "top"}, {2, "bottom"}}});

  std::vector<Bytes> got = framesOfType(m, kRecSection);
  ASSERT_EQ(got.size(), 2u);
  EXPECT_EQ(got[0], Frames('$').i32(1).text("BARE").i32(0).bytes());
  Frames skin('$');
  skin.i32(2).text("SKIN").i32(3);
  skin.i32(1).i32(2).text("L2").i32(0).f32(0.2f).f32(0.f);
  skin.i32(2).i32(3).text("L3").i32(0).f32(0.3f).f32(30.f);
  skin.i32(3).i32(1).text("L3").i32(0).f32(0.3f).f32(30.f);
  EXPECT_EQ(got[1], skin.bytes());
}

TEST(SectionRecords, ConnectorOrientationBlocks) {
  odb::ModelData m =
      modelWithSections({section("C-NONE", kseO_CONNECTOR), section("C-ONE", kseO_CONNECTOR),
                         section("ASSEMBLY_C-TWO", kseO_CONNECTOR)});
  odb::ConnectorOrientationData one;
  one.region = setOf("C-ONE", odb_Enum::ELEMENT_SET, "ASSEMBLY", {1});
  one.hasCsys1 = true;
  one.csys1 = "DATUM-1";
  odb::ConnectorOrientationData two;
  two.region = setOf("C-TWO", odb_Enum::ELEMENT_SET, "ASSEMBLY", {1});
  two.hasCsys1 = true;
  two.csys1 = "A";
  two.hasCsys2 = true;
  two.csys2 = "B";
  m.connectorOrientations = {one, two};

  std::vector<Bytes> got = framesOfType(m, kRecSection);
  ASSERT_EQ(got.size(), 3u);
  Frames twoRecord('$');
  twoRecord.i32(1).text("ASSEMBLY_C-TWO").i32(-3).text("C-TWO").text("A").text("B").i32(0);
  EXPECT_EQ(got[0], twoRecord.bytes());
  EXPECT_EQ(got[1], Frames('$').i32(2).text("C-NONE").i32(-3).i32(0).i32(0).bytes());
  Frames oneRecord('$');
  oneRecord.i32(3).text("C-ONE").i32(-3).text("C-ONE").text("DATUM-1").i32(0).i32(0);
  EXPECT_EQ(got[2], oneRecord.bytes());
}

TEST(MaterialRecords, WithAndWithoutElasticData) {
  odb::ModelData m = modelWithSections({});
  odb::MaterialData plain;
  plain.name = "PLAIN";
  plain.hasDensity = true;
  plain.density = {{7.5f, 99.f}, {1.f}};
  odb::MaterialData empty;
  empty.name = "EMPTY";
  empty.hasDensity = true;  // a density without rows sends 0
  odb::MaterialData elastic;
  elastic.name = "FULL";
  elastic.hasElastic = true;
  elastic.elasticType = "ISOTROPIC";
  elastic.elastic = {{210000.f, 0.3f}, {1.f, 2.f}};
  elastic.hasFailStrain = true;
  elastic.failStrain = {{0.1f, 0.2f}};
  elastic.hasFailStress = true;
  elastic.failStress = {{1, 2, 3, 4, 5, 6, 7, 8}};
  elastic.hasAcousticMedium = true;
  m.materials = {plain, empty, elastic};

  std::vector<Bytes> got = framesOfType(m, kRecMaterial);
  ASSERT_EQ(got.size(), 3u);
  EXPECT_EQ(got[0], Frames(17).text("EMPTY").f32(0.f).i32(0).i32(0).bytes());
  Frames full(17);
  full.text("FULL").f32(0.f).text("ISOTROPIC").f32(210000.f).f32(0.3f).f32(0).f32(0).f32(0).f32(0);
  full.i32(0).f32(0.1f).f32(0.2f).f32(0).f32(0).f32(0);
  full.i32(1).f32(1).f32(2).f32(3).f32(4).f32(5).f32(6).f32(7).i32(-1).i32(1);
  EXPECT_EQ(got[1], full.bytes());
  EXPECT_EQ(got[2], Frames(17).text("PLAIN").f32(7.5f).i32(0).i32(0).bytes());
}

}  // namespace
}  // namespace odbs::test
