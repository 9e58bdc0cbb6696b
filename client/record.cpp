#include "client/record.h"

namespace odbs::client {

std::vector<uint8_t> Record::frameBytes() const {
  std::vector<uint8_t> out(2 + count());
  uint8_t* p = putU16(out.data(), static_cast<uint16_t>(count()));
  p = putU8(p, type);
  putBytes(p, body.data(), body.size());
  return out;
}

std::string hexBytes(const uint8_t* data, size_t size) {
  static const char kDigits[] = "0123456789abcdef";
  std::string out;
  out.reserve(size * 3);
  for (size_t i = 0; i < size; ++i) {
    if (i != 0) out += ' ';
    out += kDigits[data[i] >> 4];
    out += kDigits[data[i] & 15];
  }
  return out;
}

std::string typeName(uint8_t type) {
  std::string out = std::to_string(type);
  if (type >= 32 && type < 127) {
    out += " '";
    out += static_cast<char>(type);
    out += '\'';
  }
  return out;
}

}  // namespace odbs::client
