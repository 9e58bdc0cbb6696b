// Layer runs of a composite shell section: consecutive section points of the section's
// category that lie in the same layer of its layup.
#pragma once

#include <cstdint>
#include <vector>

#include "odb/odb.h"

namespace odbs {

struct LayerRun {
  int32_t layer = 0;       // 1-based layer number of the run
  int32_t points = 0;      // consecutive section points in it
  int32_t properties = 0;  // 1-based layer whose material, thickness and angle go with it
};

// Runs of the layer numbers that the points' descriptions give ("Layer = <n>", numbers
// outside 1..layerCount ignored). A run is paired with the properties of the layer that
// starts the next run; the last run with its own layer. Points naming layers 1, 1, 2, 2, 2,
// 3 give (1, 2, 2), (2, 3, 3), (3, 1, 3).
std::vector<LayerRun> layerRuns(const odb_Sequence<odb_SectionPoint>& points, int layerCount);

}  // namespace odbs
