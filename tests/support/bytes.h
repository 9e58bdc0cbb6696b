// Byte helpers shared by the tests: expected frames and bodies written out by hand, without
// the encoders of wire/coding.h, so that a fault in those encoders cannot hide itself.
#pragma once

#include <cstdint>
#include <cstring>
#include <initializer_list>
#include <string>
#include <vector>

namespace odbs::test {

using Bytes = std::vector<uint8_t>;

// The end record that closes a reply: count 1, type '~'.
inline const Bytes kEnd = {0x01, 0x00, 0x7E};

// Little-endian bytes of one value.
inline Bytes le16(uint16_t v) {
  return {static_cast<uint8_t>(v), static_cast<uint8_t>(v >> 8)};
}
inline Bytes le32(uint32_t v) {
  return {static_cast<uint8_t>(v), static_cast<uint8_t>(v >> 8), static_cast<uint8_t>(v >> 16),
          static_cast<uint8_t>(v >> 24)};
}
inline Bytes leF32(float v) {
  uint32_t bits;
  std::memcpy(&bits, &v, 4);
  return le32(bits);
}

inline Bytes concat(std::initializer_list<Bytes> parts) {
  Bytes out;
  for (const Bytes& p : parts) out.insert(out.end(), p.begin(), p.end());
  return out;
}

// A counted text body: 32-bit little-endian count, then the bytes.
inline Bytes textBody(const std::string& text) {
  Bytes out = le32(static_cast<uint32_t>(text.size()));
  for (char c : text) out.push_back(static_cast<uint8_t>(c));
  return out;
}

// One frame: 16-bit little-endian count (1 + body), type, body.
inline Bytes frame(uint8_t type, const Bytes& body = {}) {
  return concat({le16(static_cast<uint16_t>(1 + body.size())), Bytes{type}, body});
}

}  // namespace odbs::test
