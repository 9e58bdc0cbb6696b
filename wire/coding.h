// Little-endian encoders and bounded decoders for every byte layout on the wire.
//
// The server's record writers and the client library's decoders both use these, so a
// layout is written down in exactly one place. Encoders write to a caller-provided
// pointer that must have room; decoders never read past the end of their buffer.
#pragma once

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <string>
#include <string_view>

namespace odbs {

static_assert(sizeof(float) == 4 && sizeof(double) == 8, "IEEE 754 binary32/binary64 expected");

// Encoders: each stores the value at dst in little-endian order and returns dst advanced
// past it. The caller guarantees room for the value.
inline uint8_t* putU8(uint8_t* dst, uint8_t v) {
  *dst = v;
  return dst + 1;
}

inline uint8_t* putU16(uint8_t* dst, uint16_t v) {
  dst[0] = static_cast<uint8_t>(v);
  dst[1] = static_cast<uint8_t>(v >> 8);
  return dst + 2;
}

inline uint8_t* putU32(uint8_t* dst, uint32_t v) {
  dst[0] = static_cast<uint8_t>(v);
  dst[1] = static_cast<uint8_t>(v >> 8);
  dst[2] = static_cast<uint8_t>(v >> 16);
  dst[3] = static_cast<uint8_t>(v >> 24);
  return dst + 4;
}

inline uint8_t* putU64(uint8_t* dst, uint64_t v) {
  dst = putU32(dst, static_cast<uint32_t>(v));
  return putU32(dst, static_cast<uint32_t>(v >> 32));
}

inline uint8_t* putI32(uint8_t* dst, int32_t v) {
  return putU32(dst, static_cast<uint32_t>(v));
}

inline uint8_t* putF32(uint8_t* dst, float v) {
  uint32_t bits;
  std::memcpy(&bits, &v, 4);
  return putU32(dst, bits);
}

inline uint8_t* putF64(uint8_t* dst, double v) {
  uint64_t bits;
  std::memcpy(&bits, &v, 8);
  return putU64(dst, bits);
}

// Counted text: a 32-bit byte count, then the bytes without terminator.
inline uint8_t* putText(uint8_t* dst, std::string_view text) {
  dst = putU32(dst, static_cast<uint32_t>(text.size()));
  if (!text.empty()) std::memcpy(dst, text.data(), text.size());
  return dst + text.size();
}

inline uint8_t* putBytes(uint8_t* dst, const void* src, size_t n) {
  if (n != 0) std::memcpy(dst, src, n);
  return dst + n;
}

// Whole arrays of 32-bit values. On a little-endian host the wire layout is the memory
// layout, so an array is one copy; elsewhere each value goes through the encoders above.
// Bulk records (nodes, elements, label blocks) use these instead of a loop of single-value
// encoders, which compilers turn into byte shuffles.
constexpr size_t kShortArray = 32;  // up to this many values: single moves, no call

// Stores n values from src at dst; returns dst advanced past them. dst must have room.
inline uint8_t* putI32Array(uint8_t* dst, const int32_t* src, size_t n) {
#if defined(__BYTE_ORDER__) && __BYTE_ORDER__ == __ORDER_LITTLE_ENDIAN__
  // Short arrays (an element's nodes) as single moves: cheaper than a call to memcpy.
  if (n <= kShortArray) {
    for (size_t i = 0; i < n; ++i) std::memcpy(dst + 4 * i, src + i, 4);
    return dst + 4 * n;
  }
  return putBytes(dst, src, 4 * n);
#else
  for (size_t i = 0; i < n; ++i) dst = putI32(dst, src[i]);
  return dst;
#endif
}

inline uint8_t* putF32Array(uint8_t* dst, const float* src, size_t n) {
#if defined(__BYTE_ORDER__) && __BYTE_ORDER__ == __ORDER_LITTLE_ENDIAN__
  return putBytes(dst, src, 4 * n);
#else
  for (size_t i = 0; i < n; ++i) dst = putF32(dst, src[i]);
  return dst;
#endif
}

// Loads from a pointer known to hold enough bytes.
inline uint16_t loadU16(const uint8_t* p) {
  return static_cast<uint16_t>(p[0] | (p[1] << 8));
}

inline uint32_t loadU32(const uint8_t* p) {
  return static_cast<uint32_t>(p[0]) | (static_cast<uint32_t>(p[1]) << 8) |
         (static_cast<uint32_t>(p[2]) << 16) | (static_cast<uint32_t>(p[3]) << 24);
}

inline uint64_t loadU64(const uint8_t* p) {
  return static_cast<uint64_t>(loadU32(p)) | (static_cast<uint64_t>(loadU32(p + 4)) << 32);
}

// Sequential reader over [data, data + size). Every getter returns false and leaves the
// output untouched when fewer bytes remain than the value needs; the position then stays
// where it was, so a caller can report how far a body was read.
class ByteReader {
 public:
  ByteReader(const uint8_t* data, size_t size) : p_(data), end_(data + size) {}

  size_t remaining() const { return static_cast<size_t>(end_ - p_); }
  bool atEnd() const { return p_ == end_; }
  const uint8_t* position() const { return p_; }

  bool getU8(uint8_t* v) {
    if (remaining() < 1) return false;
    *v = *p_++;
    return true;
  }
  bool getU16(uint16_t* v) {
    return load(v, 2, [](const uint8_t* p) { return loadU16(p); });
  }
  bool getU32(uint32_t* v) {
    return load(v, 4, [](const uint8_t* p) { return loadU32(p); });
  }
  bool getU64(uint64_t* v) {
    return load(v, 8, [](const uint8_t* p) { return loadU64(p); });
  }
  bool getI32(int32_t* v) {
    uint32_t u;
    if (!getU32(&u)) return false;
    *v = static_cast<int32_t>(u);
    return true;
  }
  bool getF32(float* v) {
    uint32_t u;
    if (!getU32(&u)) return false;
    std::memcpy(v, &u, 4);
    return true;
  }
  bool getF64(double* v) {
    uint64_t u;
    if (!getU64(&u)) return false;
    std::memcpy(v, &u, 8);
    return true;
  }
  // n raw bytes; fails without moving when fewer remain.
  bool getBytes(size_t n, std::string* out) {
    if (remaining() < n) return false;
    out->assign(reinterpret_cast<const char*>(p_), n);
    p_ += n;
    return true;
  }
  // Counted text; fails without moving when the count runs past the end.
  bool getText(std::string* out) {
    if (remaining() < 4) return false;
    uint32_t n = loadU32(p_);
    if (remaining() - 4 < n) return false;
    out->assign(reinterpret_cast<const char*>(p_ + 4), n);
    p_ += 4 + n;
    return true;
  }
  bool skip(size_t n) {
    if (remaining() < n) return false;
    p_ += n;
    return true;
  }

 private:
  template <typename T, typename F>
  bool load(T* v, size_t n, F f) {
    if (remaining() < n) return false;
    *v = f(p_);
    p_ += n;
    return true;
  }

  const uint8_t* p_;
  const uint8_t* end_;
};

}  // namespace odbs
