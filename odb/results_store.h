// Storing and loading the results side of a database (steps, frames, field output,
// history) in the layout of docs/format.md. Loaders check what they read and throw
// std::runtime_error naming the damaged object.
#pragma once

#include <functional>
#include <string>
#include <vector>

#include "odb/format.h"
#include "odb/results.h"
#include "odb/results_data.h"

namespace odb {

// The step catalogue (steps with their frame catalogues); empty when the file holds no
// steps. Field outputs and history load lazily from src.
odb_StepRepository loadSteps(const SourcePtr& src);

// Writes results into an open file as they come: steps, then per step its frames (each
// with its field outputs, block by block) and history regions. Only the catalogue of the
// current step and the block catalogue of the current field output stay in memory.
// Calls out of order (a frame without a step, a block without a field output) and
// inconsistent blocks throw std::invalid_argument. finish() completes the file's results.
class ResultsWriter {
 public:
  ResultsWriter(h5::Group root, std::function<void()> flush);
  void addStep(const StepData& step);
  void addFrame(const FrameData& frame);
  void addFieldOutput(const FieldOutputData& field);
  void addFieldBlock(const FieldBlockData& block);
  void addHistoryRegion(const HistoryRegionData& region);
  void finish();

 private:
  struct BlockRow {
    int32_t position, type, width, precision, sectionPoint, elementCount, csysWidth, arrays;
    int64_t rows;
    std::string sectionPointDescription, elementType, instance;
  };
  void endField();
  void endFrame();
  void endStep();

  h5::Group root_, steps_, step_, frames_, frame_, field_, blocks_;
  std::function<void()> flush_;
  std::vector<std::string> stepNames_, fieldNames_, historyNames_;
  std::vector<FrameData> frameCatalogue_;
  FieldOutputData fieldHeader_;
  std::vector<BlockRow> blockRows_;
  bool inStep_ = false, inFrame_ = false, inField_ = false;
};

// Bits of the per-block "block_arrays" flags: which optional arrays a block has.
enum BlockArrays : int32_t {
  kElementLabels = 1,
  kNodeLabels = 2,
  kIntegrationPoints = 4,
  kConjugate = 8,
  kLocalCsys = 16,
};

}  // namespace odb
