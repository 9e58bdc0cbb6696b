// The tables of the field walk and the value extraction: the set of places already sent,
// the label table (per element, its lowest and highest section point) and the element
// table (per element, the section points present and the middle pair of them).
#pragma once

#include <array>
#include <cstdint>

#include "results/ordered_table.h"

namespace odbs {

// ---- Set of places -----------------------------------------------------------------------

// A place; compared by section point, element, integration point, node, instance number.
// Section point and integration point are kept in 16 bits.
struct PlaceKey {
  int16_t sectionPoint = 0;
  int32_t element = 0;
  int16_t point = 0;
  int32_t node = 0;
  int32_t instance = 0;
};
// The section point that places of blocks without section points are kept under.
constexpr int16_t kPlaceWithoutSectionPoint = int16_t(65535);
int comparePlaces(const PlaceKey& a, const PlaceKey& b);

struct NoPayload {};
using PlaceSet = OrderedTable<PlaceKey, NoPayload, comparePlaces>;

// ---- Label table ---------------------------------------------------------------------------

int compareLabels(const int32_t& a, const int32_t& b);

struct SectionRange {
  int16_t lowest = 0;
  int16_t highest = 0;
};
using LabelTable = OrderedTable<int32_t, SectionRange, compareLabels>;

// Enters element label with section point sp: a new label gets (sp, sp), a present one
// widens its range to include sp.
void enterLabel(LabelTable& table, int32_t label, int32_t sp);

// ---- Element table -------------------------------------------------------------------------

// Three masks of the section points present: 1..31 in the first (bit p - 1), 32..63 in the
// second and 64..95 in the third (bit (p - 1) mod 32). The bands are uneven on purpose:
// 32 is bit 31 of the second mask and 64 bit 31 of the third. Points from 96 on, and
// points below 1, are not recorded.
using SectionPointMasks = std::array<uint32_t, 3>;
void markSectionPoint(SectionPointMasks& masks, int32_t p);
bool hasSectionPoint(const SectionPointMasks& masks, int32_t p);

struct ElementSectionPoints {
  int16_t lowest = 0;   // after middleSectionPoints: the lower point of the middle pair
  int16_t highest = 0;  // after middleSectionPoints: the upper point of the middle pair
  SectionPointMasks masks{};
};
using ElementTable = OrderedTable<int32_t, ElementSectionPoints, compareLabels>;

// Enters element label with section point sp: range as enterLabel, and sp into the masks.
void enterElement(ElementTable& table, int32_t label, int32_t sp);

// Replaces each entry's lowest and highest section point by the middle pair of the points
// present: for 1..5 (3, 3), for 1..4 (2, 3); where the middle is absent the nearest present
// points below and above it.
void middleSectionPoints(ElementTable& table);
void middlePair(ElementSectionPoints& e);

}  // namespace odbs
