// The bytes of the replies that the server core writes, checked on the wire.
#include <gtest/gtest.h>

#include <string>

#include "client/client_error.h"
#include "client/core_records.h"
#include "tests/protocol/server_fixture.h"

namespace odbs::client {
namespace {

using test::Bytes;
using test::kEnd;
using test::startServer;

class Replies : public ::testing::Test {
 protected:
  void SetUp() override { server_ = startServer(); }

  // After a test, the server must still answer p and have written nothing stray.
  void TearDown() override {
    if (!server_->waitExit(0)) {
      EXPECT_EQ(server_->request("p").records.size(), 2u);
      EXPECT_FALSE(server_->replyPending(50)) << "bytes beyond the last reply";
    }
  }

  std::unique_ptr<ServerProcess> server_;
};

TEST_F(Replies, ProcessIdRecordThenEnd) {
  uint32_t pid = static_cast<uint32_t>(server_->pid());
  Bytes expected = {
      0x05, 0x00, 0x7D, uint8_t(pid), uint8_t(pid >> 8), uint8_t(pid >> 16), uint8_t(pid >> 24),
      0x01, 0x00, 0x7E};
  EXPECT_EQ(server_->request("p").wireBytes(), expected);
}

TEST_F(Replies, SilentCommandsWriteNothing) {
  for (const char* line : {"C", "D 0 1 0 a^b", "d 1 1 2 x", "ho 2", "hb U1", "hb U2",
                           "irc 1 2 Name With Spaces", "irc 9 1 X"}) {
    server_->send(line);
  }
  try {
    server_->readReply({}, 200);
    FAIL() << "a silent command wrote a reply";
  } catch (const TimeoutError& e) {
    EXPECT_NE(std::string(e.what()).find("after the line \"irc 9 1 X\""), std::string::npos)
        << e.what();
  }
  Reply reply = server_->request("p");
  ASSERT_EQ(reply.records.size(), 2u);
  EXPECT_EQ(reply.records[0].type, '}');
}

// Many records go through the pending buffer in several writes: none lost, none reordered.
TEST_F(Replies, ManyFramedRecordsArriveInOrder) {
  const uint32_t count = 5000, n = 100;
  uint32_t next = 0;
  bool intact = true;
  uint64_t bytes = 0;
  server_->send("m 5000 100");
  size_t records = server_->readReplyEach({}, [&](const RecordView& rec) {
    bytes += 2 + rec.count();
    if (rec.type != '"') return;
    TestRecord t = decodeTestRecord(rec);
    intact = intact && t.sequence == next++ && t.values.size() == n && t.values.back() == 99;
  });
  EXPECT_EQ(records, count + 1);
  EXPECT_EQ(next, count);
  EXPECT_TRUE(intact);
  EXPECT_EQ(bytes, uint64_t{4 * n + 7} * count + 3);

  // No records: the end record alone; no integers: the sequence number alone.
  EXPECT_EQ(server_->request("m 0 5").wireBytes(), kEnd);
  EXPECT_EQ(server_->request("m 2 0").records[1].count(), 5u);
}

TEST_F(Replies, RawWritesAreUnframed) {
  server_->send("M 3 100");
  EXPECT_EQ(server_->readBytes(300).size(), 300u);
  EXPECT_EQ(server_->readBytes(3), kEnd);

  // Blocks larger than the pending buffer are written whole.
  Reply big = server_->request("M 2 100000");
  EXPECT_EQ(big.rawBytes, 200000u);
  EXPECT_EQ(big.wireBytes(), kEnd);

  EXPECT_EQ(server_->request("M -1 5").wireBytes(), kEnd);
}

// Lines that parse but name a database that cannot be opened, and lines that do not parse:
// the look-up fails quietly and each is answered with the end record alone. Every other prefix
// and letter with a missing database: tests/server/command_table_test.cpp.
TEST_F(Replies, MissingDatabasesAndUnparsedLinesAnswerWithTheEndRecord) {
  const std::string db = "/nonexistent/job.odb";
  std::vector<std::string> lines = {"",
                                    "\r",
                                    "rl 1 2," + db,
                                    "rl 1 2 no comma",
                                    "rn A.INNER:B.7:" + db,
                                    "rn A",
                                    "rg 1:2:" + db,
                                    "u /nonexistent/job",
                                    "u "};
  for (const std::string& line : lines) {
    EXPECT_EQ(server_->request(line).wireBytes(), kEnd) << line;
  }
}

}  // namespace
}  // namespace odbs::client
