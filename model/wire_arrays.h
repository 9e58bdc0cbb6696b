// Whole arrays of 32-bit values in the wire's little-endian layout. On a little-endian host
// the layout is the memory layout, so an array is one copy; elsewhere each value goes
// through the encoders of core/coding.h. Bulk records (nodes, elements, label blocks) use
// these instead of a loop of single-value encoders, which compilers turn into byte shuffles.
#pragma once

#include <cstddef>
#include <cstdint>
#include <cstring>

#include "core/coding.h"

namespace odbs {

constexpr size_t kShortArray = 32;

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

}  // namespace odbs
