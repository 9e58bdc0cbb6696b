// The encoders and the bounded reader of wire/coding.h against literal bytes worked out by
// hand: little-endian order, IEEE 754 bit patterns, counted texts, and a reader that stops
// at the end of its buffer without moving.
#include "wire/coding.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <vector>

namespace odbs {
namespace {

using Bytes = std::vector<uint8_t>;

template <typename F>
Bytes encoded(size_t size, F put) {
  Bytes out(size, 0xEE);
  uint8_t* end = put(out.data());
  EXPECT_EQ(end, out.data() + size) << "encoder returned the wrong end";
  return out;
}

TEST(Coding, IntegersAreLittleEndian) {
  EXPECT_EQ(encoded(1, [](uint8_t* p) { return putU8(p, 0xAB); }), (Bytes{0xAB}));
  EXPECT_EQ(encoded(2, [](uint8_t* p) { return putU16(p, 0x1234); }), (Bytes{0x34, 0x12}));
  EXPECT_EQ(encoded(4, [](uint8_t* p) { return putU32(p, 0x01020304); }),
            (Bytes{0x04, 0x03, 0x02, 0x01}));
  EXPECT_EQ(encoded(8, [](uint8_t* p) { return putU64(p, 0x0102030405060708ull); }),
            (Bytes{0x08, 0x07, 0x06, 0x05, 0x04, 0x03, 0x02, 0x01}));
  EXPECT_EQ(encoded(4, [](uint8_t* p) { return putI32(p, -2); }), (Bytes{0xFE, 0xFF, 0xFF, 0xFF}));
  EXPECT_EQ(encoded(4, [](uint8_t* p) { return putI32(p, std::numeric_limits<int32_t>::min()); }),
            (Bytes{0x00, 0x00, 0x00, 0x80}));
}

TEST(Coding, FloatsAreTheirIeeeBitPatterns) {
  // 1.0f = 0x3F800000, -2.5f = 0xC0200000, 1.0 = 0x3FF0000000000000.
  EXPECT_EQ(encoded(4, [](uint8_t* p) { return putF32(p, 1.0f); }), (Bytes{0, 0, 0x80, 0x3F}));
  EXPECT_EQ(encoded(4, [](uint8_t* p) { return putF32(p, -2.5f); }), (Bytes{0, 0, 0x20, 0xC0}));
  EXPECT_EQ(encoded(8, [](uint8_t* p) { return putF64(p, 1.0); }),
            (Bytes{0, 0, 0, 0, 0, 0, 0xF0, 0x3F}));
}

TEST(Coding, CountedTextAndArrays) {
  EXPECT_EQ(encoded(7, [](uint8_t* p) { return putText(p, "abc"); }),
            (Bytes{3, 0, 0, 0, 'a', 'b', 'c'}));
  EXPECT_EQ(encoded(4, [](uint8_t* p) { return putText(p, ""); }), (Bytes{0, 0, 0, 0}));
  // Short arrays take single moves, long ones one copy: both give the same layout.
  for (size_t n : {size_t{2}, kShortArray + 3}) {
    std::vector<int32_t> values(n);
    Bytes expected;
    for (size_t i = 0; i < n; ++i) {
      uint32_t u = 0x9E3779B1u * static_cast<uint32_t>(i + 1);  // high bits set in most
      values[i] = static_cast<int32_t>(u);
      for (int b = 0; b < 4; ++b) expected.push_back(static_cast<uint8_t>(u >> (8 * b)));
    }
    EXPECT_EQ(encoded(4 * n, [&](uint8_t* p) { return putI32Array(p, values.data(), n); }),
              expected)
        << n << " values";
  }
  const float floats[2] = {1.0f, -2.5f};
  EXPECT_EQ(encoded(8, [&](uint8_t* p) { return putF32Array(p, floats, 2); }),
            (Bytes{0, 0, 0x80, 0x3F, 0, 0, 0x20, 0xC0}));
}

TEST(ByteReader, ReadsLiteralBytes) {
  const Bytes in = {0x34, 0x12, 0x04, 0x03, 0x02, 0x01, 0xFE, 0xFF, 0xFF, 0xFF, 0, 0, 0x80, 0x3F,
                    2,    0,    0,    0,    'h',  'i',  0,    0,    0,    0,    0, 0, 0xF0, 0x3F};
  ByteReader r(in.data(), in.size());
  uint16_t u16 = 0;
  uint32_t u32 = 0;
  int32_t i32 = 0;
  float f32 = 0;
  double f64 = 0;
  std::string text;
  ASSERT_TRUE(r.getU16(&u16));
  ASSERT_TRUE(r.getU32(&u32));
  ASSERT_TRUE(r.getI32(&i32));
  ASSERT_TRUE(r.getF32(&f32));
  ASSERT_TRUE(r.getText(&text));
  ASSERT_TRUE(r.getF64(&f64));
  EXPECT_EQ(u16, 0x1234);
  EXPECT_EQ(u32, 0x01020304u);
  EXPECT_EQ(i32, -2);
  EXPECT_EQ(f32, 1.0f);
  EXPECT_EQ(text, "hi");
  EXPECT_EQ(f64, 1.0);
  EXPECT_TRUE(r.atEnd());
}

TEST(ByteReader, ShortInputFailsWithoutMoving) {
  const Bytes in = {5, 0, 0, 0, 'a', 'b', 0x01};
  ByteReader r(in.data(), in.size());
  std::string text = "kept";
  EXPECT_FALSE(r.getText(&text));  // the count says 5, only 3 bytes follow
  EXPECT_EQ(text, "kept");
  EXPECT_EQ(r.remaining(), 7u);
  uint64_t u64 = 9;
  EXPECT_FALSE(r.getU64(&u64));
  EXPECT_EQ(u64, 9u);
  ASSERT_TRUE(r.skip(4));
  uint32_t u32 = 7;
  EXPECT_FALSE(r.getU32(&u32));
  EXPECT_EQ(u32, 7u);
  EXPECT_EQ(r.remaining(), 3u);
  std::string bytes;
  EXPECT_FALSE(r.getBytes(4, &bytes));
  ASSERT_TRUE(r.getBytes(3, &bytes));
  EXPECT_EQ(bytes, std::string("ab\x01"));
  uint8_t u8 = 0;
  EXPECT_FALSE(r.getU8(&u8));
  EXPECT_FALSE(r.skip(1));
}

}  // namespace
}  // namespace odbs
