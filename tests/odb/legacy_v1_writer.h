// Writer of format version 1, the oldest version the library upgrades. Version 1 stores
// element connectivity as a padded table (elements by the largest node count, unused
// places -1) instead of offsets and a flat array; everything else is as in version 2.
#pragma once

#include <string>

#include "odb/model_data.h"

namespace odbtest {

void writeVersion1(const std::string& path, const odb::ModelData& m);

}  // namespace odbtest
