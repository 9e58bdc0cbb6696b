#include "results/value_stream.h"

#include <algorithm>

namespace odbs {

void ValueStream::dataClass(uint32_t code) {
  if (code == lastClass_) return;
  lastClass_ = code;
  putU32(out_.queueFixed(kRecDataClass, 4), code);
}

void ValueStream::elementType(std::string_view name, int32_t surfaceTag, int32_t sectionPoint) {
  putElementTypeBody(out_.queueFixed(kRecElementType, kElementTypeBodySize), name, surfaceTag,
                     sectionPoint);
}

void ValueStream::orientation(const OrientationRows& rows) {
  putF32Array(out_.queueFixed(kRecOrientation, kOrientationBodySize), rows.data(), rows.size());
}

uint8_t* ValueStream::begin(const ValuePlace& place, size_t n) {
  uint8_t type = valueRecordType(place.element != last_.element, place.point != last_.point,
                                 place.node != last_.node);
  last_ = place;
  ValueHeader h;
  valueHeaderOf(type, &h);
  return putValuePlace(out_.queueFixed(type, h.size() + 4 * n), h, place);
}

void ValueStream::value(const ValuePlace& place, const float* data, const float* conjugate,
                        size_t n) {
  size_t parts = conjugate ? 2 : 1;
  n = std::min(n, kMaxComponents / parts);
  uint8_t* p = putF32Array(begin(place, n * parts), data, n);
  if (conjugate) putF32Array(p, conjugate, n);
}

void ValueStream::value(const ValuePlace& place, const double* data, const double* conjugate,
                        size_t n) {
  size_t parts = conjugate ? 2 : 1;
  n = std::min(n, kMaxComponents / parts);
  uint8_t* p = begin(place, n * parts);
  for (size_t i = 0; i < n; ++i) p = putF32(p, static_cast<float>(data[i]));
  if (conjugate)
    for (size_t i = 0; i < n; ++i) p = putF32(p, static_cast<float>(conjugate[i]));
}

}  // namespace odbs
