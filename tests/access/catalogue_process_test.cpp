// The step and frame catalogue through the real server: the records, the cache file
// written, replayed byte for byte, refused, rebuilt, and left alone under a foreign lock.
#include <gtest/gtest.h>
#include <zlib.h>

#include <algorithm>
#include <sstream>
#include <string>
#include <tuple>

#include "client/catalogue_records.h"
#include "odb/writer.h"
#include "platform/platform.h"
#include "tests/access/steps_database.h"
#include "tests/odb/sample_model.h"
#include "tests/protocol/server_fixture.h"
#include "tests/results/field_db.h"
#include "wire/frame.h"

namespace odbs::client {
namespace {

using test::Bytes;
using test::kEnd;
using test::startServer;

class CatalogueProcessTest : public ::testing::Test {
 protected:
  void SetUp() override {
    db_ = odbtest::tempPath("cat.odb");
    base_ = odbtest::tempPath("cat.cache");
    odbs::test::writeStepsDatabase(db_, "Catalogue sample");
    server_ = startServer();
  }
  void TearDown() override {
    server_.reset();
    for (const char* s : {"", "_tmp", "_lock"}) platform::removeFile(base_ + s);
    platform::removeFile(db_);
  }
  Bytes catalogue(const std::string& form, bool withBase = true) {
    if (withBase) {
      EXPECT_EQ(server_->request("T " + base_).wireBytes(), kEnd);
    }
    return server_->request(form + " " + db_).wireBytes();
  }
  // Identifies one writing of the cache file: a rewrite is a new file, made later.
  std::string cacheIdentity() {
    platform::FileStat st;
    if (!platform::statFile(base_, &st)) return "";
    return std::to_string(st.inode) + ":" + std::to_string(st.mtimeSec) + "." +
           std::to_string(st.mtimeNsec);
  }
  std::string cacheVersion() {
    gzFile f = gzopen(base_.c_str(), "rb");
    char line[100] = {};
    if (f != nullptr) {
      gzgets(f, line, sizeof line);
      gzclose(f);
    }
    return line;
  }
  // Starts a cache file at base_ whose header fits the database as it is now ("1.0A"); the
  // caller writes the body and closes the file.
  gzFile startCurrentCache() {
    platform::FileStat st;
    EXPECT_TRUE(platform::statFile(db_, &st));
    gzFile f = gzopen(base_.c_str(), "wb");
    gzprintf(f, "1.0\r1.0A\n%s\n%lld\n%lld\n", db_.c_str(),
             static_cast<long long>(st.mtimeSec * 1000000000LL + st.mtimeNsec),
             static_cast<long long>(st.size));
    return f;
  }
  std::string db_, base_;
  std::unique_ptr<ServerProcess> server_;
};

TEST_F(CatalogueProcessTest, RecordsOfEveryFrame) {
  Reply reply = server_->request("T " + base_);
  reply = server_->request("fd " + db_);
  ASSERT_EQ(reply.records.size(), 2u + 5 * 4 + 1);
  EXPECT_EQ(reply.records[0].type, odbs::kRecTitle);
  EXPECT_EQ(reply.records[1].body, (Bytes{0, 0, 0, 0}));  // implicit: code 1, sent as 0

  // Step 2, its second mode. Number, name, procedure and total time as the steps command
  // prints them: tests/cli/cli_steps_test.cpp.
  EXPECT_EQ(decodeStep(reply.records[2 + 3 * 4]).description, "modes");
  EXPECT_EQ(reply.records[2 + 3 * 4].body.size(), 4u + 8 + 4 + 12);  // "Step-2\x01modes"
  StepTextsRecord texts = decodeStepTexts(reply.records[2 + 3 * 4 + 2]);
  EXPECT_EQ(texts.domain, "MODAL");
  EXPECT_EQ(texts.name, "Step-2");

  // Index, domain, mode, value, frequency, step, last index (three frames), description.
  FrameRecord f = decodeFrame(reply.records[2 + 3 * 4 + 3]);
  EXPECT_EQ(
      std::tie(f.frameIndex, f.domain, f.mode, f.frameValue, f.frequency, f.stepNumber,
               f.lastFrameIndex, f.description),
      std::make_tuple(2, int32_t(odb_Enum::MODAL), 2, 20.0, 20.0, 2, 2, std::string("Mode 2")));
  EXPECT_EQ(reply.records[2 + 3 * 4 + 3].body.size(), 40u + 6);

  EXPECT_TRUE(platform::fileReadable(base_));
  EXPECT_FALSE(platform::fileReadable(base_ + "_tmp"));
  EXPECT_FALSE(platform::fileReadable(base_ + "_lock"));
}

TEST_F(CatalogueProcessTest, ReplayIsByteForByteAndPlainFileIsRefusedByExtendedRequest) {
  Bytes first = catalogue("fd");
  std::string written = cacheIdentity();
  ASSERT_NE(written, "");
  EXPECT_EQ(cacheVersion(), "1.0\r1.0\n");
  EXPECT_EQ(catalogue("fd"), first);
  EXPECT_EQ(cacheIdentity(), written);  // replayed, not rewritten

  EXPECT_EQ(catalogue("fD"), first);  // "1.0" refused: rebuilt as "1.0A"
  EXPECT_EQ(cacheVersion(), "1.0\r1.0A\n");
  std::string extended = cacheIdentity();
  EXPECT_EQ(catalogue("fd"), first);  // "1.0A" serves both
  EXPECT_EQ(catalogue("fD"), first);
  EXPECT_EQ(cacheIdentity(), extended);
}

TEST_F(CatalogueProcessTest, ChangedDatabaseIsWalkedAgain) {
  Bytes first = catalogue("fd");
  odbs::test::writeStepsDatabase(db_, "Catalogue sample, second run");
  Bytes second = catalogue("fd");
  EXPECT_NE(second, first);  // the new title, so walked again
}

// A file whose first thousands of frames are sound and whose last line is not: the replay
// must not have sent those frames (they fill the pending buffer many times over) before it
// finds the damage, so the reply is the walk's alone.
TEST_F(CatalogueProcessTest, FileDamagedAfterManyFramesSendsNothingOfIt) {
  Bytes walked = catalogue("fd");
  gzFile f = startCurrentCache();
  gzprintf(f, "replayed title\n0\n");
  for (int i = 0; i < 5000; ++i)
    gzprintf(f,
             "1\n%.20E\nStep-1\nstatic\nTIME\nStep-1\n%d\n0\n0\n%.20E\n%.20E\n1\n4999\n"
             "frame\n",
             0.0, i, 0.5, 0.0);
  gzprintf(f, "1\nnot a number\n");
  gzclose(f);
  EXPECT_EQ(catalogue("fd"), walked);
  EXPECT_EQ(catalogue("fd"), walked);  // and the rebuilt file replays
}

TEST_F(CatalogueProcessTest, ForeignLockMeansAnswerWithoutFile) {
  Bytes first = catalogue("fd");
  platform::removeFile(base_);
  ASSERT_TRUE(platform::createEmptyFile(base_ + "_lock"));
  EXPECT_EQ(catalogue("fd"), first);
  EXPECT_FALSE(platform::fileReadable(base_));
  EXPECT_FALSE(platform::fileReadable(base_ + "_tmp"));
  EXPECT_TRUE(platform::fileReadable(base_ + "_lock"));  // not ours to remove
}

TEST_F(CatalogueProcessTest, OtherFormsAnswerWithTheEndRecord) {
  for (const char* form : {"fn", "fN", "fx"}) EXPECT_EQ(catalogue(form), kEnd) << form;
}

// fs and fv on a database whose steps hold neither field nor history output: the title and
// analysis code alone. They write no cache file and use up the base name of their T.
TEST_F(CatalogueProcessTest, StepCountsOfEmptyStepsAndTheBaseName) {
  Bytes title = {21, 0, 1, 16, 0, 0, 0};
  for (char c : std::string("Catalogue sample")) title.push_back(uint8_t(c));
  Bytes expected = title;
  for (uint8_t b : {5, 0, 2, 0, 0, 0, 0, 1, 0, 0x7E}) expected.push_back(b);
  for (const char* form : {"fs", "fS", "fv", "fV"}) {
    EXPECT_EQ(catalogue(form), expected) << form;
    EXPECT_FALSE(platform::fileReadable(base_)) << form;
    catalogue("fd", false);  // the T was used up: no file
    EXPECT_FALSE(platform::fileReadable(base_)) << form;
  }
}

// Step 1: two frames, field output in the second only; step 2: three frames without field
// output and a history output of four samples.
TEST_F(CatalogueProcessTest, StepCountsChooseTheirSteps) {
  {
    odb::Writer w(db_);
    w.setTitle("t");
    w.addInstance("PART-1-1").addNodes({1}, {0.f, 0.f, 0.f}, 3);
    w.addStep({"Step-1", "", "*STATIC", odb_Enum::TIME, 0.0});
    w.addFrame({0, odb_Enum::TIME, 0, 0.0, 0.0, "Increment 0"});
    w.addFrame({1, odb_Enum::TIME, 0, 1.0, 0.0, "Increment 1"});
    w.addFieldOutput(odbs::test::fieldOf("U", odb_Enum::SCALAR, {"U"}));
    w.addStep({"Step-2", "", "*STATIC", odb_Enum::TIME, 1.0});
    for (int i = 0; i < 3; ++i)
      w.addFrame({i, odb_Enum::TIME, 0, 0.5 * i, 0.0, "Increment " + std::to_string(i)});
    odb::HistoryRegionData h;
    h.name = "Node PART-1-1.1";
    h.outputs.push_back({"U1", "", odb_Enum::SCALAR, 2, {0, 1, 1, 2, 2, 3, 3, 4}, {}, {}});
    w.addHistoryRegion(h);
    w.close();
  }
  // Record 16 (step, frames, frames with field output, history samples, the chosen count),
  // then the chosen step's records as fd sends them.
  auto check = [&](const std::string& form, const Bytes& counts, long frames) {
    Reply r = server_->request(form + " " + db_);
    ASSERT_GE(r.records.size(), 4u) << form;
    EXPECT_EQ(r.records[2].type, odbs::kRecStepCounts) << form;
    EXPECT_EQ(r.records[2].body, counts) << form;
    EXPECT_EQ(r.records[3].type, odbs::kRecStep) << form;
    EXPECT_EQ(std::count_if(r.records.begin(), r.records.end(),
                            [](const Record& x) { return x.type == odbs::kRecFrame; }),
              frames)
        << form;
  };
  check("fs", {1, 0, 0, 0, 2, 0, 0, 0, 1, 0, 0, 0, 0, 0, 0, 0, 1, 0, 0, 0}, 2);
  check("fv", {2, 0, 0, 0, 3, 0, 0, 0, 0, 0, 0, 0, 4, 0, 0, 0, 4, 0, 0, 0}, 3);
}

}  // namespace
}  // namespace odbs::client
