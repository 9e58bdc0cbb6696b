#include "results/modal_mises.h"

namespace odbs {

std::vector<int> stressSlots(const std::vector<std::string>& componentLabels) {
  static const char* const kNames[6] = {"S11", "S22", "S33", "S12", "S13", "S23"};
  std::vector<int> slots(componentLabels.size(), -1);
  for (size_t c = 0; c < componentLabels.size(); ++c)
    for (int s = 0; s < 6; ++s)
      if (componentLabels[c] == kNames[s]) slots[c] = s;
  return slots;
}

void gatherStressRow(const float* values, const std::vector<int>& slots, StressRow* row) {
  for (size_t c = 0; c < slots.size(); ++c)
    if (slots[c] >= 0) (*row)[static_cast<size_t>(slots[c])] = values[c];
}

double modalMisesForm(const StressRow* rows, const float* matrix, int n) {
  double q = 0.0;
  for (int i = 0; i < n; ++i) {
    const StressRow& a = rows[i];
    for (int j = i; j < n; ++j) {
      const StressRow& b = rows[j];
      // Both sums in single precision, in this order: the values must not depend on the
      // compiler's choice of intermediate precision.
      float shear = a[3] * b[3] + a[4] * b[4] + a[5] * b[5];
      float direct = a[0] * b[0] + a[1] * b[1] + a[2] * b[2];
      float t1 = 3.0f * shear + direct;
      float t2 = a[0] * b[2] + a[1] * b[2] + a[2] * b[1] + a[0] * b[1] + a[2] * b[0] + a[1] * b[0];
      double bij = static_cast<double>(t1) - 0.5 * static_cast<double>(t2);
      if (i != j) bij *= 2.0;
      q += static_cast<double>(matrix[j * n + i]) * bij;
    }
  }
  return q;
}

}  // namespace odbs
