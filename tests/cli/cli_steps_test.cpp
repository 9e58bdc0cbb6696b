// odb_cli steps through the real server: the summary, JSON, CSV, the cache file option, and
// the options before or after the database as a person types them.
#include <gtest/gtest.h>

#include <sstream>
#include <string>
#include <vector>

#include "platform/platform.h"
#include "tests/access/steps_database.h"
#include "tests/odb/sample_model.h"
#include "tools/cli/cli_app.h"

namespace odbs::cli {
namespace {

int steps(const std::vector<std::string>& args, std::ostream& out, std::ostream& err) {
  std::vector<std::string> all = {"odb_cli", "steps", "--server", ODB_SERVER_PATH};
  all.insert(all.end(), args.begin(), args.end());
  std::istringstream in;
  return runCli(all, in, out, err);
}

TEST(StepsCommand, SummaryJsonAndCsv) {
  std::string db = odbtest::tempPath("cli-steps.odb");
  odbs::test::writeStepsDatabase(db, "CLI sample");
  std::ostringstream out, err;
  ASSERT_EQ(steps({db}, out, err), 0) << err.str();
  EXPECT_NE(out.str().find("title: CLI sample\n2 steps, 5 frames\n"), std::string::npos);
  EXPECT_NE(out.str().find("step 2  Step-2  *FREQUENCY  MODAL  total time 1  3 frames"),
            std::string::npos);
  EXPECT_NE(out.str().find("frame    3  value 30"), std::string::npos);

  std::ostringstream json;
  ASSERT_EQ(steps({db, "--format", "json"}, json, err), 0);
  EXPECT_NE(json.str().find("{\"index\":1,\"domain\":0,\"mode\":0,\"value\":0.1,"),
            std::string::npos)
      << json.str();

  // One CSV row per frame; the frame value 0.1 keeps its short text.
  std::ostringstream csv;
  ASSERT_EQ(steps({"--format", "csv", db}, csv, err), 0);
  EXPECT_EQ(csv.str().rfind("step,step_name,procedure,step_domain,total_time,frame,", 0), 0u);
  EXPECT_NE(csv.str().find("\n1,Step-1,*STATIC,TIME,0,1,0,0,0.1,0,"), std::string::npos)
      << csv.str();

  // With --cache the server keeps the catalogue in the named file.
  std::string cache = odbtest::tempPath("cli-steps.cache");
  std::ostringstream cached;
  ASSERT_EQ(steps({db, "--cache", cache, "--format", "json"}, cached, err), 0) << err.str();
  EXPECT_EQ(cached.str(), json.str());
  EXPECT_TRUE(odbs::platform::fileReadable(cache));
  odbs::platform::removeFile(cache);

  // Neither step holds field or history output: fs and fv list none.
  std::ostringstream counts;
  ASSERT_EQ(steps({db, "--counts", "--format", "csv"}, counts, err), 0) << err.str();
  EXPECT_EQ(counts.str(), "step,frames,field_frames,history_samples\n");
  odbs::platform::removeFile(db);
}

}  // namespace
}  // namespace odbs::cli
