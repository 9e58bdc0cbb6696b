// Every kind of model object written by odb::Writer reads back unchanged through the read
// API, in the iteration orders the API promises.
#include <gtest/gtest.h>

#include <cstdio>
#include <fstream>
#include <stdexcept>

#include "odb/model_copy.h"
#include "odb/odb.h"
#include "odb/writer.h"
#include "tests/odb/sample_model.h"

namespace {

class ModelRoundTrip : public ::testing::Test {
 protected:
  static void SetUpTestSuite() {
    odb_initializeAPI();
    path_ = odbtest::tempPath("model.odb");
    odb::writeModel(path_, odbtest::sampleModel());
  }
  static void TearDownTestSuite() { std::remove(path_.c_str()); }
  void SetUp() override { odb_ = &openOdb(path_, true); }
  void TearDown() override { closeOdb(*odb_); }
  static std::string path_;
  odb_Odb* odb_ = nullptr;
};
std::string ModelRoundTrip::path_;

TEST_F(ModelRoundTrip, HeaderAndAnnotations) {
  EXPECT_EQ(odb_->name(), "sample");
  EXPECT_EQ(odb_->path(), path_);
  EXPECT_EQ(odb_->analysisTitle(), "Sample model");
  EXPECT_EQ(odb_->jobData().analysisCode(), odb_Enum::EXPLICIT);
  ASSERT_NE(odb_->userData().annotationObjects("xml"), nullptr);
  EXPECT_EQ(odb_->userData().annotationObjects("xml")->text(), "a\nb");
  EXPECT_EQ(odb_->userData().annotationObjects("missing"), nullptr);
}

TEST_F(ModelRoundTrip, InstancesInKeyOrderWithNodesAndElements) {
  const odb_Assembly& a = odb_->rootAssembly();
  EXPECT_EQ(a.name(), "ASSEMBLY");
  EXPECT_EQ(odbtest::keysOf<odb_InstanceRepositoryIT>(a.instances()),
            (std::vector<std::string>{"PART-1-1", "PART-2-1"}));

  const odb_Instance& p1 = a.instances()["PART-1-1"];
  odb_SequenceNode nodes = p1.nodes();
  ASSERT_EQ(nodes.size(), 12);
  EXPECT_EQ(nodes[11].label(), 12);
  EXPECT_EQ(nodes[11].coordinates().size(), 3);
  EXPECT_FLOAT_EQ(nodes[11].coordinates()[2], 2.f);
  odb_SequenceElement els = p1.elements();
  ASSERT_EQ(els.size(), 2);
  EXPECT_EQ(els[1].label(), 2);
  EXPECT_EQ(els[1].type(), "C3D8");
  EXPECT_EQ(std::vector<int>(els[1].connectivity().begin(), els[1].connectivity().end()),
            (std::vector<int>{5, 6, 8, 7, 9, 10, 12, 11}));
  EXPECT_EQ(els[0].sectionCategory().name(), "solid < elset = SOLID");

  const odb_Instance& p2 = a.instances()["PART-2-1"];
  EXPECT_EQ(p2.nodes().dimension(), 2);
  EXPECT_EQ(p2.elements()[1].type(), "CONN3D2");
  EXPECT_EQ(p2.elements()[1].connectivity().size(), 2);
  EXPECT_EQ(p2.elements()[1].sectionCategory().name(), "");
  EXPECT_EQ(a.nodes().size(), 1);
  EXPECT_EQ(a.elements()[0].label(), 5000);
  EXPECT_THROW(a.instances()["NOPE"], std::out_of_range);
  EXPECT_THROW(nodes[12], std::out_of_range);
}

TEST_F(ModelRoundTrip, SetsAndSurfaces) {
  const odb_Assembly& a = odb_->rootAssembly();
  const odb_Instance& p1 = a.instances()["PART-1-1"];
  EXPECT_EQ(odbtest::keysOf<odb_SetRepositoryIT>(p1.nodeSets()),
            (std::vector<std::string>{"COUPLING_A", "FIX"}));
  const odb_Set& fix = p1.nodeSets()["FIX"];
  EXPECT_EQ(fix.type(), odb_Enum::NODE_SET);
  EXPECT_EQ(fix.nodes().size(), 4);
  EXPECT_EQ(fix.elements().size(), 0);
  const odb_Set& top = p1.surfaces()["TOP"];
  EXPECT_EQ(top.type(), odb_Enum::SURFACE_SET);
  EXPECT_EQ(top.elements()[0], 2);
  EXPECT_EQ(top.faces()[0], odb_Enum::FACE2);

  const odb_Set& both = a.elementSets()["BOTH"];
  ASSERT_EQ(both.instanceNames().size(), 2);
  EXPECT_EQ(both.instanceNames()[0], "PART-2-1");
  EXPECT_EQ(both.elements().size(), 2);
  EXPECT_EQ(both.elements("PART-1-1")[0], 1);
  EXPECT_EQ(both.elements("PART-2-1")[0], 7);
  EXPECT_THROW(both.elements("PART-3"), std::out_of_range);
  const odb_Set& contact = a.surfaces()["CONTACT"];
  EXPECT_EQ(contact.faces("PART-1-1")[1], odb_Enum::FACE6);
  EXPECT_EQ(a.nodeSets()[" ALL NODES"].nodes("PART-2-1")[0], 3);
}

TEST_F(ModelRoundTrip, AssignmentsOrientationsAndCategories) {
  const odb_Assembly& a = odb_->rootAssembly();
  const odb_SequenceSectionAssignment& sa = a.instances()["PART-2-1"].sectionAssignments();
  ASSERT_EQ(sa.size(), 1);
  EXPECT_EQ(sa[0].sectionName(), "Section-SKIN");
  EXPECT_EQ(sa[0].region().name(), "SKIN");
  EXPECT_EQ(sa[0].region().elements()[0], 7);
  EXPECT_EQ(a.sectionAssignments()[0].sectionName(), "CONN");

  ASSERT_EQ(a.connectorOrientations().size(), 1);
  const odb_ConnectorOrientation& co = a.connectorOrientations()[0];
  EXPECT_EQ(co.region().name(), "CONN");
  EXPECT_TRUE(co.hasCsys1());
  EXPECT_EQ(co.csys1().name(), "DATUM-1");
  EXPECT_FALSE(co.hasCsys2());

  const odb_SectionCategoryRepository& cats = odb_->sectionCategories();
  EXPECT_EQ(odbtest::keysOf<odb_SectionCategoryRepositoryIT>(cats),
            (std::vector<std::string>{"shell < elset = SKIN", "solid < elset = SOLID"}));
  const odb_Sequence<odb_SectionPoint>& sp = cats["shell < elset = SKIN"].sectionPoints();
  ASSERT_EQ(sp.size(), 3);
  EXPECT_EQ(sp[2].number(), 3);
  EXPECT_EQ(sp[2].description(), "Layer = 2, middle");
}

TEST_F(ModelRoundTrip, SectionsOfEveryClass) {
  auto& ext = static_cast<kseO_ApiExtension&>(odb_->extendApi(odb_Enum::SECTION_API));
  const kseO_SectionContainer& c = ext.sections();
  EXPECT_EQ(c.size(), 11);
  EXPECT_TRUE(c.isMember("P7"));
  std::string prev;
  for (kseO_SectionContainerIT it(c); !it.isDone(); it.next()) {
    EXPECT_LT(prev, it.currentKey());
    prev = it.currentKey();
  }
  const odb_Section& skin = *c["Section-SKIN"];
  ASSERT_EQ(skin.subTypeIdentifier(), kseO_CompositeShellSection::typeIdentifier());
  kseO_SequenceSectionLayer layup = kseO_CompositeShellSection::cast(skin).layup();
  ASSERT_EQ(layup.size(), 3);
  EXPECT_EQ(layup[0].material(), "CARBON");
  EXPECT_EQ(layup[0].orientAngle().type(), odb_Union::FLOAT);
  EXPECT_FLOAT_EQ(layup[0].orientAngle().getFloat(), 45.f);
  EXPECT_EQ(layup[1].orientAngle().getInt(), 90);
  EXPECT_EQ(layup[2].orientAngle().getString(), "ORI-1");
  EXPECT_FLOAT_EQ(layup[1].thickness(), 0.25f);
  EXPECT_FLOAT_EQ(kseO_PointSection::cast(*c["P7"]).mass(), 2.5f);
  const auto& thin = kseO_HomogeneousShellSection::cast(*c["Section-THIN"]);
  EXPECT_FLOAT_EQ(thin.thickness(), 1.5f);
  EXPECT_EQ(thin.material(), "ALU");
  EXPECT_EQ(kseO_GasketSection::cast(*c["Section-GAS"]).material(), "RUBBER");
  EXPECT_EQ(c["CONN"]->subTypeIdentifier(), kseO_ConnectorSection::typeIdentifier());
  EXPECT_EQ(c["Section-OTHER"]->subTypeIdentifier(), odb_Section::typeIdentifier());
  EXPECT_THROW(kseO_PointSection::cast(*c["Section-THIN"]), std::runtime_error);
  EXPECT_THROW(odb_->extendApi(7), std::invalid_argument);
}

TEST_F(ModelRoundTrip, Materials) {
  auto& ext = static_cast<kmaO_ApiExtension&>(odb_->extendApi(odb_Enum::MATERIAL_API));
  const kmaO_MaterialContainer& c = ext.materials();
  EXPECT_EQ(odbtest::keysOf<kmaO_MaterialContainerIT>(c),
            (std::vector<std::string>{"EMPTY", "STEEL", "WATER"}));
  const kmaO_Material& steel = *c["STEEL"];
  ASSERT_NE(steel.density(), nullptr);
  EXPECT_FLOAT_EQ(steel.density()->table()[0][0], 7.8e-9f);
  ASSERT_NE(steel.elastic(), nullptr);
  EXPECT_EQ(steel.elastic()->type(), "ISOTROPIC");
  EXPECT_EQ(steel.elastic()->table()[0].size(), 2);
  EXPECT_EQ(steel.elastic()->table()[1].size(), 3);
  ASSERT_NE(steel.elastic()->failStrain(), nullptr);
  EXPECT_FLOAT_EQ(steel.elastic()->failStress()->table()[0][6], 7.f);
  EXPECT_EQ(steel.acousticMedium(), nullptr);
  EXPECT_NE(c["WATER"]->acousticMedium(), nullptr);
  EXPECT_EQ(c["EMPTY"]->density(), nullptr);
  EXPECT_EQ(c["EMPTY"]->elastic(), nullptr);
}

// Once through close() alone, once with the model written ahead of a step (writeModel):
// both copies hold the model, and the early one takes no model calls afterwards.
TEST_F(ModelRoundTrip, CopyReproducesTheModel) {
  for (bool early : {false, true}) {
    SCOPED_TRACE(early ? "writeModel before a step" : "close only");
    std::string copy = odbtest::tempPath("copy.odb");
    {
      odb::Writer w(copy);
      odb::addModel(w, odb::readModel(*odb_));
      if (early) {
        w.writeModel();
        EXPECT_THROW(w.setTitle("late"), std::logic_error);
        EXPECT_THROW(w.addInstance("LATE"), std::logic_error);
        EXPECT_THROW(w.addInstance("PART-1-1"), std::invalid_argument);  // a duplicate still
        odb::StepData step;
        step.name = "Step-1";
        w.addStep(step);
      }
      w.close();
    }
    odb_Odb& again = openOdb(copy, true);
    odb::ModelData a = odb::readModel(*odb_), b = odb::readModel(again);
    EXPECT_EQ(b.title, a.title);
    EXPECT_EQ(a.instances.size(), b.instances.size());
    EXPECT_EQ(a.instances[1].elements.connectivity, b.instances[1].elements.connectivity);
    EXPECT_EQ(a.assembly.surfaces[0].faces, b.assembly.surfaces[0].faces);
    EXPECT_EQ(again.steps().size(), early ? 1 : 0);
    closeOdb(again);
    std::remove(copy.c_str());
  }
}

TEST_F(ModelRoundTrip, RegionPairsInDefinitionOrder) {
  const std::vector<odb::RegionPairData>& pairs = odb_->regionPairs();
  ASSERT_EQ(pairs.size(), 2u);
  EXPECT_EQ(pairs[0].name, "TIE-B");
  EXPECT_EQ(pairs[0].kind, odb::kTie);
  EXPECT_EQ(pairs[0].first, "FIX");
  EXPECT_EQ(pairs[0].second, "SOLID");
  EXPECT_EQ(pairs[1].name, "CP-A");
  EXPECT_EQ(pairs[1].kind, odb::kContactPair);
  EXPECT_EQ(pairs[1].second, "SKIN");
}

TEST(RegionPairs, WriterRefusesBadPairsAndAModelWithoutPairsReadsNone) {
  auto refused = [](std::vector<odb::RegionPairData> pairs) {
    std::string path = odbtest::tempPath("pairs.odb");
    odb::ModelData m;
    m.regionPairs = std::move(pairs);
    bool threw = false;
    try {
      odb::writeModel(path, m);
    } catch (const std::invalid_argument&) {
      threw = true;
    }
    std::remove(path.c_str());
    return threw;
  };
  EXPECT_TRUE(refused({{"P", odb::kTie, "A", "B"}, {"P", odb::kTie, "C", "D"}}));
  EXPECT_TRUE(refused({{"", odb::kTie, "A", "B"}}));
  EXPECT_TRUE(refused({{"P", 3, "A", "B"}}));
  EXPECT_TRUE(refused({{"P", odb::kContactPair, "A", ""}}));
  EXPECT_FALSE(refused({{"P", odb::kContactPair, "A", "B"}}));

  // A model without pairs keeps the layout of files written before pairs were stored.
  odb_initializeAPI();
  std::string path = odbtest::tempPath("nopairs.odb");
  odb::writeModel(path, odb::ModelData());
  odb_Odb& odb = openOdb(path, true);
  EXPECT_FALSE(odb.source()->file.root().has("assembly/region_pairs"));
  EXPECT_TRUE(odb.regionPairs().empty());
  closeOdb(odb);
  std::remove(path.c_str());
}

TEST(Writer, RejectsInconsistentInputAndLeavesNoFile) {
  std::string path = odbtest::tempPath("bad.odb");
  {
    odb::Writer w(path);
    odb::EntityWriter p = w.addInstance("P");
    EXPECT_THROW(p.addNodes({1, 2}, {0.f, 0.f, 0.f}), std::invalid_argument);
    EXPECT_THROW(w.addInstance("P"), std::invalid_argument);
    EXPECT_THROW(p.addElements("C3D8", {1}, 8, {1, 2}), std::invalid_argument);
    p.addElement("B31", 1, {1, 2}, 4);                    // unknown category: caught at close
    EXPECT_THROW(w.writeModel(), std::invalid_argument);  // and the model stays
    EXPECT_THROW(w.close(), std::invalid_argument);
  }
  EXPECT_FALSE(std::ifstream(path).good());
}

}  // namespace
