// odb_cli fields through the real server: element values through an r form, a nodal field
// through rd after the r form finds no element values, and the three output formats.
#include <gtest/gtest.h>

#include <sstream>
#include <string>
#include <vector>

#include "odb/enums.h"
#include "odb/results_data.h"
#include "odb/writer.h"
#include "platform/platform.h"
#include "tests/odb/sample_model.h"
#include "tests/results/field_db.h"
#include "tools/cli/cli_app.h"

namespace odbs::cli {
namespace {

int fields(const std::vector<std::string>& args, std::ostream& out, std::ostream& err) {
  std::vector<std::string> all = {"odb_cli", "fields", "--server", ODB_SERVER_PATH};
  all.insert(all.end(), args.begin(), args.end());
  std::istringstream in;
  return runCli(all, in, out, err);
}

// One instance, one frame: EVOL, a scalar at two C3D8 elements (0.1 and 2.5 at point 1),
// and U, a nodal vector at nodes 1 and 2. With regions: element 1 on nodes 1 and 2, element
// 2 on node 2, element set E2 {2}, node set N1 {1}, and the contact pair CP of E2 and N1.
void writeFieldsDatabase(const std::string& path, bool withRegions = false) {
  odb::Writer w(path);
  w.setTitle("cli fields");
  odb::EntityWriter part = w.addInstance("PART-1-1");
  part.addNodes({1, 2}, {0, 0, 0, 1, 0, 0});
  if (withRegions) {
    part.addElement("C3D8", 1, {1, 2});
    part.addElement("C3D8", 2, {2});
    part.addElementSet("E2", {2});
    part.addNodeSet("N1", {1});
    w.addRegionPair({"CP", odb::kContactPair, "E2", "N1"});
  }
  test::addStepFrame(w, "Step-1");
  w.addFieldOutput(test::fieldOf("EVOL", odb_Enum::SCALAR, {"EVOL"}));
  w.addFieldBlock(test::elementBlock("C3D8", {1, 2}, {1, 1}, {}, 1, {0.1f, 2.5f}));
  w.addFieldOutput(test::fieldOf("U", odb_Enum::VECTOR, {"U1", "U2", "U3"}));
  odb::FieldBlockData n;
  n.instance = "PART-1-1";
  n.position = odb_Enum::NODAL;
  n.type = odb_Enum::VECTOR;
  n.width = 3;
  n.nodeLabels = {1, 2};
  n.data = {0.5f, -1.25f, 0.f, 3.f, 0.1f, 2.f};
  w.addFieldBlock(n);
  w.close();
}

TEST(CliFields, ElementAndNodalValuesInEveryFormat) {
  std::string db = odbtest::tempPath("cli-fields.odb");
  writeFieldsDatabase(db);
  std::ostringstream text, err;
  ASSERT_EQ(fields({db, "--field", "EVOL"}, text, err), 0) << err.str();
  EXPECT_NE(text.str().find("title: cli fields\n2 values\n"), std::string::npos) << text.str();
  EXPECT_NE(text.str().find("C3D8             2     1        -1    -1  2.5"), std::string::npos)
      << text.str();

  // Element, point 1, no node, no section point; the float 0.1 with every digit it needs.
  std::ostringstream csv;
  ASSERT_EQ(fields({db, "--field", "EVOL", "--form", "v", "--format", "csv"}, csv, err), 0)
      << err.str();
  EXPECT_EQ(csv.str(),
            "instance,element_type,element,point,node,section_point,c1\n"
            ",C3D8,1,1,-1,-1,0.1\n"
            ",C3D8,2,1,-1,-1,2.5\n");

  // U has no element values: the r form answers nothing and rd gives the node rows.
  std::ostringstream nodal;
  ASSERT_EQ(fields({db, "--field", "U", "--format", "csv"}, nodal, err), 0) << err.str();
  EXPECT_EQ(nodal.str(),
            "instance,element_type,element,point,node,section_point,c1,c2,c3\n"
            ",,,0,1,-1,0.5,-1.25,0\n"
            ",,,0,2,-1,3,0.1,2\n");
  std::ostringstream json;
  ASSERT_EQ(fields({db, "--field", "U", "--form", "d", "--format", "json"}, json, err), 0);
  EXPECT_NE(json.str().find("\"node\":2,\"section_point\":-1,\"c1\":3.0,\"c2\":0.1,\"c3\":2.0}"),
            std::string::npos)
      << json.str();

  // A field the frame does not have: no values, not an error.
  std::ostringstream none;
  ASSERT_EQ(fields({db, "--field", "NOPE"}, none, err), 0);
  EXPECT_NE(none.str().find("0 values\n"), std::string::npos);

  std::ostringstream bad, why;
  EXPECT_NE(fields({db, "--field", "U", "--form", "x"}, bad, why), 0);
  EXPECT_NE(fields({db}, bad, why), 0);
  EXPECT_EQ(fields({"/nonexistent.odb", "--field", "U"}, bad, why), 1);
  EXPECT_NE(why.str().find("cannot open /nonexistent.odb: no such file"), std::string::npos);
  odbs::platform::removeFile(db);
}

// rn and rg: a side and region column lead each row; nodal values of an element set are
// those of its elements' nodes.
TEST(CliFields, TwoRegionsByNameAndByNumber) {
  std::string db = odbtest::tempPath("cli-regions.odb");
  writeFieldsDatabase(db, true);
  std::ostringstream csv, err;
  ASSERT_EQ(fields({db, "--field", "EVOL", "--regions", "CP", "--format", "csv"}, csv, err), 0)
      << err.str();
  EXPECT_EQ(csv.str(),
            "side,region,instance,element_type,element,point,node,section_point,c1\n"
            "1,E2,,C3D8,2,1,-1,-1,2.5\n");
  std::ostringstream nodal;
  ASSERT_EQ(fields({db, "--field", "U", "--region-pair", "1", "--format", "csv"}, nodal, err), 0)
      << err.str();
  EXPECT_EQ(nodal.str(),
            "side,region,instance,element_type,element,point,node,section_point,c1,c2,c3\n"
            "1,E2,,,,0,2,-1,3,0.1,2\n"
            "2,N1,,,,0,1,-1,0.5,-1.25,0\n");
  std::ostringstream text;
  ASSERT_EQ(fields({db, "--field", "U", "--regions", "N1:E2.OUTER"}, text, err), 0);
  EXPECT_NE(text.str().find("A: N1\n"), std::string::npos) << text.str();
  EXPECT_NE(text.str().find("B: E2\n"), std::string::npos) << text.str();
  odbs::platform::removeFile(db);
}

}  // namespace
}  // namespace odbs::cli
