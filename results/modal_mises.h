// The modal Mises form: one equivalent-stress value per place from the stresses of n
// eigenmodes and an n by n symmetric modal matrix.
#pragma once

#include <array>
#include <string>
#include <vector>

namespace odbs {

// Stress components of one place and mode in slot order S11, S22, S33, S12, S13, S23.
using StressRow = std::array<float, 6>;

// Slot of each component of a field, by its label ("S11" gives 0, ... "S23" gives 5);
// -1 for a component that matches none, which is then not stored.
std::vector<int> stressSlots(const std::vector<std::string>& componentLabels);

// Stores the components of one value (values[0..slots.size())) into row by slot; slots
// of -1 leave the row as it was.
void gatherStressRow(const float* values, const std::vector<int>& slots, StressRow* row);

// q = sum over mode pairs i <= j of M[j][i] * B(i, j), where B is formed in single
// precision from the two rows and doubled for i != j (see the .cpp). rows holds n rows,
// matrix n * n values row by row. 0 for n < 1.
double modalMisesForm(const StressRow* rows, const float* matrix, int n);

}  // namespace odbs
