#include "results/section_point_tables.h"

#include <algorithm>

namespace odbs {

namespace {

template <typename T>
int threeWay(T a, T b) {
  return a < b ? -1 : b < a ? 1 : 0;
}

// The mask and bit of section point p, or false when p is not recorded.
bool maskBit(int32_t p, size_t* mask, uint32_t* bit) {
  if (p < 1 || p >= 96) return false;
  *mask = p < 32 ? 0 : p < 64 ? 1 : 2;
  *bit = uint32_t(1) << ((p - 1) % 32);
  return true;
}

}  // namespace

int comparePlaces(const PlaceKey& a, const PlaceKey& b) {
  if (int c = threeWay(a.sectionPoint, b.sectionPoint)) return c;
  if (int c = threeWay(a.element, b.element)) return c;
  if (int c = threeWay(a.point, b.point)) return c;
  if (int c = threeWay(a.node, b.node)) return c;
  return threeWay(a.instance, b.instance);
}

int compareLabels(const int32_t& a, const int32_t& b) {
  return threeWay(a, b);
}

void enterLabel(LabelTable& table, int32_t label, int32_t sp) {
  auto [range, isNew] = table.insert(label);
  int16_t p = static_cast<int16_t>(sp);
  if (isNew) {
    *range = {p, p};
  } else {
    range->lowest = std::min(range->lowest, p);
    range->highest = std::max(range->highest, p);
  }
}

void markSectionPoint(SectionPointMasks& masks, int32_t p) {
  size_t m;
  uint32_t bit;
  if (maskBit(p, &m, &bit)) masks[m] |= bit;
}

bool hasSectionPoint(const SectionPointMasks& masks, int32_t p) {
  size_t m;
  uint32_t bit;
  return maskBit(p, &m, &bit) && (masks[m] & bit) != 0;
}

void enterElement(ElementTable& table, int32_t label, int32_t sp) {
  auto [e, isNew] = table.insert(label);
  int16_t p = static_cast<int16_t>(sp);
  if (isNew) {
    e->lowest = e->highest = p;
  } else {
    e->lowest = std::min(e->lowest, p);
    e->highest = std::max(e->highest, p);
  }
  markSectionPoint(e->masks, sp);
}

void middlePair(ElementSectionPoints& e) {
  int32_t lowest = e.lowest, highest = e.highest;
  int32_t n = highest - lowest + 1;
  int32_t high = lowest + n / 2;
  int32_t low = n % 2 != 0 ? high : std::max(high - 1, 1);
  if (low == -1) return;
  while (low >= 1 && !hasSectionPoint(e.masks, low)) --low;
  if (low < 1) low = lowest;
  // Points below 1 are never present: start the upward search at 1 at the lowest.
  for (high = std::max(high, 1); high < 96; ++high) {
    if (hasSectionPoint(e.masks, high)) {
      e.lowest = static_cast<int16_t>(low);
      e.highest = static_cast<int16_t>(high);
      return;
    }
  }
  e.lowest = static_cast<int16_t>(low);
  e.highest = static_cast<int16_t>(highest);
}

void middleSectionPoints(ElementTable& table) {
  table.forEach([](const int32_t&, ElementSectionPoints& e) { middlePair(e); });
}

}  // namespace odbs
