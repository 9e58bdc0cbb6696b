// Writes steps, frames, field outputs and history (layout in docs/format.md).
#include "odb/results_store.h"

#include <set>
#include <stdexcept>

#include "odb/names.h"

namespace odb {
namespace {

[[noreturn]] void bad(const std::string& what) {
  throw std::invalid_argument("odb writer: " + what);
}

void checkBlock(const FieldOutputData& f, const FieldBlockData& b) {
  std::string where = "block of field '" + f.name + "'";
  if (b.width < 1) bad(where + ": width must be at least 1");
  const size_t n = b.doublePrecision ? b.dataDouble.size() : b.data.size();
  if ((b.doublePrecision ? !b.data.empty() : !b.dataDouble.empty()))
    bad(where + ": values given in the other precision");
  if (n % static_cast<size_t>(b.width) != 0)
    bad(where + ": value count is not a multiple of the width");
  const size_t rows = n / static_cast<size_t>(b.width);
  const size_t conj = b.doublePrecision ? b.conjugateDataDouble.size() : b.conjugateData.size();
  if (f.isComplex ? conj != n : conj != 0)
    bad(where + (f.isComplex ? ": a complex field needs conjugate data of the same size"
                             : ": conjugate data in a real field"));
  for (const auto* v : {&b.elementLabels, &b.nodeLabels, &b.integrationPoints})
    if (!v->empty() && v->size() != rows)
      bad(where + ": a label array does not have one entry per value");
  if (b.csysWidth < 0 || b.localCsys.size() != rows * static_cast<size_t>(b.csysWidth))
    bad(where + ": local coordinate systems do not match the values");
  if (b.position < odb_Enum::UNDEFINED_POSITION || b.position > odb_Enum::ELEMENT_EDGE)
    bad(where + ": unknown position");
  if (b.numberOfElements < 0 || size_t(b.numberOfElements) > rows)
    bad(where + ": bad element count");
}

}  // namespace

ResultsWriter::ResultsWriter(h5::Group root) : root_(std::move(root)) {}

void ResultsWriter::addStep(const StepData& step) {
  for (const auto& n : stepNames_)
    if (n == step.name) bad("duplicate step '" + step.name + "'");
  endStep();
  if (steps_.id() < 0) steps_ = root_.create(name::kSteps);
  step_ = steps_.create(std::to_string(stepNames_.size()));
  stepNames_.push_back(step.name);
  storeStepHeader(step_, step);
  frames_ = step_.create(name::kFrames);
  inStep_ = true;
}

void ResultsWriter::addFrame(const FrameData& frame) {
  if (!inStep_) bad("a frame needs a step first");
  endFrame();
  FrameData f = frame;
  if (f.frameIndex < 0) f.frameIndex = static_cast<int32_t>(frameCatalogue_.size());
  frame_ = frames_.create(std::to_string(frameCatalogue_.size()));
  frameCatalogue_.push_back(f);
  inFrame_ = true;
}

void ResultsWriter::addFieldOutput(const FieldOutputData& field) {
  if (!inFrame_) bad("a field output needs a frame first");
  endField();
  for (const auto& n : fieldNames_)
    if (n == field.name) bad("duplicate field output '" + field.name + "' in one frame");
  if (field.type < odb_Enum::UNKNOWN_DATATYPE || field.type > odb_Enum::TENSOR_2D_SURFACE)
    bad("field output '" + field.name + "' has an unknown type");
  field_ = frame_.create(std::to_string(fieldNames_.size()));
  blocks_ = field_.create(name::kBlocks);
  fieldNames_.push_back(field.name);
  fieldHeader_ = field;
  blockRows_.clear();
  inField_ = true;
}

void ResultsWriter::addFieldBlock(const FieldBlockData& b) {
  if (!inField_) bad("a block needs a field output first");
  checkBlock(fieldHeader_, b);
  blockRows_.push_back(
      storeBlock(blocks_.create(std::to_string(blockRows_.size())), b, fieldHeader_.isComplex));
}

void ResultsWriter::endField() {
  if (!inField_) return;
  FieldOutputData& f = fieldHeader_;
  std::vector<FieldLocationData> locations = f.locations;
  if (locations.empty()) {
    for (const auto& r : blockRows_) {
      FieldLocationData* l = nullptr;
      for (auto& x : locations)
        if (x.position == r.position) l = &x;
      if (!l) l = &locations.emplace_back(FieldLocationData{r.position, {}});
      bool seen = r.sectionPoint == -1;
      for (const auto& p : l->sectionPoints) seen = seen || p.number == r.sectionPoint;
      if (!seen) l->sectionPoints.push_back({r.sectionPoint, r.sectionPointDescription});
    }
  }
  storeFieldHeader(field_, f, locations);
  storeBlockCatalogue(field_, blockRows_);
  blockRows_.clear();
  blockRows_.shrink_to_fit();
  inField_ = false;
}

void ResultsWriter::endFrame() {
  if (!inFrame_) return;
  endField();
  frame_.writeStrings(name::kFieldNames, fieldNames_);
  fieldNames_.clear();
  inFrame_ = false;
}

void ResultsWriter::addHistoryRegion(const HistoryRegionData& r) {
  if (!inStep_) bad("a history region needs a step first");
  if (historyNames_.count(r.name)) bad("duplicate history region '" + r.name + "'");
  std::set<std::string> outputs;
  for (const auto& o : r.outputs) {
    if (!outputs.insert(o.name).second) bad("duplicate history output '" + o.name + "'");
    if (o.width < 2 || o.width > 1024 || o.data.size() % size_t(o.width) != 0)
      bad("history output '" + o.name + "' has a bad width (2 to 1024 values per sample)");
    if (!o.conjugateData.empty() && o.conjugateData.size() != o.data.size())
      bad("history output '" + o.name + "': conjugate data does not match the data");
    if (!o.frameValues.empty() && o.frameValues.size() != o.samples())
      bad("history output '" + o.name + "': frame values do not match the samples");
  }
  const SetData& set = r.point.region;
  int64_t members = 0;
  for (int64_t c : set.counts) members += c < 0 ? -1 - members : c;
  if (set.counts.size() != set.instanceNames.size() || members != int64_t(set.labels.size()) ||
      (set.type == odb_Enum::SURFACE_SET && set.faces.size() != set.labels.size()))
    bad("history region '" + r.name + "': its region set is inconsistent");
  history_.add(r);
  historyNames_.insert(r.name);
}

void ResultsWriter::endStep() {
  if (!inStep_) return;
  endFrame();
  storeFrameCatalogue(step_, frameCatalogue_);
  history_.store(step_);
  history_.clear();
  historyNames_.clear();
  frameCatalogue_.clear();
  inStep_ = false;
}

void ResultsWriter::finish() {
  endStep();
  if (!stepNames_.empty()) steps_.writeStrings(name::kNames, stepNames_);
}

}  // namespace odb
