// odb_server.exe started by a Windows parent (_pipe, inheritable descriptors, _spawnv):
// how it ends, what it survives, and that its descriptors carry bytes unchanged.
#include "tests/windows/windows_parent.h"

#include <gtest/gtest.h>

#include <string>

#include "client/core_records.h"
#include "platform/platform.h"
#include "tests/model/small_model_db.h"
#include "tests/odb/sample_model.h"

namespace odbs::test {
namespace {

constexpr int kTimeoutMs = 5000;
// TerminateProcess status of a killed process, as the platform layer reports it.
constexpr int kKilledStatus = 137;

TEST(WindowsParent, ServerEndsWithStatusZeroWhenItsParentIsKilled) {
  // The parent is itself a server, blocked in its read, so that it can be killed.
  WindowsParent grandparent(ODB_SERVER_PATH);
  int parentPid = grandparent.serverPid();
  WindowsParent child(ODB_SERVER_PATH, parentPid);
  EXPECT_GT(child.serverPid(), 0);  // up and blocked in its own read

  platform::killProcess(parentPid);
  EXPECT_EQ(grandparent.waitExit(kTimeoutMs), kKilledStatus);
  // The watchdog sees the end within milliseconds; the limit only stops a hang.
  EXPECT_EQ(child.waitExit(3000), 0);
}

TEST(WindowsParent, ServerWhoseParentIsAlreadyGoneEndsWithStatusZero) {
  WindowsParent gone(ODB_SERVER_PATH);
  int gonePid = gone.serverPid();
  gone.write("q\n");
  ASSERT_EQ(gone.waitExit(kTimeoutMs), 0);

  WindowsParent orphan(ODB_SERVER_PATH, gonePid);
  EXPECT_EQ(orphan.waitExit(kTimeoutMs), 0);
}

TEST(WindowsParent, ClosedReplyPipeDoesNotEndTheServer) {
  WindowsParent parent(ODB_SERVER_PATH);
  parent.serverPid();
  parent.closeReplies();
  parent.write("p\nm 2000 100\nM 20 50000\nZ\n");
  EXPECT_FALSE(parent.waitExit(500).has_value()) << "the server ended on a failed write";
  parent.closeCommands();
  EXPECT_EQ(parent.waitExit(kTimeoutMs), 0);
}

// A carriage return before the newline belongs to the line: a database named with it is
// another file (none), so only the end record comes back. A descriptor in text mode would
// drop the carriage return and export the model.
TEST(WindowsParent, CarriageReturnBeforeNewlineIsPartOfTheLine) {
  std::string db = odbtest::tempPath("cr.odb");
  buildSmallModel(db);
  WindowsParent parent(ODB_SERVER_PATH);
  EXPECT_GT(parent.request("g " + db).records.size(), 2u);
  client::Reply withCr = parent.request("g " + db + "\r");
  ASSERT_EQ(withCr.records.size(), 1u);
  EXPECT_EQ(withCr.records[0].type, '~');
  parent.write("q\n");
  EXPECT_EQ(parent.waitExit(kTimeoutMs), 0);
  platform::removeFile(db);
}

// Over 3 MB in one reply, framed and raw: every byte arrives, none is added (a descriptor
// in text mode would turn each 0x0A into 0D 0A) and the end record comes last.
TEST(WindowsParent, ThreeMegabyteRepliesArriveWhole) {
  WindowsParent parent(ODB_SERVER_PATH);
  const uint32_t count = 7500, n = 100;
  uint32_t next = 0;
  bool intact = true;
  uint64_t bytes = 0;
  parent.write("m 7500 100\n");
  size_t records = client::readReplyEach(
      parent.reader(), {}, client::deadlineIn(30000), [&](const client::RecordView& rec) {
        bytes += 2 + rec.count();
        if (rec.type != '"') return;
        client::TestRecord t = client::decodeTestRecord(rec);
        intact = intact && t.sequence == next++ && t.values.size() == n && t.values[10] == 10;
      });
  EXPECT_EQ(records, count + 1);
  EXPECT_TRUE(intact);
  EXPECT_EQ(bytes, uint64_t{4 * n + 7} * count + 3);  // 3,052,503 bytes

  client::Reply raw = parent.request("M 30 100000", 30000);
  EXPECT_EQ(raw.rawBytes, 3000000u);
  ASSERT_EQ(raw.records.size(), 1u);
  EXPECT_EQ(raw.records[0].type, '~');
}

}  // namespace
}  // namespace odbs::test
