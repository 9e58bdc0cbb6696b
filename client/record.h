// One reply record: the type byte and the body bytes that followed it in the frame. The
// frame's count is 1 + body size. Record owns its body; RecordView borrows one (from the
// frame reader's buffer, valid until its next read). Decoders take a RecordView, so they
// accept both.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

#include "wire/coding.h"

namespace odbs::client {

struct RecordView {
  uint8_t type = 0;
  const uint8_t* body = nullptr;
  size_t size = 0;  // body bytes

  size_t count() const { return 1 + size; }
  ByteReader reader() const { return ByteReader(body, size); }
};

struct Record {
  uint8_t type = 0;
  std::vector<uint8_t> body;

  // The frame count: the type byte plus the body.
  size_t count() const { return 1 + body.size(); }
  // A bounded reader over the body, for decoders.
  ByteReader reader() const { return ByteReader(body.data(), body.size()); }
  RecordView view() const { return RecordView{type, body.data(), body.size()}; }
  operator RecordView() const { return view(); }
  static Record copyOf(const RecordView& v) { return Record{v.type, {v.body, v.body + v.size}}; }
  // The whole frame as it was on the wire: count, type, body.
  std::vector<uint8_t> frameBytes() const;
};

// Lower-case hexadecimal of bytes, two digits per byte, separated by single spaces.
std::string hexBytes(const uint8_t* data, size_t size);
inline std::string hexBytes(const std::vector<uint8_t>& bytes) {
  return hexBytes(bytes.data(), bytes.size());
}

// A printable name of a type byte: its decimal value, followed by the character in quotes
// when it is printable ("126 '~'", "3").
std::string typeName(uint8_t type);

}  // namespace odbs::client
