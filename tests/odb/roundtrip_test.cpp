// Every kind of model object, field and history data written by odb::Writer reads back
// through the read API, in the iteration orders the API promises; a copy keeps all of it;
// the writer refuses inconsistent input.
#include <gtest/gtest.h>

#include <cstdio>
#include <fstream>
#include <stdexcept>

#include "odb/model_copy.h"
#include "odb/odb.h"
#include "odb/writer.h"
#include "tests/odb/sample_model.h"

namespace {

using odb::FieldBlockData;

class RoundTrip : public ::testing::Test {
 protected:
  static void SetUpTestSuite() {
    odb_initializeAPI();
    path_ = odbtest::tempPath("roundtrip.odb");
    odbtest::writeSampleDatabase(path_);
  }
  static void TearDownTestSuite() { std::remove(path_.c_str()); }
  void SetUp() override { odb_ = &openOdb(path_, true); }
  void TearDown() override { closeOdb(*odb_); }
  static std::string path_;
  odb_Odb* odb_ = nullptr;
};
std::string RoundTrip::path_;

// The record contents (nodes, elements, sets, surfaces, sections, materials, assignments,
// orientations) are checked byte for byte through the model commands in tests/model; here
// the reader's own promises: key orders, out-of-range look-ups and section casts.
TEST_F(RoundTrip, HeaderOrdersAndLookUps) {
  EXPECT_EQ(odb_->name(), "sample");
  EXPECT_EQ(odb_->path(), path_);
  EXPECT_EQ(odb_->analysisTitle(), "Sample model");
  EXPECT_EQ(odb_->jobData().analysisCode(), odb_Enum::EXPLICIT);
  ASSERT_NE(odb_->userData().annotationObjects("xml"), nullptr);
  EXPECT_EQ(odb_->userData().annotationObjects("xml")->text(), "a\nb");
  EXPECT_EQ(odb_->userData().annotationObjects("missing"), nullptr);
  // Region pairs in definition order, not name order.
  ASSERT_EQ(odb_->regionPairs().size(), 2u);
  EXPECT_EQ(odb_->regionPairs()[0].name, "TIE-B");
  EXPECT_EQ(odb_->regionPairs()[1].kind, odb::kContactPair);

  const odb_Assembly& a = odb_->rootAssembly();
  EXPECT_EQ(odbtest::keysOf<odb_InstanceRepositoryIT>(a.instances()),
            (std::vector<std::string>{"PART-1-1", "PART-2-1"}));
  const odb_Instance& p1 = a.instances()["PART-1-1"];
  EXPECT_EQ(odbtest::keysOf<odb_SetRepositoryIT>(p1.nodeSets()),
            (std::vector<std::string>{"COUPLING_A", "FIX"}));
  EXPECT_EQ(p1.elements()[0].sectionCategory().name(), "solid < elset = SOLID");
  EXPECT_EQ(a.instances()["PART-2-1"].elements()[1].sectionCategory().name(), "");
  EXPECT_EQ(a.instances()["PART-2-1"].nodes().dimension(), 2);
  EXPECT_EQ(p1.nodeSets()["FIX"].elements().size(), 0);
  EXPECT_THROW(a.instances()["NOPE"], std::out_of_range);
  EXPECT_THROW(p1.nodes()[12], std::out_of_range);
  EXPECT_THROW(a.elementSets()["BOTH"].elements("PART-3"), std::out_of_range);
  EXPECT_EQ(odbtest::keysOf<odb_SectionCategoryRepositoryIT>(odb_->sectionCategories()),
            (std::vector<std::string>{"shell < elset = SKIN", "solid < elset = SOLID"}));

  auto& ext = static_cast<kseO_ApiExtension&>(odb_->extendApi(odb_Enum::SECTION_API));
  const kseO_SectionContainer& c = ext.sections();
  EXPECT_EQ(c.size(), 11);
  const odb_Section& skin = *c["Section-SKIN"];
  ASSERT_EQ(skin.subTypeIdentifier(), kseO_CompositeShellSection::typeIdentifier());
  EXPECT_EQ(kseO_CompositeShellSection::cast(skin).layup()[1].orientAngle().getInt(), 90);
  EXPECT_EQ(c["Section-OTHER"]->subTypeIdentifier(), odb_Section::typeIdentifier());
  EXPECT_THROW(kseO_PointSection::cast(*c["Section-THIN"]), std::runtime_error);
  EXPECT_THROW(odb_->extendApi(7), std::invalid_argument);
  auto& mat = static_cast<kmaO_ApiExtension&>(odb_->extendApi(odb_Enum::MATERIAL_API));
  EXPECT_EQ(mat.materials()["EMPTY"]->elastic(), nullptr);
}

// The texts and numbers of steps and frames reach the catalogue records
// (tests/access/catalogue_process_test.cpp); here their order and look-ups.
TEST_F(RoundTrip, StepsInInsertionOrderAndFrameIndices) {
  const odb_StepRepository& steps = odb_->steps();
  EXPECT_EQ(odbtest::keysOf<odb_StepRepositoryIT>(steps),
            (std::vector<std::string>{"Step-B", "Step-A"}));
  EXPECT_EQ(steps["Step-A"].frames()[0].frameIndex(), 7);  // given
  const odb_Step& b = steps["Step-B"];
  ASSERT_EQ(b.frames().size(), 2);
  EXPECT_EQ(b.frames()[1].frameIndex(), 1);  // counted
  EXPECT_THROW(b.frames()[2], std::out_of_range);
  EXPECT_THROW(steps["Step-C"], std::out_of_range);
}

// The values of blocks of every kind reach the field commands (tests/results); here what
// only the reader promises: full double precision, subsets and the writer's counts.
TEST_F(RoundTrip, FieldBlocksOfEveryKind) {
  const odb_FieldOutputRepository& fields = odb_->steps()["Step-B"].frames()[0].fieldOutputs();
  EXPECT_FALSE(fields.isMember("E"));
  const odb_FieldOutput& s = fields.get("S");
  EXPECT_EQ(s.componentLabels()[3], "S12");
  ASSERT_EQ(s.locations().size(), 2);
  EXPECT_EQ(s.locations()[0].position(), odb_Enum::INTEGRATION_POINT);
  odb_SequenceFieldBulkData blocks = s.bulkDataBlocks();
  ASSERT_EQ(blocks.size(), 2);
  EXPECT_EQ(blocks[0].precision(), odb_Enum::DOUBLE_PRECISION);
  EXPECT_EQ(blocks[0].data(), nullptr);
  EXPECT_DOUBLE_EQ(blocks[0].dataDouble()[11], 1.0 + 11 / 3.0);  // full double precision kept
  EXPECT_EQ(blocks[0].numberOfElements(), 1);
  EXPECT_FLOAT_EQ(blocks[0].localCoordSystem()[7], 0.7071f);
  EXPECT_EQ(blocks[1].localCoordSystem(), nullptr);

  odb_FieldOutput centroid = s.getSubset(odb_Enum::CENTROID);
  ASSERT_EQ(centroid.bulkDataBlocks().size(), 1);
  EXPECT_EQ(centroid.bulkDataBlocks()[0].elementLabels()[0], 2);
  EXPECT_EQ(centroid.locations().size(), 1);
  EXPECT_EQ(s.getSubset(odb_Enum::NODAL).bulkDataBlocks().size(), 0);

  const odb_FieldOutput& sf = fields["SF"];
  ASSERT_EQ(sf.locations()[0].sectionPoints().size(), 2);
  EXPECT_EQ(sf.locations()[0].sectionPoints()[1].number(), 5);
  EXPECT_EQ(sf.bulkDataBlocks()[1].numberOfElements(), 1);  // counted by the writer
  EXPECT_EQ(fields["U"].bulkDataBlocks()[0].numberOfElements(), 0);
  EXPECT_FLOAT_EQ(
      odb_->steps()["Step-B"].frames()[1].fieldOutputs()["U"].bulkDataBlocks()[0].data()[5], 12.f);
}

// Complex values through the walk: tests/results/field_values_test.cpp.
TEST_F(RoundTrip, ClearAllReadsTheBlocksAgain) {
  const odb_FieldOutput& u = odb_->steps()["Step-A"].frames()[0].fieldOutputs()["U"];
  EXPECT_TRUE(u.isComplex());
  odb_SequenceFieldBulkData blocks = u.bulkDataBlocks();
  EXPECT_EQ(blocks[0].elementLabels(), nullptr);
  blocks.clearAll();
  EXPECT_FLOAT_EQ(u.bulkDataBlocks()[0].conjugateData()[0], -0.5f);
}

// Every point field and complex outputs: history_columns_test.cpp.
TEST_F(RoundTrip, HistoryRegionsAndOutputsInKeyOrder) {
  const odb_HistoryRegionRepository& regions = odb_->steps()["Step-B"].historyRegions();
  EXPECT_EQ(odbtest::keysOf<odb_HistoryRegionRepositoryIT>(regions),
            (std::vector<std::string>{"Element ASSEMBLY.5000", "Node PART-1-1.5"}));
  const odb_HistoryRegion& node = regions["Node PART-1-1.5"];
  EXPECT_EQ(node.historyPoint().element().label(), -1);
  EXPECT_EQ(odbtest::keysOf<odb_HistoryOutputRepositoryIT>(node.historyOutputs()),
            (std::vector<std::string>{"U1", "U2"}));
  EXPECT_EQ(regions["Element ASSEMBLY.5000"].historyPoint().position(), odb_Enum::WHOLE_ELEMENT);
}

// Once through close() alone, once with the model written ahead of the steps (writeModel):
// both copies hold the model and every result, and the early one takes no model calls
// afterwards.
TEST_F(RoundTrip, CopyKeepsTheModelAndEveryResult) {
  for (bool early : {false, true}) {
    SCOPED_TRACE(early ? "writeModel before the steps" : "close only");
    std::string copy = odbtest::tempPath("copy.odb");
    {
      odb::Writer w(copy);
      odb::addModel(w, odb::readModel(*odb_));
      if (early) {
        w.writeModel();
        EXPECT_THROW(w.setTitle("late"), std::logic_error);
        EXPECT_THROW(w.addInstance("LATE"), std::logic_error);
        EXPECT_THROW(w.addInstance("PART-1-1"), std::invalid_argument);  // a duplicate still
      }
      odb::copyResults(*odb_, w);
      w.close();
    }
    odb_Odb& again = openOdb(copy, true);
    odb::ModelData a = odb::readModel(*odb_), b = odb::readModel(again);
    EXPECT_EQ(b.title, a.title);
    EXPECT_EQ(a.instances.size(), b.instances.size());
    EXPECT_EQ(a.instances[1].elements.connectivity, b.instances[1].elements.connectivity);
    EXPECT_EQ(a.assembly.surfaces[0].faces, b.assembly.surfaces[0].faces);
    const odb_FieldBulkData& s =
        again.steps()["Step-B"].frames()[0].fieldOutputs()["S"].bulkDataBlocks()[0];
    EXPECT_DOUBLE_EQ(s.dataDouble()[11], 1.0 + 11 / 3.0);
    EXPECT_EQ(again.steps()["Step-A"].frames()[0].frameIndex(), 7);
    EXPECT_FLOAT_EQ(again.steps()["Step-A"]
                        .historyRegions()["Assembly ASSEMBLY"]
                        .historyOutputs()["ALLIE"]
                        .conjugateData()[0][1],
                    -1.f);
    closeOdb(again);
    std::remove(copy.c_str());
  }
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
    EXPECT_EQ(w.model().instances.size(), 1u);  // close keeps the refused model too
  }
  EXPECT_FALSE(std::ifstream(path).good());
}

