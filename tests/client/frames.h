// Builds reply byte streams for the client tests.
#pragma once

#include <cstdint>
#include <initializer_list>
#include <string>
#include <vector>

#include "wire/coding.h"

namespace odbs::client::test {

using Bytes = std::vector<uint8_t>;

// One frame: 16-bit little-endian count (1 + body), type, body.
inline Bytes frame(uint8_t type, const Bytes& body = {}) {
  Bytes out(3 + body.size());
  uint8_t* p = putU16(out.data(), static_cast<uint16_t>(1 + body.size()));
  putBytes(putU8(p, type), body.data(), body.size());
  return out;
}

inline Bytes concat(std::initializer_list<Bytes> parts) {
  Bytes out;
  for (const Bytes& p : parts) out.insert(out.end(), p.begin(), p.end());
  return out;
}

// A counted text body: 32-bit little-endian count, then the bytes.
inline Bytes textBody(const std::string& text) {
  Bytes out(4);
  putU32(out.data(), static_cast<uint32_t>(text.size()));
  for (char c : text) out.push_back(static_cast<uint8_t>(c));
  return out;
}

inline const Bytes kEnd = {0x01, 0x00, 0x7E};

}  // namespace odbs::client::test
