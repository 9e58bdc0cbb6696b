#include "context/reply_channel.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <stdexcept>
#include <string>
#include <vector>

#include "platform/platform.h"

namespace odbs {
namespace {

// A reply channel writing into a pipe whose bytes the test reads back.
class ChannelTest : public ::testing::Test {
 protected:
  void SetUp() override {
    ASSERT_TRUE(platform::makePipe(fds_));
    channel_ = std::make_unique<ReplyChannel>(fds_[1]);
  }
  void TearDown() override {
    channel_.reset();
    platform::closeFd(fds_[0]);
    platform::closeFd(fds_[1]);
  }
  std::vector<uint8_t> drain() {
    std::vector<uint8_t> got;
    uint8_t buf[65536];
    while (platform::waitReadable(fds_[0], 0)) {
      long n = platform::readSome(fds_[0], buf, sizeof buf);
      if (n <= 0) break;
      got.insert(got.end(), buf, buf + n);
    }
    return got;
  }
  // Queues 4094 frames of 10 bytes (8-byte records): 40940 bytes pending.
  void queueTenByteFrames() {
    RecordBuilder eight(kRecNode);
    eight.i32(1).u8(2).u8(3).u8(4);
    for (int i = 0; i < 4094; ++i) channel_->queue(eight);
  }
  int fds_[2];
  std::unique_ptr<ReplyChannel> channel_;
};

TEST_F(ChannelTest, QueueFlushesFirstWhenTheRecordWouldReachTheLimit) {
  // Fill the pending buffer to exactly 40945 bytes with 10-byte frames (8-byte records)
  // and one 5-byte frame.
  queueTenByteFrames();
  RecordBuilder three(kRecNode);
  three.u8(1).u8(2);
  channel_->queue(three);
  ASSERT_EQ(channel_->pendingLength(), 40945u);
  EXPECT_TRUE(drain().empty());

  RecordBuilder five(kRecNode);
  five.i32(7);
  channel_->queue(five);
  EXPECT_EQ(drain().size(), 40945u);
  EXPECT_EQ(channel_->pendingLength(), 7u);
  channel_->flush();
  EXPECT_EQ(drain(), (std::vector<uint8_t>{5, 0, kRecNode, 7, 0, 0, 0}));
}

// queueFixed reserves through the same path: its record flushes first at the same limit,
// and one byte less stays pending.
TEST_F(ChannelTest, QueueFixedFlushesFirstAtTheSameLimit) {
  queueTenByteFrames();
  uint8_t* body = channel_->queueFixed(kRecNode, 1);  // 4-byte frame: 40944 pending
  *body = 9;
  ASSERT_EQ(channel_->pendingLength(), 40944u);

  // 40944 + 5 = 40949 stays below the limit: no write.
  uint8_t* four = channel_->queueFixed(kRecNode, 4);
  std::fill(four, four + 4, 0);
  EXPECT_TRUE(drain().empty());
  ASSERT_EQ(channel_->pendingLength(), 40951u);
  channel_->flush();
  ASSERT_EQ(drain().size(), 40951u);

  queueTenByteFrames();
  body = channel_->queueFixed(kRecNode, 2);  // 5-byte frame: 40945 pending
  body[0] = body[1] = 0;
  ASSERT_EQ(channel_->pendingLength(), 40945u);
  // 40945 + 5 = 40950 reaches the limit: the pending bytes go first.
  body = channel_->queueFixed(kRecNode, 4);
  std::fill(body, body + 4, 7);
  EXPECT_EQ(drain().size(), 40945u);
  EXPECT_EQ(channel_->pendingLength(), 7u);
  channel_->flush();
  EXPECT_EQ(drain(), (std::vector<uint8_t>{5, 0, kRecNode, 7, 7, 7, 7}));
}

// A record that lost a value is refused whole; one whose text was cut is sent, its count
// telling the cut length.
TEST_F(ChannelTest, MalformedRecordsAreRefusedCutTextsSent) {
  RecordBuilder full(kRecNode);
  full.bytes(std::string(kRecordBufferSize - 3, 'x').data(), kRecordBufferSize - 3);
  full.i32(1);
  EXPECT_TRUE(full.malformed());
  EXPECT_THROW(channel_->send(full), std::length_error);
  EXPECT_THROW(channel_->queue(full), std::length_error);
  channel_->flush();
  EXPECT_TRUE(drain().empty());

  RecordBuilder cut(kRecMessage);
  cut.text(std::string(kRecordBufferSize, 'y'));
  EXPECT_TRUE(cut.truncated());
  EXPECT_FALSE(cut.malformed());
  channel_->send(cut);
  std::vector<uint8_t> got = drain();
  ASSERT_EQ(got.size(), kFrameHeaderSize + kRecordBufferSize);
  EXPECT_EQ(loadU32(got.data() + 3), kRecordBufferSize - 5);
}

TEST(RecordBuilder, OversizedValuesAreDroppedNotOverrun) {
  RecordBuilder r(kRecMessage);
  std::string big(kRecordBufferSize, 'x');
  r.text(big);
  EXPECT_TRUE(r.truncated());
  EXPECT_EQ(r.size(), kRecordBufferSize);
  r.i32(5);
  EXPECT_EQ(r.size(), kRecordBufferSize);
}

}  // namespace
}  // namespace odbs
