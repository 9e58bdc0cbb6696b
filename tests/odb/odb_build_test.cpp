// The JSON builder: a full description builds a database; a bad one names the place of its
// first error and writes nothing.
#include <gtest/gtest.h>

#include <cstdio>
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
  // Title, sets, orientations and placements are read back through odb_cli in
  // tests/cli/cli_model_test.cpp.
  odb_Odb& odb = openOdb(out, true);
  const odb_Assembly& a = odb.rootAssembly();
  const odb_Instance& block = a.instances()["BLOCK-1"];
  EXPECT_EQ(block.elements()[0].sectionCategory().name(), "solid < elset = BLOCK");
  EXPECT_EQ(block.surfaces()["TOP"].faces()[0], 2);
  // Region pairs in the order given; the kind defaults to a contact pair.
  ASSERT_EQ(odb.regionPairs().size(), 2u);
  EXPECT_EQ(odb.regionPairs()[0].kind, odb::kTie);
  EXPECT_EQ(odb.regionPairs()[0].second, "TOP");
  EXPECT_EQ(odb.regionPairs()[1].kind, odb::kContactPair);
  EXPECT_EQ(a.instances()["SKIN-1"].nodes().dimension(), 2);
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

// A packed lower triangle of a matrix field reads back as written.
TEST(OdbBuild, MatrixFieldReadsBackAsWritten) {
  std::string out = odbtest::tempPath("matrix.odb");
  ASSERT_EQ(errorOf(R"({"instances": [{"name": "P", "nodes": [[1, 0, 0, 0]]}],
    "steps": [{"name": "Modes", "procedure": "*FREQUENCY", "frames": [
      {"fieldOutputs": [{"name": "MATRIX RSqq", "type": "MATRIX", "matrixOrder": 2,
        "componentLabels": ["M"],
        "blocks": [{"position": "WHOLE_MODEL", "data": [[1, 0.5, 2]]}]}]}]}]})",
                    out),
            "");
  odb_Odb& odb = openOdb(out, true);
  const odb_FieldOutput& m = odb.steps().at(0).frames()[0].fieldOutputs().get("MATRIX RSqq");
  EXPECT_EQ(m.type(), odb_Enum::MATRIX);
  EXPECT_EQ(m.matrixOrder(), 2);
  EXPECT_EQ(m.bulkDataBlocks()[0].blockData().data, (std::vector<float>{1, 0.5f, 2}));
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
  };
  for (const Case& c : cases) {
    EXPECT_NE(errorOf(c.text, out).find(c.message), std::string::npos)
        << "expected: " << c.message << "\n     got: " << errorOf(c.text, out);
    EXPECT_FALSE(exists(out));
  }
}

}  // namespace
