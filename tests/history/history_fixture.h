// Building the history and contact databases of the tests: in memory (steps, regions and
// outputs made directly, with loaders that can throw) and on disk through the writer.
#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <utility>
#include <vector>

#include "odb/odb.h"
#include "odb/writer.h"
#include "tests/support/frames.h"
#include "tests/support/written_database.h"

namespace odbs::test {

// A history output whose samples load from data (width floats per sample).
odb_HistoryOutput historyOutput(const std::string& name, std::vector<float> data,
                                std::vector<float> conjugate = {}, int width = 2);
// A history output whose samples cannot be read: loading them throws.
odb_HistoryOutput unreadableOutput(const std::string& name);

odb::HistoryPointData pointAt(int position, int node = -1, int element = -1, int ip = 0,
                              int sectionPoint = -1, const std::string& set = "");

odb_HistoryRegion historyRegion(const std::string& name, const odb::HistoryPointData& point,
                                const std::vector<odb_HistoryOutput>& outputs);
// A region whose output repository cannot be read.
odb_HistoryRegion unreadableRegion(const std::string& name);

odb_Step historyStep(const std::string& name, int domain,
                     const std::vector<odb_HistoryRegion>& regions);

}  // namespace odbs::test
