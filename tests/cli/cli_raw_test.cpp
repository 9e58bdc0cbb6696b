// odb_cli raw against the real server: every reply printed, silent commands not waited
// for, q reported with its exit status.
#include <gtest/gtest.h>

#include <sstream>

#include "tests/protocol/server_fixture.h"
#include "tools/cli/cli_app.h"

namespace odbs::cli {
namespace {

TEST(CliRaw, PrintsEachReplyUntilQuit) {
  // "Z\nm 2 1" is two command lines with a reply each.
  std::istringstream in;
  std::ostringstream out, err;
  EXPECT_EQ(runCli({"odb_cli", "raw", "--format", "json", "--server", ODB_SERVER_PATH, "--timeout",
                    std::to_string(client::test::kTimeoutMs), "p", "D 0 1 0 x", "Z\nm 2 1", "M 2 3",
                    "q", "p"},
                   in, out, err),
            0)
      << err.str();
  std::string json = out.str();
  EXPECT_NE(json.find("\"kind\": \"process-id\""), std::string::npos) << json;
  EXPECT_NE(json.find("{\"command\": \"D 0 1 0 x\", \"reply\": \"none\", \"records\": []}"),
            std::string::npos)
      << json;
  EXPECT_NE(json.find("{\"command\": \"Z\", \"reply\": \"records\", \"records\": ["),
            std::string::npos)
      << json;
  EXPECT_NE(json.find("\"fields\": {\"sequence\": 1, \"values\": [0]}"), std::string::npos) << json;
  EXPECT_NE(json.find("\"rawBytes\": 6"), std::string::npos) << json;
  EXPECT_NE(json.find("\"exitStatus\": 0"), std::string::npos) << json;
  // Nothing is sent after q.
  EXPECT_EQ(json.find("\"command\": \"p\"", json.find("\"q\"")), std::string::npos) << json;
}

TEST(CliRaw, MissingServerProgramIsReported) {
  std::istringstream in;
  std::ostringstream out, err;
  EXPECT_EQ(runCli({"odb_cli", "raw", "p", "--server", "/nonexistent/odb_server"}, in, out, err),
            1);
  EXPECT_NE(out.str().find("error: "), std::string::npos) << out.str();
}

}  // namespace
}  // namespace odbs::cli
