// History of one step stored column-wise (format version 3): a catalogue of regions with
// their points, and for every distinct output (name, description, type, width, complex)
// one column holding the samples of that output for every region that has it. Sample
// times are kept once per distinct series of times in double precision. One region's
// history is read with a few partial reads, without reading the other regions'.
#pragma once

#include <map>
#include <string>
#include <tuple>
#include <unordered_map>
#include <vector>

#include "odb/format.h"
#include "odb/results.h"
#include "odb/results_data.h"

namespace odb {

// Gathers the history regions of one step as they come and stores them when the step
// ends. Regions must have been checked (unique names, consistent sample arrays).
class HistoryColumns {
 public:
  void add(const HistoryRegionData& r);
  // Writes the step's history group (an empty catalogue when no region was added).
  void store(const h5::Group& step) const;
  void clear() { *this = HistoryColumns(); }

 private:
  struct Column {
    std::string name, description;
    int32_t type = 0, width = 2;
    bool complex = false;
    std::vector<float> values, conjugates;  // width - 1 values per sample
  };
  int64_t timesOf(const HistoryOutputData& o);

  std::vector<std::string> names_, descriptions_, elementTypes_, spDescriptions_, instances_;
  std::vector<int32_t> positions_, nodes_, elements_, points_, sectionPoints_, regionSets_;
  std::vector<SetData> sets_;
  std::vector<int64_t> outputOffsets_{0};
  std::vector<int32_t> outputColumns_;
  std::vector<int64_t> outputSamples_, outputFirst_, outputTimes_;
  std::vector<Column> columns_;
  std::map<std::tuple<std::string, std::string, int32_t, int32_t, bool>, int32_t> columnIndex_;
  std::vector<double> times_;
  std::unordered_map<uint64_t, std::vector<int64_t>> timeIndex_;  // hash -> starts
};

// The history regions of the step group at stepPath (format version 3); the catalogue is
// read at once, each output's samples on first use.
odb_HistoryRegionRepository loadHistoryColumns(const SourcePtr& src, const std::string& stepPath);

}  // namespace odb
