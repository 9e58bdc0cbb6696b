// The writer of the field value record family into the pending output buffer: the
// data-class record, the element type record, the orientation record and the eight value
// records, each value record naming only what changed since the previous value.
//
// One stream per reply part: the remembered place starts as kNoPlace (so the first value
// names element, integration point and node) and the remembered data class as unsent.
// Records are queued on the channel; the owner flushes it.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>

#include "context/reply_channel.h"
#include "results/orientation.h"
#include "wire/field_value_coding.h"
#include "wire/frame.h"

namespace odbs {

class ValueStream {
 public:
  explicit ValueStream(ReplyChannel& out) : out_(out) {}

  // Forgets the remembered place: the next value names all three numbers.
  void resetPlace() { last_ = {kNoPlace, kNoPlace, kNoPlace}; }
  // Sends the data-class record ('%') when code differs from the one sent last.
  void dataClass(uint32_t code);
  // Element type record (30).
  void elementType(std::string_view name, int32_t surfaceTag, int32_t sectionPoint);
  // Orientation record (39).
  void orientation(const OrientationRows& rows);
  // One value record at place with n components, followed by n conjugate components when
  // conjugate is not null. Components beyond what one record holds are dropped.
  void value(const ValuePlace& place, const float* data, const float* conjugate, size_t n) {
    size_t parts = conjugate ? 2 : 1;
    if (n > kMaxComponents / parts) n = kMaxComponents / parts;
    uint8_t* p = putFloats(begin(place, n * parts), data, n);
    if (conjugate) putFloats(p, conjugate, n);
  }
  void value(const ValuePlace& place, const double* data, const double* conjugate, size_t n);

  // Components one value record can hold (data and conjugate together).
  static constexpr size_t kMaxComponents = (kRecordBufferSize - 1 - 12) / 4;

 private:
  // Queues the record header for place with room for n components; returns where they go.
  // Inline: this runs once per value.
  uint8_t* begin(const ValuePlace& place, size_t n) {
    // The header is the three changes themselves: no look-up of the type's header.
    const ValueHeader h{place.element != last_.element, place.node != last_.node,
                        place.point != last_.point};
    last_ = place;
    uint8_t type = valueRecordType(h.element, h.point, h.node);
    return putValuePlace(out_.queueFixed(type, h.size() + 4 * n), h, place);
  }
  // Stores n floats; short rows (a tensor's components) as single moves.
  static uint8_t* putFloats(uint8_t* dst, const float* src, size_t n) {
    if (n > 8) return putF32Array(dst, src, n);
    for (size_t i = 0; i < n; ++i) dst = putF32(dst, src[i]);
    return dst;
  }

  ReplyChannel& out_;
  ValuePlace last_{kNoPlace, kNoPlace, kNoPlace};
  uint32_t lastClass_ = uint32_t(kNoPlace);
};

}  // namespace odbs
