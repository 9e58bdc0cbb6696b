#include "results/value_stream.h"

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

void ValueStream::value(const ValuePlace& place, const double* data, const double* conjugate,
                        size_t n) {
  size_t parts = conjugate ? 2 : 1;
  if (n > kMaxComponents / parts) n = kMaxComponents / parts;
  uint8_t* p = begin(place, n * parts);
  for (size_t i = 0; i < n; ++i) p = putF32(p, static_cast<float>(data[i]));
  if (conjugate)
    for (size_t i = 0; i < n; ++i) p = putF32(p, static_cast<float>(conjugate[i]));
}

}  // namespace odbs
