// The criteria list of irf through the real server, on a database built from the JSON
// description in tests/odb/data. Every other model and set command reaches its handler
// through the server in tests/cli/cli_model_test.cpp.
#include <gtest/gtest.h>

#include "odb/odb.h"
#include "platform/platform.h"
#include "tests/model/model_fixture.h"
#include "tests/model/small_model_db.h"
#include "tests/protocol/server_fixture.h"

namespace odbs::test {
namespace {

// irf uses the criteria list and empties it, also when the database cannot be opened: the
// next irf is the reply of g.
TEST(ModelProcess, FilteredModelClearsTheCriteria) {
  odb_initializeAPI();
  const std::string path = "/tmp/model_process_" + std::to_string(platform::processId()) + ".odb";
  buildSmallModel(path);
  auto server = client::test::startServer();
  const Bytes g = server->request("g " + path).wireBytes();
  server->send("irc 1 0 BLOCK-1");
  server->send("irc 1 0 SKIN-1");
  server->send("irc 5 0 C3D*");
  EXPECT_EQ(typeSequence(server->request("irf " + path).records),
            "1 2 21 21 H $ I 17 H 3 3 3 3 3 3 3 3 4 H H ~");
  EXPECT_EQ(server->request("irf " + path).wireBytes(), g);

  server->send("irc 7 0 CONN");
  EXPECT_EQ(server->request("irf /nonexistent/none.odb").wireBytes(), kEnd);
  EXPECT_EQ(server->request("irf " + path).wireBytes(), g);
  platform::removeFile(path);
}

}  // namespace
}  // namespace odbs::test
