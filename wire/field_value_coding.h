// Byte layout of the field value record family, shared by the server's value extraction
// and the client's decoders.
//
// A value record names only what changed against the previous value: the type byte says
// which of element label, node label and integration point follow (always in that order),
// and the rest of the body is the value's 32-bit float components. The element type record
// (30) opens a block of values; the orientation record (39) carries the first two rows of a
// rotation matrix.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>

#include "wire/coding.h"
#include "wire/record_types.h"

namespace odbs {

// Where a value lies: element label, integration point (0 when the block has none) and node
// label (-1 when the block has none).
struct ValuePlace {
  int32_t element = 0;
  int32_t point = 0;
  int32_t node = -1;
};

// The place that no value has: the remembered place at the start of a stream, so that the
// first value always names element, integration point and node.
constexpr int32_t kNoPlace = 2147483647;

// Which location numbers a value record of a given type carries.
struct ValueHeader {
  bool element = false;
  bool node = false;
  bool point = false;
  size_t size() const { return 4 * (size_t(element) + size_t(node) + size_t(point)); }
};

// The record type for a value whose element, integration point and node changed as given.
inline uint8_t valueRecordType(bool element, bool point, bool node) {
  if (!element) {
    if (!point) return node ? kRecValueNewNode : kRecValueSamePlace;
    return node ? kRecValueNewPointNode : kRecValueNewPoint;
  }
  if (!point) return node ? kRecValueNewElementNode : kRecValueNewElement;
  return node ? kRecValueNewAll : kRecValueNewElementPoint;
}

// The header of a value record type; false when type is not one of the eight.
inline bool valueHeaderOf(uint8_t type, ValueHeader* h) {
  switch (type) {
    case kRecValueSamePlace:
      *h = {false, false, false};
      return true;
    case kRecValueNewNode:
      *h = {false, true, false};
      return true;
    case kRecValueNewPoint:
      *h = {false, false, true};
      return true;
    case kRecValueNewPointNode:
      *h = {false, true, true};
      return true;
    case kRecValueNewElementNode:
      *h = {true, true, false};
      return true;
    case kRecValueNewElement:
      *h = {true, false, false};
      return true;
    case kRecValueNewAll:
      *h = {true, true, true};
      return true;
    case kRecValueNewElementPoint:
      *h = {true, false, true};
      return true;
    default:
      return false;
  }
}

// Stores the location numbers that a record of header h carries; returns dst past them.
inline uint8_t* putValuePlace(uint8_t* dst, const ValueHeader& h, const ValuePlace& p) {
  if (h.element) dst = putI32(dst, p.element);
  if (h.node) dst = putI32(dst, p.node);
  if (h.point) dst = putI32(dst, p.point);
  return dst;
}

// Element type record (30): the name in exactly 8 bytes (cut, or blank-padded), then the
// surface tag and the section point, both -1 for a block without section points.
constexpr size_t kElementTypeNameBytes = 8;
constexpr size_t kElementTypeBodySize = kElementTypeNameBytes + 8;

inline uint8_t* putElementTypeBody(uint8_t* dst, std::string_view name, int32_t surfaceTag,
                                   int32_t sectionPoint) {
  for (size_t i = 0; i < kElementTypeNameBytes; ++i)
    dst[i] = i < name.size() ? static_cast<uint8_t>(name[i]) : uint8_t(' ');
  dst = putI32(dst + kElementTypeNameBytes, surfaceTag);
  return putI32(dst, sectionPoint);
}

// Orientation record (39): six floats, rows 0 and 1 of the rotation matrix.
constexpr size_t kOrientationBodySize = 6 * 4;

}  // namespace odbs
