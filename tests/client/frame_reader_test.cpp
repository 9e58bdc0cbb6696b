#include "client/frame_reader.h"

#include <gtest/gtest.h>

#include "client/client_error.h"
#include "tests/support/bytes.h"

namespace odbs::client {
namespace {

using test::Bytes;
using test::concat;
using test::frame;

Deadline soon() {
  return deadlineIn(1000);
}

// A process-id record, a message, a record with an empty body, an end record.
Bytes sampleStream() {
  return concat({{0x05, 0x00, 0x7D, 0x39, 0x30, 0x00, 0x00},
                 frame('|', test::textBody("hi")),
                 frame('I'),
                 test::kEnd});
}

class FrameSplitTest : public ::testing::TestWithParam<size_t> {};

TEST_P(FrameSplitTest, FramesSplitAcrossReadsArriveWhole) {
  MemorySource src(sampleStream(), {GetParam()});
  FrameReader reader(src);

  Record pid = reader.next(soon());
  EXPECT_EQ(pid.type, 0x7D);
  EXPECT_EQ(pid.body, (Bytes{0x39, 0x30, 0x00, 0x00}));
  Record msg = reader.next(soon());
  EXPECT_EQ(msg.type, '|');
  EXPECT_EQ(msg.count(), 7u);
  Record block = reader.next(soon());
  EXPECT_EQ(block.type, 'I');
  EXPECT_TRUE(block.body.empty());
  EXPECT_EQ(reader.next(soon()).type, '~');
  EXPECT_FALSE(reader.nextOrEnd(soon()).has_value());  // a clean end at a frame boundary
  EXPECT_THROW(reader.next(soon()), StreamEndError);
  EXPECT_EQ(reader.bytesConsumed(), sampleStream().size());
}

INSTANTIATE_TEST_SUITE_P(ChunkSizes, FrameSplitTest, ::testing::Values(1, 2, 3, 5, 8, 4096));

TEST(FrameReader, LargestFramesSurviveOddReadSizes) {
  Bytes body(65534);
  for (size_t i = 0; i < body.size(); ++i) body[i] = static_cast<uint8_t>(i * 7);
  Bytes stream = concat({frame(34, body), frame(34, body), test::kEnd});
  MemorySource src(stream, {4093, 65537, 1});
  FrameReader reader(src);
  for (int i = 0; i < 2; ++i) {
    Record r = reader.next(soon());
    EXPECT_EQ(r.count(), 65535u);
    EXPECT_EQ(r.body, body);
  }
  EXPECT_EQ(reader.next(soon()).type, '~');
}

TEST(FrameReader, CountZeroIsMalformed) {
  MemorySource src({0x00, 0x00, 0x7E});
  FrameReader reader(src);
  EXPECT_THROW(reader.next(soon()), FrameError);
}

TEST(FrameReader, StreamEndingInsideAFrameSaysWhere) {
  for (const Bytes& cut : {Bytes{0x05}, Bytes{0x05, 0x00, 0x7D, 0x01}}) {
    MemorySource src(cut, {1});
    FrameReader reader(src);
    EXPECT_THROW(reader.next(soon()), StreamEndError);
  }
  MemorySource src({0x05, 0x00, 0x7D, 0x01});
  FrameReader reader(src);
  try {
    reader.nextOrEnd(soon());
    FAIL() << "a truncated frame must not pass as a clean end";
  } catch (const StreamEndError& e) {
    EXPECT_NE(std::string(e.what()).find("count 5"), std::string::npos) << e.what();
  }
}

TEST(FrameReader, SilenceInsideAFrameTimesOut) {
  MemorySource src({0x05, 0x00, 0x7D}, {}, /*stallAtEnd=*/true);
  FrameReader reader(src);
  EXPECT_THROW(reader.next(soon()), TimeoutError);
}

TEST(FrameReader, UnframedBytesThenFrames) {
  Bytes raw(10000, 0xAB);
  MemorySource src(concat({raw, test::kEnd, raw, test::kEnd}), {777});
  FrameReader reader(src);
  EXPECT_EQ(reader.readBytes(raw.size(), soon()), raw);
  EXPECT_EQ(reader.next(soon()).type, '~');
  reader.skipBytes(raw.size(), soon());
  EXPECT_EQ(reader.readToEnd(soon()), test::kEnd);
  EXPECT_THROW(reader.readBytes(1, soon()), StreamEndError);
}

TEST(FrameReader, ReadToEndIsBounded) {
  MemorySource src(Bytes(5000, 1));
  FrameReader reader(src);
  EXPECT_THROW(reader.readToEnd(soon(), 4999), ClientError);
}

}  // namespace
}  // namespace odbs::client
