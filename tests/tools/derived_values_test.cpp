// Derived values of tensor fields against hand calculation.
#include "tools/common/derived_values.h"

#include <gtest/gtest.h>

#include <cmath>

namespace odbs::tools {
namespace {

TEST(DerivedValues, UniaxialShearAndHydrostaticStress) {
  // Uniaxial 100: Mises 100, principal 100, 0, 0.
  Tensor6 uniaxial{100, 0, 0, 0, 0, 0};
  EXPECT_DOUBLE_EQ(misesStress(uniaxial), 100.0);
  auto p = principalValues(uniaxial);
  EXPECT_DOUBLE_EQ(p[0], 100.0);
  EXPECT_DOUBLE_EQ(p[1], 0.0);
  EXPECT_DOUBLE_EQ(p[2], 0.0);

  // Pure shear 50 in the 2-3 plane: Mises 50 sqrt(3), principal 50, 0, -50.
  Tensor6 shear{0, 0, 0, 0, 0, 50};
  EXPECT_NEAR(misesStress(shear), 50.0 * std::sqrt(3.0), 1e-12);
  p = principalValues(shear);
  EXPECT_NEAR(p[0], 50.0, 1e-12);
  EXPECT_NEAR(p[1], 0.0, 1e-12);
  EXPECT_NEAR(p[2], -50.0, 1e-12);

  // Hydrostatic -30: no deviator, three equal principal values.
  Tensor6 pressure{-30, -30, -30, 0, 0, 0};
  EXPECT_DOUBLE_EQ(misesStress(pressure), 0.0);
  for (double v : principalValues(pressure)) EXPECT_DOUBLE_EQ(v, -30.0);
}

TEST(DerivedValues, GeneralTensorAndStrainEquivalent) {
  // [[2,1,0],[1,2,0],[0,0,5]]: eigenvalues 3 and 1 of the 2x2 block, and 5.
  auto p = principalValues(Tensor6{2, 2, 5, 1, 0, 0});
  EXPECT_NEAR(p[0], 5.0, 1e-12);
  EXPECT_NEAR(p[1], 3.0, 1e-12);
  EXPECT_NEAR(p[2], 1.0, 1e-12);
  // Mises of (5, 3, 1) principal: sqrt(((5-3)^2 + (3-1)^2 + (1-5)^2) / 2) = sqrt(12).
  EXPECT_NEAR(misesStress(Tensor6{2, 2, 5, 1, 0, 0}), std::sqrt(12.0), 1e-12);

  // Uniaxial strain e with contraction -e/2 (incompressible): equivalent strain e.
  Tensor6 strain{0.01, -0.005, -0.005, 0, 0, 0};
  EXPECT_NEAR(equivalentStrain(strain), 0.01, 1e-15);
  EXPECT_EQ(tensorKindOfField("LE"), TensorKind::kStrain);
  EXPECT_EQ(tensorKindOfField("S"), TensorKind::kStress);
  EXPECT_NEAR(equivalent(strain, TensorKind::kStrain), 0.01, 1e-15);
}

TEST(DerivedValues, LayoutFromComponentLabels) {
  // A planar field: S11 S22 S33 S12; S13 and S23 absent.
  auto planar = TensorLayout::fromLabels({"S11", "S22", "S33", "S12"});
  ASSERT_TRUE(planar);
  float value[] = {1, 2, 3, 4};
  Tensor6 t = planar->tensor(value);
  EXPECT_EQ(t, (Tensor6{1, 2, 3, 4, 0, 0}));
  // Any order, and 21 the same as 12.
  auto shuffled = TensorLayout::fromLabels({"E23", "E21", "E11", "E22"});
  ASSERT_TRUE(shuffled);
  float v2[] = {7, 8, 9, 10};
  EXPECT_EQ(shuffled->tensor(v2), (Tensor6{9, 10, 0, 8, 0, 7}));
  // Not a tensor: vector labels, repeated or missing diagonal.
  EXPECT_FALSE(TensorLayout::fromLabels({"U1", "U2", "U3"}));
  EXPECT_FALSE(TensorLayout::fromLabels({"S11", "S11", "S22"}));
  EXPECT_FALSE(TensorLayout::fromLabels({"S12", "S13"}));
}

}  // namespace
}  // namespace odbs::tools
