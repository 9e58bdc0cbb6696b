// Every kind of field and history data written by odb::Writer reads back unchanged:
// single and double precision, complex values, blocks with and without label arrays,
// section points, local coordinate systems, subsets by position, history with conjugates.
#include <gtest/gtest.h>

#include <cstdio>

#include "odb/model_copy.h"
#include "odb/odb.h"
#include "odb/writer.h"
#include "tests/odb/sample_model.h"

namespace {

using odb::FieldBlockData;

class ResultsRoundTrip : public ::testing::Test {
 protected:
  static void SetUpTestSuite() {
    odb_initializeAPI();
    path_ = odbtest::tempPath("results.odb");
    odbtest::writeSampleDatabase(path_);
  }
  static void TearDownTestSuite() { std::remove(path_.c_str()); }
  void SetUp() override { odb_ = &openOdb(path_, true); }
  void TearDown() override { closeOdb(*odb_); }
  static std::string path_;
  odb_Odb* odb_ = nullptr;
};
std::string ResultsRoundTrip::path_;

TEST_F(ResultsRoundTrip, StepsInInsertionOrderWithFrameCatalogue) {
  const odb_StepRepository& steps = odb_->steps();
  ASSERT_EQ(steps.size(), 2);
  EXPECT_EQ(steps.stepNames()[0], "Step-B");
  EXPECT_EQ(odbtest::keysOf<odb_StepRepositoryIT>(steps),
            (std::vector<std::string>{"Step-B", "Step-A"}));
  const odb_Step& a = steps["Step-A"];
  EXPECT_EQ(a.procedure(), "*STEADY STATE DYNAMICS");
  EXPECT_EQ(a.domain(), odb_Enum::FREQUENCY);
  EXPECT_DOUBLE_EQ(a.totalTime(), 1.0);
  const odb_Frame& f = a.frames()[0];
  EXPECT_EQ(f.frameIndex(), 7);
  EXPECT_EQ(f.mode(), 2);
  EXPECT_DOUBLE_EQ(f.frequency(), 12.5);
  EXPECT_EQ(f.description(), "Mode 2");
  const odb_Step& b = steps["Step-B"];
  ASSERT_EQ(b.frames().size(), 2);
  EXPECT_EQ(b.frames()[1].frameIndex(), 1);
  EXPECT_DOUBLE_EQ(b.frames()[1].frameValue(), 1.0);
  EXPECT_THROW(b.frames()[2], std::out_of_range);
  EXPECT_THROW(steps["Step-C"], std::out_of_range);
}

TEST_F(ResultsRoundTrip, FieldBlocksOfEveryKind) {
  const odb_Frame& f = odb_->steps()["Step-B"].frames()[0];
  const odb_FieldOutputRepository& fields = f.fieldOutputs();
  EXPECT_TRUE(fields.isMember("S"));
  EXPECT_FALSE(fields.isMember("E"));
  const odb_FieldOutput& s = fields.get("S");
  EXPECT_EQ(s.type(), odb_Enum::TENSOR_3D_FULL);
  EXPECT_EQ(s.componentLabels()[3], "S12");
  ASSERT_EQ(s.locations().size(), 2);
  EXPECT_EQ(s.locations()[0].position(), odb_Enum::INTEGRATION_POINT);
  odb_SequenceFieldBulkData blocks = s.bulkDataBlocks();
  ASSERT_EQ(blocks.size(), 2);
  const odb_FieldBulkData& b = blocks[0];
  EXPECT_EQ(b.length(), 2);
  EXPECT_EQ(b.width(), 6);
  EXPECT_EQ(b.precision(), odb_Enum::DOUBLE_PRECISION);
  EXPECT_EQ(b.data(), nullptr);
  EXPECT_DOUBLE_EQ(b.dataDouble()[11], 1.0 + 11 / 3.0);  // full double precision kept
  EXPECT_EQ(b.integrationPoints()[1], 2);
  EXPECT_EQ(b.nodeLabels(), nullptr);
  EXPECT_EQ(b.numberOfElements(), 1);
  EXPECT_EQ(b.orientationWidth(), 4);
  EXPECT_FLOAT_EQ(b.localCoordSystem()[7], 0.7071f);
  EXPECT_EQ(b.sectionPoint().number(), -1);
  EXPECT_EQ(b.baseElementType(), "C3D8");
  EXPECT_EQ(b.instance().name(), "PART-1-1");
  EXPECT_EQ(blocks[1].localCoordSystem(), nullptr);

  odb_FieldOutput centroid = s.getSubset(odb_Enum::CENTROID);
  ASSERT_EQ(centroid.bulkDataBlocks().size(), 1);
  EXPECT_EQ(centroid.bulkDataBlocks()[0].elementLabels()[0], 2);
  EXPECT_EQ(centroid.locations().size(), 1);
  EXPECT_EQ(s.getSubset(odb_Enum::NODAL).bulkDataBlocks().size(), 0);

  const odb_FieldOutput& sf = fields["SF"];
  ASSERT_EQ(sf.locations()[0].sectionPoints().size(), 2);
  EXPECT_EQ(sf.locations()[0].sectionPoints()[1].number(), 5);
  EXPECT_EQ(sf.bulkDataBlocks()[1].sectionPoint().number(), 5);
  EXPECT_FLOAT_EQ(sf.bulkDataBlocks()[1].data()[0], 5.f);
  EXPECT_EQ(sf.bulkDataBlocks()[1].numberOfElements(), 1);  // counted by the writer

  const odb_FieldOutput& u = fields["U"];
  EXPECT_EQ(u.bulkDataBlocks()[0].nodeLabels()[1], 2);
  EXPECT_EQ(u.bulkDataBlocks()[0].numberOfElements(), 0);
  EXPECT_EQ(u.bulkDataBlocks()[0].elementLabels(), nullptr);
  EXPECT_FLOAT_EQ(
      odb_->steps()["Step-B"].frames()[1].fieldOutputs()["U"].bulkDataBlocks()[0].data()[5], 12.f);
}

TEST_F(ResultsRoundTrip, ComplexAndMatrixFieldsAndClearAll) {
  const odb_FieldOutputRepository& fields = odb_->steps()["Step-A"].frames()[0].fieldOutputs();
  const odb_FieldOutput& u = fields["U"];
  EXPECT_TRUE(u.isComplex());
  odb_SequenceFieldBulkData blocks = u.bulkDataBlocks();
  EXPECT_FLOAT_EQ(blocks[0].data()[0], 1.5f);
  EXPECT_FLOAT_EQ(blocks[0].conjugateData()[0], -0.5f);
  EXPECT_EQ(blocks[0].elementLabels(), nullptr);
  EXPECT_EQ(blocks[0].integrationPoints(), nullptr);
  blocks.clearAll();
  EXPECT_FLOAT_EQ(u.bulkDataBlocks()[0].conjugateData()[0], -0.5f);  // reads again
  const odb_FieldOutput& m = fields["MATRIX Sqq"];
  EXPECT_EQ(m.type(), odb_Enum::MATRIX);
  EXPECT_EQ(m.matrixOrder(), 2);
  EXPECT_EQ(m.bulkDataBlocks()[0].length(), 3);
}

TEST_F(ResultsRoundTrip, HistoryRegionsAndOutputs) {
  const odb_HistoryRegionRepository& regions = odb_->steps()["Step-B"].historyRegions();
  EXPECT_EQ(odbtest::keysOf<odb_HistoryRegionRepositoryIT>(regions),
            (std::vector<std::string>{"Element ASSEMBLY.5000", "Node PART-1-1.5"}));
  const odb_HistoryRegion& node = regions["Node PART-1-1.5"];
  odb_HistoryPoint p = node.historyPoint();
  EXPECT_EQ(p.position(), odb_Enum::NODAL);
  EXPECT_EQ(p.node().label(), 5);
  EXPECT_EQ(p.element().label(), -1);
  EXPECT_EQ(p.region().name(), "MONITOR");
  EXPECT_EQ(odbtest::keysOf<odb_HistoryOutputRepositoryIT>(node.historyOutputs()),
            (std::vector<std::string>{"U1", "U2"}));
  const odb_HistoryOutput& u2 = node.historyOutputs()["U2"];
  ASSERT_EQ(u2.data().size(), 3);
  EXPECT_FLOAT_EQ(u2.data()[2][0], 1.f);
  EXPECT_FLOAT_EQ(u2.data()[2][1], 0.3f);
  EXPECT_EQ(u2.conjugateData().size(), 0);
  EXPECT_EQ(node.historyOutputs()["U1"].data().size(), 0);

  odb_HistoryPoint c = regions["Element ASSEMBLY.5000"].historyPoint();
  EXPECT_EQ(c.position(), odb_Enum::WHOLE_ELEMENT);
  EXPECT_EQ(c.element().label(), 5000);
  EXPECT_EQ(c.element().type(), "CONN3D2");
  EXPECT_EQ(c.ipNumber(), 1);
  EXPECT_EQ(c.sectionPoint().number(), 3);

  const odb_HistoryOutput& e =
      odb_->steps()["Step-A"].historyRegions()["Assembly ASSEMBLY"].historyOutputs()["ALLIE"];
  ASSERT_EQ(e.conjugateData().size(), 1);
  EXPECT_FLOAT_EQ(e.conjugateData()[0][1], -1.f);
}

TEST_F(ResultsRoundTrip, CopyKeepsEveryResult) {
  std::string copy = odbtest::tempPath("results_copy.odb");
  {
    odb::Writer w(copy);
    odb::addModel(w, odb::readModel(*odb_));
    odb::copyResults(*odb_, w);
    w.close();
  }
  odb_Odb& again = openOdb(copy, true);
  const odb_FieldBulkData& b =
      again.steps()["Step-B"].frames()[0].fieldOutputs()["S"].bulkDataBlocks()[0];
  EXPECT_DOUBLE_EQ(b.dataDouble()[11], 1.0 + 11 / 3.0);
  EXPECT_EQ(again.steps()["Step-A"].frames()[0].frameIndex(), 7);
  EXPECT_FLOAT_EQ(again.steps()["Step-A"]
                      .historyRegions()["Assembly ASSEMBLY"]
                      .historyOutputs()["ALLIE"]
                      .conjugateData()[0][1],
                  -1.f);
  closeOdb(again);
  std::remove(copy.c_str());
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
