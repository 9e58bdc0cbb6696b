// Storing and loading the results side of a database in the layout of docs/format.md,
// each table's store and load side by side: store_steps.cpp (steps and frame catalogues),
// store_fields.cpp (field outputs, block catalogues, block arrays), store_history.cpp
// (history). Loaders check what they read and throw std::runtime_error naming the damaged
// object. ResultsWriter (results_store.cpp) drives the store functions as results come.
#pragma once

#include <functional>
#include <set>
#include <string>
#include <vector>

#include "odb/format.h"
#include "odb/history_columns.h"
#include "odb/results.h"
#include "odb/results_data.h"

namespace odb {

// One row of a field output's block catalogue.
struct BlockRow {
  int32_t position, type, width, precision, sectionPoint, elementCount, csysWidth, arrays;
  int64_t rows;
  std::string sectionPointDescription, elementType, instance;
};

void storeStepHeader(const h5::Group& step, const StepData& s);
StepData loadStepHeader(const h5::Group& step, const std::string& stepName);
void storeFrameCatalogue(const h5::Group& step, const std::vector<FrameData>& frames);
std::vector<FrameData> loadFrameCatalogue(const h5::Group& step);

void storeFieldHeader(const h5::Group& field, const FieldOutputData& f,
                      const std::vector<FieldLocationData>& locations);
FieldOutputData loadFieldHeader(const h5::Group& field, const std::string& fieldName);
void storeBlockCatalogue(const h5::Group& field, const std::vector<BlockRow>& blocks);
std::vector<BlockRow> loadBlockCatalogue(const h5::Group& field);
// Writes the arrays of one block into its group and returns its catalogue row.
BlockRow storeBlock(const h5::Group& block, const FieldBlockData& b, bool complex);
FieldBlockData loadBlock(const h5::Group& block, const BlockRow& row, bool complex);
// The field outputs of the frame group at framePath; blocks load on first use.
odb_FieldOutputRepository loadFieldOutputs(const SourcePtr& src, const std::string& framePath);

// The history regions of the step group at stepPath in any format version; outputs load
// on first use.
odb_HistoryRegionRepository loadHistory(const SourcePtr& src, const std::string& stepPath);

// The step catalogue (steps with their frame catalogues); empty when the file holds no
// steps. Field outputs and history load lazily from src.
odb_StepRepository loadSteps(const SourcePtr& src);

// Writes results into an open file as they come: steps, then per step its frames (each
// with its field outputs, block by block) and history regions. Only the catalogue of the
// current step and the block catalogue of the current field output stay in memory; block
// arrays go to the file at once. The file is not flushed per frame: it is a temporary
// file nobody reads before the rename, and flushing every frame made writing 7 times
// slower (HDF5's metadata cache bounds its own memory).
// Calls out of order (a frame without a step, a block without a field output) and
// inconsistent blocks throw std::invalid_argument. finish() completes the file's results.
class ResultsWriter {
 public:
  explicit ResultsWriter(h5::Group root);
  void addStep(const StepData& step);
  void addFrame(const FrameData& frame);
  void addFieldOutput(const FieldOutputData& field);
  void addFieldBlock(const FieldBlockData& block);
  void addHistoryRegion(const HistoryRegionData& region);
  void finish();

 private:
  void endField();
  void endFrame();
  void endStep();

  h5::Group root_, steps_, step_, frames_, frame_, field_, blocks_;
  std::vector<std::string> stepNames_, fieldNames_;
  std::set<std::string> historyNames_;
  HistoryColumns history_;
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
