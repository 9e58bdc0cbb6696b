// The model and set commands through the real server, on a database built from the JSON
// description in tests/odb/data: the dispatcher and the registry reach the handlers, and
// each reply is what the handler writes, closed by the end record.
#include <gtest/gtest.h>

#include <fstream>
#include <sstream>

#include "client/model_records.h"
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

TEST_F(ModelProcess, WholeModel) {
  auto recs =
      request("g " + *path_, [](OdbContext& c, ReplyChannel& o) { exportModel(c, false, o); });
  EXPECT_EQ(typeSequence(recs),
            "1 2 21 21 H $ I H $ I H $ I 17 H 3 3 3 3 3 3 3 3 4 H 3 3 3 3 4 H 3 4");
  client::SectionRecord conn = client::decodeSection(recs[5]);
  EXPECT_EQ(conn.code, -3);
  EXPECT_EQ(conn.orientationRegion, "CONN");
  EXPECT_EQ(conn.csys1, "DATUM-1");
  EXPECT_EQ(conn.csys2, "");
  client::SectionRecord skin = client::decodeSection(recs[11]);
  ASSERT_EQ(skin.runs.size(), 2u);
  EXPECT_EQ(skin.runs[0].points, 2);
  EXPECT_EQ(skin.runs[1].layer, 2);
  client::ElementRecord root = client::decodeElement(recs.back());
  EXPECT_TRUE(root.connector);
  EXPECT_EQ(root.section, int32_t(conn.number));
}

TEST_F(ModelProcess, NodesOnly) {
  auto recs =
      request("G " + *path_, [](OdbContext& c, ReplyChannel& o) { exportModel(c, true, o); });
  EXPECT_EQ(typeSequence(recs), "1 2 H 3 3 3 3 3 3 3 3 H 3 3 3 3 H 3");
}

TEST_F(ModelProcess, SetsSurfacesAndNamedSets) {
  request("S 0 0 " + *path_, [](OdbContext& c, ReplyChannel& o) { sendSets(c, 0, false, o); });
  auto withSurfaces =
      request("s 0 1 " + *path_, [](OdbContext& c, ReplyChannel& o) { sendSets(c, 1, true, o); });
  EXPECT_NE(typeSequence(withSurfaces).find("7 10 11"), std::string::npos);
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
  client::SectionAssignmentRecord skin = client::decodeSectionAssignment(recs[9]);
  EXPECT_EQ(skin.name, "SKIN");
  EXPECT_TRUE(skin.hasOffset);
  EXPECT_EQ(skin.offset1, 0.5f);
  EXPECT_TRUE(skin.hasThickness);
  EXPECT_EQ(skin.thickness, 1.f);
  client::SectionAssignmentRecord conn = client::decodeSectionAssignment(recs[14]);
  EXPECT_EQ(conn.name, "CONN");
  EXPECT_FALSE(conn.hasOffset || conn.hasThickness);
  EXPECT_EQ(server_->request("is 0 /nonexistent/none.odb").wireBytes(), kEnd);
}

}  // namespace
}  // namespace odbs::test
