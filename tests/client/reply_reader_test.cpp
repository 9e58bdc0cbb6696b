#include "client/reply_reader.h"

#include <gtest/gtest.h>

#include "client/client_error.h"
#include "client/command_lines.h"
#include "tests/support/bytes.h"

namespace odbs::client {
namespace {

using test::Bytes;
using test::concat;
using test::frame;

Deadline soon() {
  return deadlineIn(1000);
}

TEST(ServerLines, CutAtNewlinesAndAfter4095Bytes) {
  using Lines = std::vector<std::string>;
  EXPECT_EQ(serverLines("p"), (Lines{"p"}));
  EXPECT_EQ(serverLines(""), (Lines{""}));
  EXPECT_EQ(serverLines("p\nZ 1"), (Lines{"p", "Z 1"}));
  EXPECT_EQ(serverLines(std::string(4094, 'x')), (Lines{std::string(4094, 'x')}));
  // The 4095th byte ends the line and is dropped; the newline then makes an empty line.
  EXPECT_EQ(serverLines(std::string(4095, 'x')), (Lines{std::string(4094, 'x'), ""}));
  std::string overlong = std::string(4095, 'a') + std::string(905, 'b');
  EXPECT_EQ(serverLines(overlong), (Lines{std::string(4094, 'a'), std::string(905, 'b')}));
}

TEST(ReplyShape, RawWriteTestCountsItsUnframedBytes) {
  EXPECT_EQ(replyShapeOf("M 3 100").kind, ReplyKind::kRawThenEnd);
  EXPECT_EQ(replyShapeOf("M 3 100").rawBytes, 300u);
  EXPECT_EQ(replyShapeOf("M 100000 100000").rawBytes, 10000000000u);
  EXPECT_EQ(replyShapeOf("M -2 100").rawBytes, 0u);
  EXPECT_EQ(replyShapeOf("M").rawBytes, 0u);
  EXPECT_EQ(replyShapeOf("m 3 100").rawBytes, 0u);
}

TEST(ReadReply, SkipsUnframedBytesBeforeTheRecords) {
  // Unframed bytes that look like frames with count 0 must not be taken as frames.
  MemorySource src(concat({Bytes(1000, 0), test::kEnd, test::kEnd}), {7});
  FrameReader reader(src);
  Reply r = readReply(reader, replyShapeOf("M 10 100"), soon());
  EXPECT_EQ(r.rawBytes, 1000u);
  EXPECT_EQ(r.wireBytes(), test::kEnd);
  EXPECT_EQ(readReply(reader, {}, soon()).wireBytes(), test::kEnd);
}

TEST(ReadReply, StopsAtTheEndRecordAndKeepsTheWireBytes) {
  Bytes first = concat({frame('|', test::textBody("a")), frame(3, Bytes(16, 9)), test::kEnd});
  MemorySource src(concat({first, test::kEnd}), {3});
  FrameReader reader(src);

  Reply reply = readReply(reader, {ReplyKind::kUntilEnd}, soon());
  ASSERT_EQ(reply.records.size(), 3u);
  EXPECT_EQ(reply.bodyRecords(), 2u);
  EXPECT_EQ(reply.wireBytes(), first);
  // The next reply is left for the next call.
  EXPECT_EQ(readReply(reader, {ReplyKind::kUntilEnd}, soon()).wireBytes(), test::kEnd);
}

// The upgrade-needed record closes the reply of u, and of u only.
TEST(ReadReply, UpgradeNeededRecordClosesTheUpgradeCheckOnly) {
  Bytes upgradeNeeded = {0x05, 0x00, '|', 0x01, 0x00, 0x00, 0x00};
  MemorySource src(concat({upgradeNeeded, test::kEnd}));
  FrameReader reader(src);
  Reply check = readReply(reader, {ReplyKind::kUpgradeCheck}, soon());
  EXPECT_EQ(check.wireBytes(), upgradeNeeded);
  EXPECT_EQ(readReply(reader, {ReplyKind::kUpgradeCheck}, soon()).wireBytes(), test::kEnd);

  MemorySource other(concat({upgradeNeeded, test::kEnd}));
  FrameReader otherReader(other);
  EXPECT_EQ(readReply(otherReader, {ReplyKind::kUntilEnd}, soon()).records.size(), 2u);
}

TEST(ReadReply, SilentKindsReadNothing) {
  MemorySource src({}, {}, /*stallAtEnd=*/true);  // any read would time out
  FrameReader reader(src);
  EXPECT_TRUE(readReply(reader, {ReplyKind::kNone}, soon()).records.empty());
  EXPECT_TRUE(readReply(reader, {ReplyKind::kExit}, soon()).records.empty());
}

TEST(ReadReply, RecordLimitBoundsMemory) {
  MemorySource src(concat({frame(3), frame(3), frame(3), test::kEnd}));
  FrameReader reader(src);
  EXPECT_THROW(readReply(reader, {ReplyKind::kUntilEnd}, soon(), 3), ClientError);
}

}  // namespace
}  // namespace odbs::client
