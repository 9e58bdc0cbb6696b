#include "tools/common/derived_values.h"

#include <algorithm>
#include <cmath>

namespace odbs::tools {

std::optional<TensorLayout> TensorLayout::fromLabels(const std::vector<std::string>& labels) {
  TensorLayout layout;
  for (size_t c = 0; c < labels.size(); ++c) {
    const std::string& l = labels[c];
    if (l.size() < 3) return std::nullopt;
    int i = l[l.size() - 2] - '0', j = l[l.size() - 1] - '0';
    if (i < 1 || i > 3 || j < 1 || j > 3) return std::nullopt;
    if (i > j) std::swap(i, j);
    // 11 22 33 on the diagonal, then 12 13 23.
    int k = i == j ? i - 1 : (i == 1 ? j + 1 : 5);
    if (layout.index[k] >= 0) return std::nullopt;
    layout.index[k] = static_cast<int>(c);
  }
  if (layout.index[0] < 0 || layout.index[1] < 0) return std::nullopt;
  return layout;
}

TensorKind tensorKindOfField(const std::string& fieldName) {
  if (fieldName.empty()) return TensorKind::kStress;
  return fieldName.front() == 'E' || fieldName.back() == 'E' ? TensorKind::kStrain
                                                             : TensorKind::kStress;
}

namespace {

// e':e' of the deviator of t.
double deviatorSquared(const Tensor6& t) {
  double mean = (t[0] + t[1] + t[2]) / 3.0;
  double d0 = t[0] - mean, d1 = t[1] - mean, d2 = t[2] - mean;
  return d0 * d0 + d1 * d1 + d2 * d2 + 2.0 * (t[3] * t[3] + t[4] * t[4] + t[5] * t[5]);
}

}  // namespace

double misesStress(const Tensor6& t) {
  return std::sqrt(1.5 * deviatorSquared(t));
}

double equivalentStrain(const Tensor6& t) {
  return std::sqrt(2.0 / 3.0 * deviatorSquared(t));
}

double equivalent(const Tensor6& t, TensorKind kind) {
  return kind == TensorKind::kStress ? misesStress(t) : equivalentStrain(t);
}

std::array<double, 3> principalValues(const Tensor6& t) {
  // Closed form for symmetric 3x3 matrices: the eigenvalues of B = (A - qI)/p are
  // 2cos(phi + 2k pi/3) with det(B) = 2cos(3 phi).
  const double a11 = t[0], a22 = t[1], a33 = t[2], a12 = t[3], a13 = t[4], a23 = t[5];
  double off = a12 * a12 + a13 * a13 + a23 * a23;
  std::array<double, 3> e;
  if (off == 0.0) {
    e = {a11, a22, a33};
  } else {
    double q = (a11 + a22 + a33) / 3.0;
    double b11 = a11 - q, b22 = a22 - q, b33 = a33 - q;
    double p = std::sqrt((b11 * b11 + b22 * b22 + b33 * b33 + 2.0 * off) / 6.0);
    double det = b11 * (b22 * b33 - a23 * a23) - a12 * (a12 * b33 - a23 * a13) +
                 a13 * (a12 * a23 - b22 * a13);
    double r = std::clamp(det / (2.0 * p * p * p), -1.0, 1.0);
    double phi = std::acos(r) / 3.0;
    const double third = 2.0943951023931957;  // 2 pi / 3
    e[0] = q + 2.0 * p * std::cos(phi);
    e[2] = q + 2.0 * p * std::cos(phi + third);
    e[1] = 3.0 * q - e[0] - e[2];
  }
  std::sort(e.begin(), e.end(), [](double a, double b) { return a > b; });
  return e;
}

}  // namespace odbs::tools
