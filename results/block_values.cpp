#include "results/block_values.h"

#include <algorithm>
#include <vector>

namespace odbs {

namespace {

void sendOrientation(ValueStream& stream, const BlockArrays& b, size_t row) {
  // Widths above 4 are not quaternions: nothing is sent for them.
  if (b.csys && b.csysWidth <= 4)
    stream.orientation(orientationRows(b.csys + row * b.csysWidth, int(b.csysWidth)));
}

void sendRow(ValueStream& stream, const BlockArrays& b, size_t row) {
  size_t at = row * b.width;
  if (b.dataDouble)
    stream.value(b.place(row), b.dataDouble + at, b.complex ? b.conjugateDouble + at : nullptr,
                 b.width);
  else
    stream.value(b.place(row), b.data + at, b.complex ? b.conjugate + at : nullptr, b.width);
}

template <typename T>
void average(const T* a, const T* b, size_t n, float* out) {
  for (size_t i = 0; i < n; ++i) {
    float sum = static_cast<float>(a[i] + b[i]);
    out[i] = sum * 0.5f;
  }
}

}  // namespace

bool PlaceFilter::seenBefore(const ValuePlace& p) const {
  PlaceKey key{sectionPoint, p.element, static_cast<int16_t>(p.point), p.node, instance};
  return !places->insert(key).second;
}

void sendRows(ValueStream& stream, const BlockArrays& block, size_t begin, size_t end,
              const PlaceFilter& filter) {
  end = std::min(end, block.rows);
  if (!filter.places && !block.csys && !block.complex && block.data) {
    // The common case (single precision, nothing to skip, no orientations) in one tight loop.
    for (size_t row = begin; row < end; ++row)
      stream.value(block.place(row), block.data + row * block.width, nullptr, block.width);
    return;
  }
  for (size_t row = begin; row < end; ++row) {
    if (filter.seen(block.place(row))) continue;
    sendOrientation(stream, block, row);
    sendRow(stream, block, row);
  }
}

void sendMidSurfaceRows(ValueStream& stream, const BlockArrays& lower, size_t lowerRow,
                        const BlockArrays& upper, size_t upperRow, size_t count) {
  if (lower.width != upper.width || (lower.dataDouble == nullptr) != (upper.dataDouble == nullptr))
    return;
  if (lowerRow >= lower.rows || upperRow >= upper.rows) return;
  count = std::min({count, lower.rows - lowerRow, upper.rows - upperRow});
  const size_t w = lower.width;
  const bool complex = lower.complex && upper.complex;
  std::vector<float> mid(complex ? 2 * w : w);
  for (size_t k = 0; k < count; ++k) {
    size_t a = (lowerRow + k) * w, b = (upperRow + k) * w;
    if (lower.dataDouble) {
      average(lower.dataDouble + a, upper.dataDouble + b, w, mid.data());
      if (complex) average(lower.conjugateDouble + a, upper.conjugateDouble + b, w, mid.data() + w);
    } else {
      average(lower.data + a, upper.data + b, w, mid.data());
      if (complex) average(lower.conjugate + a, upper.conjugate + b, w, mid.data() + w);
    }
    sendOrientation(stream, lower, lowerRow + k);
    stream.value(lower.place(lowerRow + k), mid.data(), complex ? mid.data() + w : nullptr, w);
  }
}

}  // namespace odbs