TEST(ResultsWriter, RejectsCallsOutOfOrderAndBadBlocks) {
  std::string path = odbtest::tempPath("bad_results.odb");
  odb::Writer w(path);
  EXPECT_THROW(w.addFrame({}), std::invalid_argument);
  w.addStep({"S", "", "", 0, 0});
  EXPECT_THROW(w.addStep({"S", "", "", 0, 0}), std::invalid_argument);
  EXPECT_THROW(w.addFieldOutput({"U", "", odb_Enum::SCALAR, {}, false, 0, {}}),
               std::invalid_argument);
  w.addFrame({});
  EXPECT_THROW(w.addFieldBlock({}), std::invalid_argument);
  w.addFieldOutput({"U", "", odb_Enum::VECTOR, {"U1", "U2"}, true, 0, {}});
  FieldBlockData b;
  b.width = 2;
  b.data = {1, 2, 3};
  EXPECT_THROW(w.addFieldBlock(b), std::invalid_argument);  // not a multiple of the width
  b.data = {1, 2};
  EXPECT_THROW(w.addFieldBlock(b), std::invalid_argument);  // complex without conjugate
  b.conjugateData = {0, 0};
  b.nodeLabels = {1, 2};
  EXPECT_THROW(w.addFieldBlock(b), std::invalid_argument);  // two labels for one value
}

}  // namespace
