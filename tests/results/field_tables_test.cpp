// Classifiers, section-point tables, the modal Mises form and orientations: small exact
// routines checked against values worked out by hand.
#include <gtest/gtest.h>

#include <cmath>

#include "odb/odb.h"
#include "results/field_classify.h"
#include "results/modal_mises.h"
#include "results/orientation.h"
#include "results/section_point_tables.h"

namespace odbs {
namespace {

odb_FieldOutput field(const std::string& name, int type, int labels,
                      std::vector<odb::FieldLocationData> locations = {},
                      std::vector<odb::FieldBlockData> blocks = {}) {
  odb::FieldOutputData d;
  d.name = name;
  d.type = type;
  d.componentLabels.assign(size_t(labels), "X");
  d.locations = std::move(locations);
  return odb_FieldOutput(d, [blocks](int) {
    std::vector<odb_FieldBulkData> v;
    for (const auto& b : blocks) v.emplace_back(b);
    return v;
  });
}

odb::FieldLocationData at(int position, int sectionPoints = 0) {
  odb::FieldLocationData l;
  l.position = position;
  for (int i = 1; i <= sectionPoints; ++i) l.sectionPoints.push_back({i, ""});
  return l;
}

odb::FieldBlockData blockOf(int type, int width) {
  odb::FieldBlockData b;
  b.type = type;
  b.width = width;
  return b;
}

TEST(Classifiers, PositionMaskAndSectionPoints) {
  using namespace odb_Enum;
  EXPECT_EQ(
      positionMask(field("S", TENSOR_3D_FULL, 6,
                         {at(ELEMENT_NODAL), at(INTEGRATION_POINT), at(CENTROID), at(NODAL)})),
      8u | 4u | 2u);
  EXPECT_EQ(positionMask(field("E", SCALAR, 1, {at(ELEMENT_FACE), at(WHOLE_ELEMENT)})), 2u | 16u);
  EXPECT_EQ(positionMask(field("B", BOOLEAN, 1, {at(INTEGRATION_POINT)})), 0u);
  EXPECT_EQ(positionMask(field("MATRIX Sqq", MATRIX, 1)), 8u);
  EXPECT_EQ(positionMask(field("MATRIX Sqqx", MATRIX, 1)), 0u);
  EXPECT_EQ(hasSeveralSectionPoints(field("MATRIX RSqq", MATRIX, 1)), 1);
  EXPECT_EQ(hasSeveralSectionPoints(field("S", TENSOR_3D_FULL, 6, {at(INTEGRATION_POINT, 1)})), 0);
  EXPECT_EQ(hasSeveralSectionPoints(
                field("S", TENSOR_3D_FULL, 6, {at(CENTROID, 1), at(INTEGRATION_POINT, 5)})),
            1);
}

TEST(Classifiers, DataClassOfFieldAndMask) {
  using namespace odb_Enum;
  EXPECT_EQ(dataClassOfField(field("T", SCALAR, 1)), 1u);
  EXPECT_EQ(dataClassOfField(field("MATRIX Sqq", MATRIX, 1)), 1u);
  EXPECT_EQ(dataClassOfField(field("U", VECTOR, 3)), 16u);
  EXPECT_EQ(dataClassOfField(field("S", TENSOR_3D_FULL, 6)), 2u);
  EXPECT_EQ(dataClassOfField(field("S", TENSOR_3D_PLANAR, 4)), 4u);
  EXPECT_EQ(dataClassOfField(field("S", TENSOR_3D_SURFACE, 3)), 8u);
  EXPECT_EQ(dataClassOfField(field("S", TENSOR_2D_PLANAR, 4)), 4u);
  EXPECT_EQ(dataClassOfField(field("S", TENSOR_2D_SURFACE, 6)), 2u);
  EXPECT_EQ(dataClassOfField(field("S", TENSOR_2D_SURFACE, 5)), 0u);
  EXPECT_EQ(dataClassOfField(field("B", BOOLEAN, 1)), 0u);

  EXPECT_EQ(dataClassMask(field("MATRIX Sqqx", MATRIX, 1)), 0u);
  EXPECT_EQ(dataClassMask(field("U", VECTOR, 3)), 16u);
  // One block: the field's own class, whatever the block says.
  EXPECT_EQ(dataClassMask(field("S", TENSOR_3D_SURFACE, 3, {}, {blockOf(TENSOR_3D_FULL, 6)})), 8u);
  // Several blocks: the OR of the blocks' classes; a scalar block adds nothing.
  EXPECT_EQ(dataClassMask(field("S", TENSOR_3D_FULL, 6, {},
                                {blockOf(TENSOR_3D_FULL, 6), blockOf(TENSOR_3D_PLANAR, 4),
                                 blockOf(TENSOR_2D_SURFACE, 3), blockOf(SCALAR, 1)})),
            2u | 4u | 8u);
}

TEST(SectionPointMasks, UnevenBandsAgreeBetweenInsertAndTest) {
  SectionPointMasks m{};
  for (int p : {1, 31, 32, 33, 64, 96}) markSectionPoint(m, p);
  EXPECT_EQ(m[0], (1u << 0) | (1u << 30));
  EXPECT_EQ(m[1], (1u << 31) | (1u << 0));  // 32 is bit 31 of the second mask, 33 bit 0
  EXPECT_EQ(m[2], 1u << 31);                // 64 is bit 31 of the third; 96 is not kept
  for (int p : {1, 31, 32, 33, 64}) EXPECT_TRUE(hasSectionPoint(m, p)) << p;
  for (int p : {2, 63, 65, 95, 96, 0, -1}) EXPECT_FALSE(hasSectionPoint(m, p)) << p;
}

ElementSectionPoints pairOf(std::initializer_list<int> points) {
  ElementTable t;
  for (int p : points) enterElement(t, 7, p);
  middleSectionPoints(t);
  return *t.find(7);
}

TEST(SectionPointMasks, MiddlePair) {
  auto expectPair = [](std::initializer_list<int> points, int low, int high) {
    ElementSectionPoints e = pairOf(points);
    EXPECT_EQ(e.lowest, low);
    EXPECT_EQ(e.highest, high);
  };
  expectPair({1, 2, 3, 4, 5}, 3, 3);
  expectPair({4, 2, 1, 3}, 2, 3);
  expectPair({1}, 1, 1);
  // Middle 3 absent: nearest present points below (2) and above (5).
  expectPair({1, 2, 5}, 2, 5);
  // 1..4 with 2 and 3 absent: down from 2 finds 1, up from 3 finds 4.
  expectPair({1, 4}, 1, 4);
  // Nothing present from the middle up to 95 (point 120 is not kept): the top stays.
  expectPair({1, 120}, 1, 120);
}

TEST(OrderedTables, LabelTableWidensAndPlacesCompareInKeyOrder) {
  LabelTable labels;
  enterLabel(labels, 5, 3);
  enterLabel(labels, 5, 1);
  enterLabel(labels, 5, 4);
  enterLabel(labels, 2, 2);
  auto flat = labels.flatten();
  ASSERT_EQ(flat.size(), 2u);
  EXPECT_EQ(flat[0].first, 2);
  EXPECT_EQ(flat[1].second.lowest, 1);
  EXPECT_EQ(flat[1].second.highest, 4);
  EXPECT_EQ(labels.capacity(), kTableInitialCapacity);

  // Section point first, then element, integration point, node and instance.
  EXPECT_LT(comparePlaces({1, 9, 9, 9, 9}, {2, 0, 0, 0, 0}), 0);
  EXPECT_GT(comparePlaces({1, 2, 0, 0, 0}, {1, 1, 9, 9, 9}), 0);
  EXPECT_LT(comparePlaces({1, 1, 1, 1, 1}, {1, 1, 1, 1, 2}), 0);
  EXPECT_EQ(comparePlaces({-1, 4, 2, 7, 0}, {kPlaceWithoutSectionPoint, 4, 2, 7, 0}), 0);
  PlaceSet places;
  EXPECT_TRUE(places.insert({1, 1, 1, 1, 0}).second);
  EXPECT_FALSE(places.insert({1, 1, 1, 1, 0}).second);
  EXPECT_TRUE(places.insert({1, 1, 1, 1, 1}).second);
}

TEST(OrderedTablesDeathTest, InsertIntoFrozenTableAborts) {
  LabelTable t;
  t.setFrozen(true);
  EXPECT_DEATH(enterLabel(t, 1, 1), "^Kati pige strava sto genm8\n$");
}

StressRow stress(float s11, float s22, float s33, float s12, float s13, float s23) {
  return {s11, s22, s33, s12, s13, s23};
}

TEST(ModalMises, WorkedCases) {
  const float one = 1.f;
  StressRow uniaxial = stress(-3.f, 0, 0, 0, 0, 0);
  EXPECT_EQ(modalMisesForm(&uniaxial, &one, 1), 9.0);  // s squared
  StressRow shear = stress(0, 0, 0, 2.f, 0, 0);
  EXPECT_EQ(modalMisesForm(&shear, &one, 1), 12.0);  // 3 t squared
  EXPECT_EQ(modalMisesForm(&shear, &one, 0), 0.0);

  // Two modes, a = (1, 2, 0, 1, 0, 0), b = (0, 1, 3, 0, 0, 2), M = [[2, 0.5], [0.5, 1]].
  // B00: T1 = 3*1 + (1 + 4) = 8, T2 = 0 + 0 + 0 + 2 + 0 + 2 = 4 -> 6; times M00 = 2: 12.
  // B11: T1 = 3*4 + (1 + 9) = 22, T2 = 3 + 0 + 0 + 0 + 0 + 3 = 6 -> 19; times M11 = 1: 19.
  // B01: T1 = 3*0 + (0 + 2 + 0) = 2, T2 = 3 + 6 + 0 + 1 + 0 + 0 = 10 -> -3, doubled -6;
  //      times M10 = 0.5: -3. q = 12 + 19 - 3 = 28.
  StressRow modes[2] = {stress(1, 2, 0, 1, 0, 0), stress(0, 1, 3, 0, 0, 2)};
  const float m[4] = {2.f, 0.5f, 0.5f, 1.f};
  EXPECT_EQ(modalMisesForm(modes, m, 2), 28.0);
}

TEST(ModalMises, SlotsByExactLabel) {
  std::vector<int> slots = stressSlots({"S11", "S22", "S33", "S12", "S13", "S23", "S12x", "s11"});
  EXPECT_EQ(slots, (std::vector<int>{0, 1, 2, 3, 4, 5, -1, -1}));
  StressRow row = stress(9, 9, 9, 9, 9, 9);
  const float values[3] = {1, 2, 3};
  gatherStressRow(values, {3, -1, 0}, &row);
  EXPECT_EQ(row, stress(3, 9, 9, 1, 9, 9));
}

TEST(Orientation, IdentityAndQuarterTurn) {
  const float identity[4] = {0, 0, 0, 1};
  OrientationRows r = orientationRows(identity, 4);
  EXPECT_EQ(r, (OrientationRows{1, 0, 0, 0, 1, 0}));
  // Quarter turn about z, stored unnormalised: (0, 0, 2, 2) is (0, 0, sin 45, cos 45).
  const float quarter[4] = {0, 0, 2, 2};
  r = orientationRows(quarter, 4);
  const float expected[6] = {0, -1, 0, 1, 0, 0};
  for (int i = 0; i < 6; ++i) EXPECT_NEAR(r[size_t(i)], expected[i], 1e-6f) << i;
  // Width 3: w is 0, so (0, 0, 1) is a half turn about z.
  const float half[3] = {0, 0, 1};
  r = orientationRows(half, 3);
  EXPECT_EQ(r, (OrientationRows{-1, 0, 0, 0, -1, 0}));
}

}  // namespace
}  // namespace odbs
