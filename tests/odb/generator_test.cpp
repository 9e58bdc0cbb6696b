// The benchmark generator writes the databases the benchmarks expect: the mesh, the
// fields per frame (shell fields at 5 section points), the complex step and history.
#include "bench/gen/generator.h"

#include <gtest/gtest.h>

#include <cstdio>

#include "odb/odb.h"
#include "tests/odb/sample_model.h"

namespace {

TEST(Generator, ShellDatabaseHoldsEveryPart) {
  odb_initializeAPI();
  std::string path = odbtest::tempPath("gen.odb");
  odbgen::Options o;
  o.elements = 16;
  o.instances = 2;
  o.shells = true;
  o.frames = 2;
  o.complexStep = true;
  o.historyRegions = 3;
  odbgen::Summary s = odbgen::generate(path, o);
  EXPECT_EQ(s.elements, 32);
  EXPECT_EQ(s.nodes, 50);
  EXPECT_EQ(s.frames, 4);

  odb_Odb& odb = openOdb(path, true);
  const odb_Assembly& a = odb.rootAssembly();
  ASSERT_EQ(a.instances().size(), 2);
  const odb_Instance& p = a.instances()["PART-2-1"];
  EXPECT_EQ(p.elements().size(), 16);
  EXPECT_EQ(p.elements()[15].type(), "S4R");
  EXPECT_EQ(p.elements()[0].sectionCategory().sectionPoints().size(), 5);

  const odb_StepRepository& steps = odb.steps();
  ASSERT_EQ(steps.size(), 2);
  const odb_FieldOutput& stress = steps.at(0).frames()[1].fieldOutputs()["S"];
  EXPECT_EQ(stress.locations()[0].sectionPoints().size(), 5);
  odb_SequenceFieldBulkData blocks = stress.bulkDataBlocks();
  ASSERT_EQ(blocks.size(), 10);  // 5 section points in each of 2 instances
  EXPECT_EQ(blocks[4].sectionPoint().number(), 5);
  EXPECT_EQ(blocks[0].length(), 64);  // 16 elements, 4 integration points
  EXPECT_EQ(blocks[0].numberOfElements(), 16);
  EXPECT_EQ(blocks[9].instance().name(), "PART-2-1");

  const odb_Step& harmonic = steps.at(1);
  EXPECT_EQ(harmonic.domain(), odb_Enum::FREQUENCY);
  const odb_FieldOutput& u = harmonic.frames()[0].fieldOutputs()["U"];
  EXPECT_TRUE(u.isComplex());
  EXPECT_NE(u.bulkDataBlocks()[0].conjugateData(), nullptr);
  ASSERT_EQ(harmonic.historyRegions().size(), 3);
  const odb_HistoryRegion& r = harmonic.historyRegions().members().begin()->second;
  EXPECT_EQ(r.historyOutputs()["U2"].data().size(), 2);
  EXPECT_EQ(r.historyOutputs()["U2"].conjugateData().size(), 2);
  closeOdb(odb);
  std::remove(path.c_str());
}

}  // namespace
