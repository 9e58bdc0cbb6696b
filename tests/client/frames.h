// Builds reply byte streams for the client tests.
#pragma once

#include <cstdint>
#include <initializer_list>
#include <string>
#include <vector>

namespace odbs::client::test {

using Bytes = std::vector<uint8_t>;

// One frame: 16-bit little-endian count (1 + body), type, body.
inline Bytes frame(uint8_t type, const Bytes& body = {}) {
  size_t count = 1 + body.size();
  Bytes out = {static_cast<uint8_t>(count), static_cast<uint8_t>(count >> 8), type};
  out.insert(out.end(), body.begin(), body.end());
  return out;
}

inline Bytes concat(std::initializer_list<Bytes> parts) {
  Bytes out;
  for (const Bytes& p : parts) out.insert(out.end(), p.begin(), p.end());
  return out;
}

// A counted text body: 32-bit little-endian count, then the bytes.
inline Bytes textBody(const std::string& text) {
  uint32_t n = static_cast<uint32_t>(text.size());
  Bytes out = {static_cast<uint8_t>(n), static_cast<uint8_t>(n >> 8), static_cast<uint8_t>(n >> 16),
               static_cast<uint8_t>(n >> 24)};
  out.insert(out.end(), text.begin(), text.end());
  return out;
}

inline const Bytes kEnd = {0x01, 0x00, 0x7E};

}  // namespace odbs::client::test
