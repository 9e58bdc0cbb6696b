// The model and set commands through the real server, on a database built from the JSON
// description in tests/odb/data: the dispatcher and the registry reach the handlers, and
// each reply is what the handler writes, closed by the end record.
#include <gtest/gtest.h>

#include <fstream>
#include <sstream>

#include "model/export_model.h"
#include "model/named_sets.h"
#include "model/other_exports.h"
#include "model/send_sets.h"
#include "odb/odb.h"
#include "platform/platform.h"
#include "tests/model/model_fixture.h"
#include "tests/model/small_model_db.h"
#include "tests/protocol/server_fixture.h"

namespace odbs::test {
namespace {

class ModelProcess : public ::testing::Test {
 protected:
  static void SetUpTestSuite() {
    odb_initializeAPI();
    path_ = new std::string("/tmp/model_process_" + std::to_string(platform::processId()) + ".odb");
    odbs::test::buildSmallModel(*path_);
  }
  static void TearDownTestSuite() {
    platform::removeFile(*path_);
    delete path_;
  }
  void SetUp() override { server_ = client::test::startServer(); }

  // The reply of the server to line, checked against the handler run in this process.
  std::vector<client::Record> request(const std::string& line,
                                      const std::function<void(OdbContext&, ReplyChannel&)>& run) {
    Bytes wire = server_->request(line).wireBytes();
    odb_Odb& odb = openOdb(*path_, true);
    OdbContext ctx;
    ctx.odb = &odb;
    Bytes expected = capture([&](ReplyChannel& out) { run(ctx, out); });
    closeOdb(odb);
    expected.insert(expected.end(), kEnd.begin(), kEnd.end());
    EXPECT_EQ(frameLines(wire), frameLines(expected)) << line;
    std::vector<client::Record> recs = splitRecords(wire);
    recs.pop_back();
    return recs;
  }

  static std::string* path_;
  std::unique_ptr<client::ServerProcess> server_;
};

std::string* ModelProcess::path_ = nullptr;

TEST_F(ModelProcess, WholeModelAndNodesOnly) {
  auto recs =
      request("g " + *path_, [](OdbContext& c, ReplyChannel& o) { exportModel(c, false, o); });
  EXPECT_EQ(typeSequence(recs),
            "1 2 21 21 H $ I H $ I H $ I 17 H 3 3 3 3 3 3 3 3 4 H 3 3 3 3 4 H 3 4");
  recs = request("G " + *path_, [](OdbContext& c, ReplyChannel& o) { exportModel(c, true, o); });
  EXPECT_EQ(typeSequence(recs), "1 2 H 3 3 3 3 3 3 3 3 H 3 3 3 3 H 3");
}

TEST_F(ModelProcess, SetsSurfacesAndNamedSets) {
  request("S 0 0 " + *path_, [](OdbContext& c, ReplyChannel& o) { sendSets(c, 0, false, o); });
  request("s 0 1 " + *path_, [](OdbContext& c, ReplyChannel& o) { sendSets(c, 1, true, o); });
  server_->send("irc 7 0 CONN");
  server_->send("irc 7 0 BLOCK-1.BLOCK");
  auto named = request("irs 0 " + *path_, [](OdbContext& c, ReplyChannel& o) {
    sendNamedSets(c, {{7, 0, "CONN"}, {7, 0, "BLOCK-1.BLOCK"}}, o);
  });
  EXPECT_EQ(typeSequence(named), "1 2 6 H 9 11 I H 6 9 11 I");
}

// irf uses the criteria list and empties it, also when the database cannot be opened.
TEST_F(ModelProcess, FilteredModelClearsTheCriteria) {
  server_->send("irc 1 0 BLOCK-1");
  server_->send("irc 1 0 SKIN-1");
  server_->send("irc 5 0 C3D*");
  auto recs = request("irf " + *path_, [](OdbContext& c, ReplyChannel& o) {
    exportFilteredModel(c, {{1, 0, "BLOCK-1"}, {1, 0, "SKIN-1"}, {5, 0, "C3D*"}}, o);
  });
  EXPECT_EQ(typeSequence(recs), "1 2 21 21 H $ I 17 H 3 3 3 3 3 3 3 3 4 H H");
  auto whole =
      request("irf " + *path_, [](OdbContext& c, ReplyChannel& o) { exportModel(c, false, o); });
  EXPECT_EQ(whole.size(), 33u);  // the reply of g: the list was cleared

  server_->send("irc 7 0 CONN");
  EXPECT_EQ(server_->request("irf /nonexistent/none.odb").wireBytes(), kEnd);
  request("irf " + *path_, [](OdbContext& c, ReplyChannel& o) { exportModel(c, false, o); });
}

TEST_F(ModelProcess, SectionAssignments) {
  auto recs = request("is 0 " + *path_,
                      [](OdbContext& c, ReplyChannel& o) { exportSectionAssignments(c, o); });
  EXPECT_EQ(typeSequence(recs), "1 2 H T 6 9 11 I H T 6 9 11 I T 6 H 9 11 I");
  EXPECT_EQ(server_->request("is 0 /nonexistent/none.odb").wireBytes(), kEnd);
}

}  // namespace
}  // namespace odbs::test
