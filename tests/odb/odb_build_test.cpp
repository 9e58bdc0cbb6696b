// The JSON builder: a full description builds a database; a bad one names the place of its
// first error and writes nothing.
#include <gtest/gtest.h>

#include <fstream>
#include <sstream>

#include "odb/odb.h"
#include "tests/odb/sample_model.h"
#include "tools/odb_build/odb_json.h"

namespace {

std::string fixture() {
  std::ifstream in(std::string(ODB_TEST_DATA) + "/small_model.json");
  std::stringstream s;
  s << in.rdbuf();
  return s.str();
}

// The message of the JsonError that building text throws; "" when it builds.
std::string errorOf(const std::string& text, const std::string& out) {
  try {
    odb::buildDatabaseFromJson(text, out);
  } catch (const odb::JsonError& e) {
    return e.what();
  }
  return "";
}

bool exists(const std::string& path) {
  return std::ifstream(path).good();
}

TEST(OdbBuild, FixtureBuildsAndReadsBack) {
  odb_initializeAPI();
  std::string out = odbtest::tempPath("json.odb");
  ASSERT_EQ(errorOf(fixture(), out), "");
  odb_Odb& odb = openOdb(out, true);
  EXPECT_EQ(odb.analysisTitle(), "Two parts and a connector");
  const odb_Assembly& a = odb.rootAssembly();
  EXPECT_EQ(a.instances().size(), 2);
  const odb_Instance& block = a.instances()["BLOCK-1"];
  EXPECT_EQ(block.nodes().size(), 8);
  EXPECT_EQ(block.elements()[0].sectionCategory().name(), "solid < elset = BLOCK");
  EXPECT_EQ(block.surfaces()["TOP"].faces()[0], 2);
  EXPECT_EQ(a.nodeSets()["ALL_BASE"].nodes("SKIN-1")[0], 1);
  EXPECT_EQ(a.connectorOrientations()[0].csys1().name(), "DATUM-1");
  // Region pairs in the order given; the kind defaults to a contact pair.
  ASSERT_EQ(odb.regionPairs().size(), 2u);
  EXPECT_EQ(odb.regionPairs()[0].kind, odb::kTie);
  EXPECT_EQ(odb.regionPairs()[0].second, "TOP");
  EXPECT_EQ(odb.regionPairs()[1].name, "CP");
  EXPECT_EQ(odb.regionPairs()[1].kind, odb::kContactPair);
  EXPECT_EQ(a.instances()["SKIN-1"].nodes().dimension(), 2);
  const odb::SectionPlacement& placed = a.instances()["SKIN-1"].sectionAssignments()[0].placement();
  EXPECT_TRUE(placed.hasOffset && placed.hasThickness);
  EXPECT_EQ(placed.offset1, 0.5f);
  EXPECT_EQ(placed.offset2, 0.f);
  EXPECT_EQ(placed.thickness, 1.f);
  EXPECT_FALSE(block.sectionAssignments()[0].placement().hasOffset);
  auto& sec = static_cast<kseO_ApiExtension&>(odb.extendApi(odb_Enum::SECTION_API));
  EXPECT_EQ(kseO_CompositeShellSection::cast(*sec.sections()["Section-SKIN"])
                .layup()[1]
                .orientAngle()
                .getString(),
            "ORI-1");
  const odb_StepRepository& steps = odb.steps();
  ASSERT_EQ(steps.size(), 2);
  EXPECT_EQ(steps.stepNames()[1], "Step-2");
  const odb_FieldBulkData& s = steps["Step-1"].frames()[0].fieldOutputs()["S"].bulkDataBlocks()[0];
  EXPECT_EQ(s.precision(), odb_Enum::DOUBLE_PRECISION);
  EXPECT_DOUBLE_EQ(s.dataDouble()[1], 2.5);
  EXPECT_EQ(s.sectionPoint().number(), 1);
  EXPECT_EQ(s.orientationWidth(), 4);
  EXPECT_EQ(s.numberOfElements(), 1);
  EXPECT_FLOAT_EQ(
      steps["Step-1"].historyRegions()["Node BLOCK-1.7"].historyOutputs()["U3"].data()[1][1],
      0.25f);
  const odb_FieldOutput& u = steps["Step-2"].frames()[0].fieldOutputs()["U"];
  EXPECT_TRUE(u.isComplex());
  EXPECT_FLOAT_EQ(u.bulkDataBlocks()[0].conjugateData()[0], -2.f);
  EXPECT_EQ(steps["Step-2"].domain(), odb_Enum::FREQUENCY);
  closeOdb(odb);
  std::remove(out.c_str());
}

// A copy of text with the first occurrence of from replaced by to.
std::string edited(std::string text, const std::string& from, const std::string& to) {
  size_t at = text.find(from);
  EXPECT_NE(at, std::string::npos) << from;
  return at == std::string::npos ? text : text.replace(at, from.size(), to);
}

// Bad text, wrong kinds, dangling references, and what the solver's importer refuses: the
// builder names the place of the first error before anything is written.
TEST(OdbBuild, ErrorsNameTheirPlaceAndWriteNothing) {
  std::string out = odbtest::tempPath("refused.odb");
  const std::string text = fixture();
  const std::string nodes = "\"nodes\": [[1, 0, 0, 0], [2, 1, 0, 0]";
  const std::string connectivity = "[1, 2, 3, 4, 5, 6, 7, 8]";
  struct Case {
    std::string text, message;
  } cases[] = {
      {edited(text, "\"title\"", "}\"title\""), "at line 3, column 3"},
      {edited(text, connectivity, "[\"x\", 1, 2, 3, 4, 5, 6, 7, 8]"),
       "at /instances/0/elements/0/nodes/0: expected an integer"},
      {edited(text, "\"region\": \"SKIN\"", "\"region\": \"NONE\""),
       "/instances/1/sectionAssignments/0/region: no set \"NONE\""},
      {edited(text, "\"offset\": [0.5]", "\"offset\": [1, 2, 3]"),
       "/instances/1/sectionAssignments/0/offset: expected [offset] or [offset1, offset2]"},
      {edited(text, "\"kind\": \"tie\"", "\"kind\": \"gap\""),
       "/assembly/regionPairs/0/kind: kind must be"},
      {edited(text, "\"name\": \"SKIN-1\"", "\"name\": \"BLOCK-1\""),
       "duplicate instance 'BLOCK-1'"},
      {edited(text, "\"nodeLabels\": [1, 2]", "\"nodeLabels\": [1]"),
       "at /steps/0/frames/0/fieldOutputs/0/blocks/0/nodeLabels: expected one entry"},
      // A complex field without conjugate data is refused by the writer.
      {edited(text, ", \"conjugateData\": [[-2.0]]", ""),
       "at /steps/1/frames/0/fieldOutputs/0/blocks/0: "},
      {"[1, 2]", "at /: expected an object"},
      {edited(text, connectivity, "[1, 2, 3, 4, 5, 6, 7, 9]"),
       "at /instances/0/elements/0/nodes/7: no node 9 in \"BLOCK-1\""},
      {edited(text, nodes, "\"nodes\": [[1, 0, 0, 0], [1, 1, 0, 0]"),
       "at /instances/0/nodes/1/0: duplicate node label 1"},
      {edited(text, nodes, "\"nodes\": [[0, 0, 0, 0], [2, 1, 0, 0]"),
       "at /instances/0/nodes/0/0: node labels must be positive"},
      {edited(text, "\"label\": 1, \"nodes\": [1, 2", "\"label\": -1, \"nodes\": [1, 2"),
       "at /instances/0/elements/0/label: element labels must be positive"},
      {edited(text, "\"BASE\": [1, 2, 3, 4]", "\"BASE\": [1, 2, 3, 40]"),
       "at /instances/0/nodeSets/BASE/3: no node 40 in \"BLOCK-1\""},
      {edited(text, "\"BASE\": [1, 2, 3, 4]", "\"BASE\": {\"SKIN-1\": [1]}"),
       "at /instances/0/nodeSets/BASE/SKIN-1: no instance \"SKIN-1\" for the members of a set of "
       "\"BLOCK-1\""},
      {edited(text, "\"SKIN-1\": [1]}", "\"SKIN-1\": [9]}"),
       "at /assembly/nodeSets/ALL_BASE/SKIN-1/0: no node 9 in \"SKIN-1\""},
      {edited(text, "\"Two parts and a connector\"", "\"Two parts\\u0000and a connector\""),
       "at /title: a text holds a NUL character"},
      {edited(text, "\"title\"", "\"titel\""), "at /: unknown member \"titel\""},
      {edited(text, "\"label\": 1, \"nodes\"", "\"lable\": 1, \"label\": 1, \"nodes\""),
       "at /instances/0/elements/0: unknown member \"lable\""},
  };
  for (const Case& c : cases) {
    EXPECT_NE(errorOf(c.text, out).find(c.message), std::string::npos)
        << "expected: " << c.message << "\n     got: " << errorOf(c.text, out);
    EXPECT_FALSE(exists(out));
  }
}

}  // namespace
