// odb_cli model and sets on the JSON-built database: the summaries a person reads.
#include <gtest/gtest.h>

#include <fstream>
#include <sstream>

#include "odb/odb.h"
#include "platform/platform.h"
#include "tests/model/small_model_db.h"
#include "tools/cli/cli_app.h"

namespace odbs::cli {
namespace {

class CliModel : public ::testing::Test {
 protected:
  static void SetUpTestSuite() {
    odb_initializeAPI();
    path_ = new std::string("/tmp/cli_model_" + std::to_string(platform::processId()) + ".odb");
    odbs::test::buildSmallModel(*path_);
  }
  static void TearDownTestSuite() {
    platform::removeFile(*path_);
    delete path_;
  }

  // Runs odb_cli with args after the program name and the server option.
  std::string run(std::vector<std::string> args) {
    args.insert(args.begin(), {"odb_cli", "--server", ODB_SERVER_PATH, "--timeout", "5000"});
    std::istringstream in;
    std::ostringstream out, err;
    code_ = runCli(args, in, out, err);
    error_ = err.str();
    return out.str();
  }

  static std::string* path_;
  int code_ = -1;
  std::string error_;
};

std::string* CliModel::path_ = nullptr;

TEST_F(CliModel, ModelSummaryNamesSectionsMaterialsAndBlocks) {
  std::string text = run({"model", *path_});
  ASSERT_EQ(code_, 0) << error_;
  EXPECT_NE(text.find("title          Two parts and a connector"), std::string::npos) << text;
  EXPECT_NE(text.find("#1  CONN  connector, orientation CONN (DATUM-1, -)  [ASSEMBLY]"),
            std::string::npos)
      << text;
  EXPECT_NE(text.find("STEEL  density 7.8e-09, elastic ISOTROPIC 210000 0.3 0 0 0 0"),
            std::string::npos)
      << text;
  EXPECT_NE(text.find("BLOCK-1: 8 nodes (3D, 0 0 0 to 1 1 1), 1 elements: C3D8 1"),
            std::string::npos)
      << text;
  EXPECT_NE(text.find("mesh           13 nodes, 3 elements"), std::string::npos) << text;

  std::string json = run({"model", *path_, "--nodes-only", "--format", "json"});
  ASSERT_EQ(code_, 0) << error_;
  EXPECT_EQ(json.rfind("{\"title\":\"Two parts and a connector\",\"analysisCode\":1,", 0), 0u)
      << json;
  EXPECT_NE(json.find("{\"name\":\"SKIN-1\",\"nodes\":4,\"elements\":0,"), std::string::npos)
      << json;
  // steps shows the same analysis code as model.
  json = run({"--format", "json", "steps", *path_});
  EXPECT_EQ(json.rfind("{\"title\":\"Two parts and a connector\",\"analysisCode\":1,", 0), 0u)
      << json;
}

TEST_F(CliModel, SetSummaryNamedSetsAndCsv) {
  std::string text = run({"sets", "--surfaces", *path_});
  ASSERT_EQ(code_, 0) << error_;
  EXPECT_NE(text.find("3 node sets, 4 element sets, 1 surfaces"), std::string::npos) << text;
  EXPECT_NE(text.find("node set    ALL_BASE         2 members  in BLOCK-1 (assembly set)"),
            std::string::npos)
      << text;
  std::string json = run({"--format", "json", "sets", *path_, "--named", "CONN"});
  EXPECT_NE(json.find("\"sets\":[{\"kind\":\"element set\",\"name\":\"CONN\",\"instance\":"
                      "\"ASSEMBLY\",\"assembly\":true,\"members\":1,\"error\":false}]"),
            std::string::npos)
      << json;
  std::string csv = run({"sets", *path_, "--format", "csv"});
  EXPECT_EQ(csv.rfind("kind,name,instance,assembly,members,error\n", 0), 0u) << csv;
  EXPECT_NE(csv.find("\nnode set,ALL_BASE,BLOCK-1,1,2,0\n"), std::string::npos) << csv;
}

TEST_F(CliModel, FilteredModelAndBadFilters) {
  std::string text = run({"model", *path_, "--filter", "instance=SKIN-1"});
  ASSERT_EQ(code_, 0) << error_;
  EXPECT_NE(text.find("mesh           4 nodes, 1 elements"), std::string::npos) << text;
  run({"model", *path_, "--filter", "elset=BLOCK-1.BLOCK", "--filter", "nodes=1-8"});
  EXPECT_EQ(code_, 0) << error_;
  for (const char* bad : {"colour=red", "elements=1-x", "elset=", "section"}) {
    run({"model", *path_, "--filter", bad});
    EXPECT_EQ(code_, 2) << bad;
    EXPECT_NE(error_.find("--filter"), std::string::npos) << error_;
  }
}

TEST_F(CliModel, SectionAssignmentsAsTextAndCsv) {
  std::string text = run({"sections", *path_});
  ASSERT_EQ(code_, 0) << error_;
  EXPECT_NE(text.find("3 section assignments"), std::string::npos) << text;
  EXPECT_NE(text.find("SKIN on element set SKIN (1 members) in SKIN-1  offset 0.5 0  thickness 1"),
            std::string::npos)
      << text;
  std::string csv = run({"sections", *path_, "--format", "csv"});
  EXPECT_NE(csv.find("instance,number,section,regionKind,region,members,offset1,offset2,"
                     "thickness\n"),
            std::string::npos)
      << csv;
  EXPECT_NE(csv.find(",CONN,element set,CONN,1,,,\n"), std::string::npos) << csv;
}

// --help, --version and unknown options of every program: tests/tools/conventions.sh.
TEST_F(CliModel, SubcommandHelpAndBadCommandLines) {
  EXPECT_NE(run({"model", "--help"}).find("--nodes-only"), std::string::npos);
  EXPECT_EQ(code_, 0);

  for (const std::vector<std::string>& bad :
       std::vector<std::vector<std::string>>{{"model"},
                                             {"steps", *path_, "--timeout", "0"},
                                             {"model", *path_, "--format", "xml"},
                                             {"nosuchcommand"},
                                             {}}) {
    EXPECT_TRUE(run(bad).empty());
    EXPECT_EQ(code_, 2) << error_;
    EXPECT_NE(error_.find("--help"), std::string::npos) << error_;
  }
}

}  // namespace
}  // namespace odbs::cli
