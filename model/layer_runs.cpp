#include "model/layer_runs.h"

#include <cstdlib>
#include <cstring>

namespace odbs {

namespace {

constexpr char kLayerMarker[] = "Layer =";

// The layer a section point names, or 0 when it names none or one outside the layup.
int32_t layerOf(const odb_SectionPoint& point, int layerCount) {
  size_t at = point.description().find(kLayerMarker);
  if (at == std::string::npos) return 0;
  int n = std::atoi(point.description().c_str() + at + sizeof kLayerMarker - 1);
  return n >= 1 && n <= layerCount ? n : 0;
}

}  // namespace

std::vector<LayerRun> layerRuns(const odb_Sequence<odb_SectionPoint>& points, int layerCount) {
  std::vector<LayerRun> runs;
  for (const odb_SectionPoint& p : points) {
    int32_t layer = layerOf(p, layerCount);
    if (layer == 0) continue;
    if (!runs.empty() && runs.back().layer == layer) {
      ++runs.back().points;
      continue;
    }
    if (!runs.empty()) runs.back().properties = layer;
    runs.push_back({layer, 1, layer});
  }
  return runs;
}

}  // namespace odbs
