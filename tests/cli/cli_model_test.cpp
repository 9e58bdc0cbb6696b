// odb_cli model and sets on the JSON-built database: the summaries a person reads.
#include <gtest/gtest.h>

#include <fstream>
#include <sstream>

#include "odb/odb.h"
#include "platform/platform.h"
#include "tests/model/small_model_db.h"
#include "tools/cli/model_command.h"

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

  std::string run(int (*command)(const CliOptions&, const std::string&, std::ostream&,
                                 std::ostream&),
                  std::vector<std::string> args, OutputFormat format = OutputFormat::kText) {
    CliOptions options;
    options.format = format;
    options.timeoutMs = 5000;
    options.args = std::move(args);
    std::ostringstream out, err;
    code_ = command(options, ODB_SERVER_PATH, out, err);
    error_ = err.str();
    return out.str();
  }

  static std::string* path_;
  int code_ = -1;
  std::string error_;
};

std::string* CliModel::path_ = nullptr;

TEST_F(CliModel, ModelSummaryNamesSectionsMaterialsAndBlocks) {
  std::string text = run(runModel, {*path_});
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

  std::string json = run(runModel, {*path_, "--nodes-only"}, OutputFormat::kJson);
  ASSERT_EQ(code_, 0) << error_;
  EXPECT_EQ(json.rfind("{\"title\":\"Two parts and a connector\",\"analysisCode\":1,", 0), 0u)
      << json;
  EXPECT_NE(json.find("{\"name\":\"SKIN-1\",\"nodes\":4,\"elements\":0,"), std::string::npos)
      << json;
}

TEST_F(CliModel, SetSummaryAndNamedSets) {
  std::string text = run(runSets, {*path_, "--surfaces"});
  ASSERT_EQ(code_, 0) << error_;
  EXPECT_NE(text.find("3 node sets, 4 element sets, 1 surfaces"), std::string::npos) << text;
  EXPECT_NE(text.find("node set    ALL_BASE         2 members  in BLOCK-1 (assembly set)"),
            std::string::npos)
      << text;
  std::string json = run(runSets, {*path_, "--named", "CONN"}, OutputFormat::kJson);
  EXPECT_NE(json.find("\"sets\":[{\"kind\":\"element set\",\"name\":\"CONN\",\"instance\":"
                      "\"ASSEMBLY\",\"assembly\":true,\"members\":1,\"error\":false}]"),
            std::string::npos)
      << json;
}

TEST_F(CliModel, BadArgumentsAreRefused) {
  run(runModel, {});
  EXPECT_EQ(code_, 2);
  run(runSets, {*path_, "--bogus"});
  EXPECT_EQ(code_, 2);
  EXPECT_NE(error_.find("--bogus"), std::string::npos);
}

}  // namespace
}  // namespace odbs::cli
