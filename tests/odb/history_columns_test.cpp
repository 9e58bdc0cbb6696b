// History stored column-wise: every point field, complex outputs and double-precision
// times read back; one region is read without the others; a version-2 file with history
// and sets upgrades to the same content.
#include <gtest/gtest.h>

#include <cstdio>

#include "odb/format.h"
#include "odb/model_copy.h"
#include "odb/odb.h"
#include "odb/writer.h"
#include "tests/odb/legacy_v1_writer.h"
#include "tests/odb/sample_model.h"

namespace {

odb::HistoryOutputData output(const std::string& name, std::vector<double> times,
                              std::vector<float> values, std::vector<float> imaginary = {}) {
  odb::HistoryOutputData o;
  o.name = name;
  o.description = name + " history";
  o.frameValues = times;
  for (size_t i = 0; i < times.size(); ++i) {
    o.data.push_back(static_cast<float>(times[i]));
    o.data.push_back(values[i]);
    if (!imaginary.empty()) {
      o.conjugateData.push_back(static_cast<float>(times[i]));
      o.conjugateData.push_back(imaginary[i]);
    }
  }
  return o;
}

// Regions at every kind of point: a node, an integration point with section point, a
// whole region with its set; outputs shared by regions, one complex.
std::vector<odb::HistoryRegionData> regions() {
  std::vector<odb::HistoryRegionData> v(3);
  v[0].name = "Node PART-1-1.5";
  v[0].point.position = odb_Enum::NODAL;
  v[0].point.nodeLabel = 5;
  v[0].point.instance = "PART-1-1";
  v[0].outputs = {output("U2", {0.0, 7.5e-06, 1.0}, {0.f, 0.1f, 0.3f}),
                  output("U1", {0.0, 7.5e-06, 1.0}, {1.f, 2.f, 3.f})};
  v[1].name = "Element PART-1-1.1 Int Point 2 Section Point 3";
  v[1].description = "shell point";
  v[1].point.position = odb_Enum::INTEGRATION_POINT;
  v[1].point.elementLabel = 1;
  v[1].point.elementType = "C3D8";
  v[1].point.integrationPoint = 2;
  v[1].point.sectionPoint = {3, "middle"};
  v[1].point.instance = "PART-1-1";
  v[1].outputs = {output("U2", {0.5}, {9.f}), output("SF", {2.0, 3.0}, {4.f, 5.f}, {-4.f, -5.f})};
  v[2].name = "Node set FIX";
  v[2].point.position = odb_Enum::WHOLE_REGION;
  v[2].point.region.name = "FIX";
  v[2].point.region.type = odb_Enum::NODE_SET;
  v[2].point.region.addMembers("PART-1-1", {1, 2, 3});
  v[2].outputs = {output("RF3", {}, {})};
  return v;
}

void expectRegions(const odb_Step& step, bool doubleTimes) {
  const odb_HistoryRegionRepository& r = step.historyRegions();
  ASSERT_EQ(r.size(), 3);
  const odb_HistoryRegion& node = r["Node PART-1-1.5"];
  EXPECT_EQ(node.historyPoint().node().label(), 5);
  EXPECT_EQ(node.historyPoint().instance().name(), "PART-1-1");
  const odb_HistoryOutput& u2 = node.historyOutputs()["U2"];
  EXPECT_EQ(u2.description(), "U2 history");
  ASSERT_EQ(u2.data().size(), 3);
  EXPECT_FLOAT_EQ(u2.data()[2][1], 0.3f);
  EXPECT_FLOAT_EQ(u2.data()[1][0], 7.5e-06f);
  if (doubleTimes) {
    EXPECT_EQ(u2.frameValues()[1], 7.5e-06);  // not 7.4999998e-06
  }
  EXPECT_FLOAT_EQ(node.historyOutputs()["U1"].data()[0][1], 1.f);

  const odb_HistoryRegion& ip = r["Element PART-1-1.1 Int Point 2 Section Point 3"];
  odb_HistoryPoint p = ip.historyPoint();
  EXPECT_EQ(ip.description(), "shell point");
  EXPECT_EQ(p.position(), odb_Enum::INTEGRATION_POINT);
  EXPECT_EQ(p.element().label(), 1);
  EXPECT_EQ(p.element().type(), "C3D8");
  EXPECT_EQ(p.ipNumber(), 2);
  EXPECT_EQ(p.sectionPoint().number(), 3);
  EXPECT_EQ(p.sectionPoint().description(), "middle");
  EXPECT_FLOAT_EQ(ip.historyOutputs()["U2"].data()[0][1], 9.f);
  const odb_HistoryOutput& sf = ip.historyOutputs()["SF"];
  ASSERT_EQ(sf.conjugateData().size(), 2);
  EXPECT_FLOAT_EQ(sf.conjugateData()[1][0], 3.f);
  EXPECT_FLOAT_EQ(sf.conjugateData()[1][1], -5.f);
  EXPECT_EQ(ip.historyOutputs()["U2"].conjugateData().size(), 0);

  const odb_HistoryRegion& set = r["Node set FIX"];
  EXPECT_EQ(set.historyPoint().region().name(), "FIX");
  EXPECT_EQ(set.historyPoint().region().nodes("PART-1-1")[2], 3);
  EXPECT_EQ(set.historyOutputs()["RF3"].data().size(), 0);
}

class HistoryColumns : public ::testing::Test {
 protected:
  void SetUp() override {
    odb_initializeAPI();
    path_ = odbtest::tempPath("history.odb");
    odb::Writer w(path_);
    odb::addModel(w, odbtest::sampleModel());
    w.addStep(step_);
    for (const auto& r : regions()) w.addHistoryRegion(r);
    w.close();
  }
  void TearDown() override { std::remove(path_.c_str()); }
  std::string path_;
  odb::StepData step_{"Step-1", "", "*DYNAMIC", odb_Enum::MODAL, 2.5};
};

TEST_F(HistoryColumns, EveryPointFieldComplexOutputsAndDoubleTimes) {
  odb_Odb& odb = openOdb(path_, true);
  EXPECT_EQ(odb.formatVersion(), odb::kFormatVersion);
  const odb_Step& s = odb.steps()["Step-1"];
  EXPECT_EQ(s.domain(), odb_Enum::MODAL);
  EXPECT_DOUBLE_EQ(s.totalTime(), 2.5);
  expectRegions(s, true);
  closeOdb(odb);
}

TEST_F(HistoryColumns, OneRegionIsReadWithoutTheOthers) {
  {  // Damage the samples of the columns that only the other regions use.
    odb::h5::File f = odb::h5::File::open(path_, false);
    odb::h5::Group columns = f.root().open("steps/0/history/columns");
    odb::h5::Group sf = columns.open("2");  // U2, U1, SF, RF3 in order of first use
    sf.remove("values");
    sf.write("values", std::vector<int32_t>{1});
  }
  odb_Odb& odb = openOdb(path_, true);
  const odb_HistoryRegionRepository& r = odb.steps()["Step-1"].historyRegions();
  EXPECT_FLOAT_EQ(r["Node PART-1-1.5"].historyOutputs()["U2"].data()[2][1], 0.3f);
  EXPECT_THROW(r["Element PART-1-1.1 Int Point 2 Section Point 3"].historyOutputs()["SF"].data(),
               std::runtime_error);
  closeOdb(odb);
}

TEST_F(HistoryColumns, Version2FileWithHistoryAndSetsUpgradesToTheSameContent) {
  std::string old = odbtest::tempPath("history_v2.odb"), copy = old + ".odb";
  odb::ModelData m = odbtest::sampleModel();
  odbtest::writeVersion2(old, m, step_, regions());
  EXPECT_TRUE(isUpgradeRequiredForOdb(old));
  upgradeOdb(old, copy);
  odb_Odb& odb = openOdb(copy, true);
  EXPECT_EQ(odb.formatVersion(), odb::kFormatVersion);
  expectRegions(odb.steps()["Step-1"], false);
  odb::ModelData back = odb::readModel(odb);
  ASSERT_EQ(back.assembly.nodeSets.size(), m.assembly.nodeSets.size());
  for (size_t i = 0; i < m.instances.size(); ++i) {
    const odb::EntityData& want = m.instances[m.instances.size() - 1 - i];  // key order
    ASSERT_EQ(back.instances[i].surfaces.size(), want.surfaces.size());
    for (size_t k = 0; k < want.surfaces.size(); ++k) {
      EXPECT_EQ(back.instances[i].surfaces[k].labels, want.surfaces[k].labels);
      EXPECT_EQ(back.instances[i].surfaces[k].faces, want.surfaces[k].faces);
    }
  }
  closeOdb(odb);
  std::remove(old.c_str());
  std::remove(copy.c_str());
}

}  // namespace
