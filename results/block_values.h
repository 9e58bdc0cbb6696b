// Sending the rows of one bulk data block as value records: each row's orientation (when
// the block carries local coordinate systems that were asked for) and its value record,
// optionally skipping places already sent; and the mid-surface values of a section pair.
#pragma once

#include <cstddef>
#include <cstdint>

#include "results/block_arrays.h"
#include "results/section_point_tables.h"
#include "results/value_stream.h"

namespace odbs {

// The set of places already sent and the parts of the key that the block fixes. With a
// null set every row is sent.
struct PlaceFilter {
  PlaceSet* places = nullptr;
  int16_t sectionPoint = kPlaceWithoutSectionPoint;
  int32_t instance = 0;

  // True when the row's place was sent before; enters it otherwise.
  bool seen(const ValuePlace& p) const { return places != nullptr && seenBefore(p); }

 private:
  bool seenBefore(const ValuePlace& p) const;
};

// Sends rows [begin, end) of the block (end is clamped to its rows).
void sendRows(ValueStream& stream, const BlockArrays& block, size_t begin, size_t end,
              const PlaceFilter& filter);

// Sends count mid-surface values: row lower + k of block lower averaged with row upper + k
// of block upper, component by component as (a + b) rounded to single precision, times
// 0.5. Places and orientations are those of the lower rows. Rows past either block's end
// are not sent. Both blocks must have the same width and precision; otherwise nothing is
// sent.
void sendMidSurfaceRows(ValueStream& stream, const BlockArrays& lower, size_t lowerRow,
                        const BlockArrays& upper, size_t upperRow, size_t count);

}  // namespace odbs
