// Writers of the older format versions that the library upgrades, for tests of the
// upgrade path. Version 2 keeps one group per set (set lists of numbered set groups) and
// one group per history region and output, with sample times in single precision.
// Version 1 is version 2 with element connectivity as a padded table (elements by the
// largest node count, unused places -1) instead of offsets and a flat array.
#pragma once

#include <string>
#include <vector>

#include "odb/model_data.h"
#include "odb/results_data.h"

namespace odbtest {

// Version 3: the current layout without the placements of section assignments.
void writeVersion3(const std::string& path, const odb::ModelData& m);

void writeVersion1(const std::string& path, const odb::ModelData& m);

// The model and one step of the given history regions (no frames), in version 2.
void writeVersion2(const std::string& path, const odb::ModelData& m, const odb::StepData& step,
                   const std::vector<odb::HistoryRegionData>& history);

}  // namespace odbtest
