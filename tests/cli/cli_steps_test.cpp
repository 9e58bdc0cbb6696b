// odb_cli steps through the real server: the summary, JSON, and the cache file option.
#include <gtest/gtest.h>

#include <sstream>
#include <string>

#include "platform/platform.h"
#include "tests/access/steps_database.h"
#include "tests/odb/sample_model.h"
#include "tools/cli/steps_command.h"

namespace odbs::cli {
namespace {

TEST(StepsCommand, SummaryAndJson) {
  std::string db = odbtest::tempPath("cli-steps.odb");
  odbs::test::writeStepsDatabase(db, "CLI sample");
  CliOptions options;
  options.args = {db};
  std::ostringstream out, err;
  ASSERT_EQ(runSteps(options, ODB_SERVER_PATH, out, err), 0) << err.str();
  EXPECT_NE(out.str().find("title: CLI sample\n2 steps, 5 frames\n"), std::string::npos);
  EXPECT_NE(out.str().find("step 2  Step-2  *FREQUENCY  MODAL  total time 1  3 frames"),
            std::string::npos);
  EXPECT_NE(out.str().find("frame    3  value 30"), std::string::npos);

  options.format = OutputFormat::kJson;
  std::ostringstream json;
  ASSERT_EQ(runSteps(options, ODB_SERVER_PATH, json, err), 0);
  EXPECT_NE(json.str().find("{\"index\":1,\"domain\":0,\"mode\":0,\"value\":0.1,"),
            std::string::npos);

  // With --cache the server keeps the catalogue in the named file.
  std::string cache = odbtest::tempPath("cli-steps.cache");
  options.args = {db, "--cache", cache};
  std::ostringstream cached;
  ASSERT_EQ(runSteps(options, ODB_SERVER_PATH, cached, err), 0) << err.str();
  EXPECT_EQ(cached.str(), json.str());
  EXPECT_TRUE(odbs::platform::fileReadable(cache));
  odbs::platform::removeFile(cache);

  options.args = {"/nonexistent.odb"};
  std::ostringstream none, why;
  EXPECT_EQ(runSteps(options, ODB_SERVER_PATH, none, why), 1);
  EXPECT_NE(why.str().find("could not be opened"), std::string::npos);
  odbs::platform::removeFile(db);
}

}  // namespace
}  // namespace odbs::cli
