// Writes steps, frames, field outputs and history (layout in docs/format.md).
#include "odb/results_store.h"

#include <set>
#include <stdexcept>

#include "odb/model_store.h"

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

void storeLocations(const h5::Group& g, const std::vector<FieldLocationData>& locations) {
  std::vector<int32_t> positions, counts, numbers;
  std::vector<std::string> descriptions;
  for (const auto& l : locations) {
    positions.push_back(l.position);
    counts.push_back(static_cast<int32_t>(l.sectionPoints.size()));
    for (const auto& p : l.sectionPoints) {
      numbers.push_back(p.number);
      descriptions.push_back(p.description);
    }
  }
  g.write("location_positions", positions);
  g.write("location_point_counts", counts);
  g.write("location_point_numbers", numbers);
  g.writeStrings("location_point_descriptions", descriptions);
}

}  // namespace

ResultsWriter::ResultsWriter(h5::Group root) : root_(std::move(root)) {}

void ResultsWriter::addStep(const StepData& step) {
  for (const auto& n : stepNames_)
    if (n == step.name) bad("duplicate step '" + step.name + "'");
  endStep();
  if (steps_.id() < 0) steps_ = root_.create("steps");
  step_ = steps_.create(std::to_string(stepNames_.size()));
  stepNames_.push_back(step.name);
  step_.setString("name", step.name);
  step_.setString("description", step.description);
  step_.setString("procedure", step.procedure);
  step_.setInt("domain", step.domain);
  step_.setDouble("total_time", step.totalTime);
  frames_ = step_.create("frames");
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
  blocks_ = field_.create("blocks");
  fieldNames_.push_back(field.name);
  fieldHeader_ = field;
  blockRows_.clear();
  inField_ = true;
}

void ResultsWriter::addFieldBlock(const FieldBlockData& b) {
  if (!inField_) bad("a block needs a field output first");
  checkBlock(fieldHeader_, b);
  h5::Group g = blocks_.create(std::to_string(blockRows_.size()));
  const hsize_t rows = static_cast<hsize_t>(b.rows()), w = static_cast<hsize_t>(b.width);
  int32_t arrays = 0;
  if (b.doublePrecision) {
    g.write("data", b.dataDouble.data(), {rows, w});
    if (fieldHeader_.isComplex) g.write("conjugate_data", b.conjugateDataDouble.data(), {rows, w});
  } else {
    g.write("data", b.data.data(), {rows, w});
    if (fieldHeader_.isComplex) g.write("conjugate_data", b.conjugateData.data(), {rows, w});
  }
  if (fieldHeader_.isComplex) arrays |= kConjugate;
  if (!b.elementLabels.empty())
    g.write("element_labels", b.elementLabels), arrays |= kElementLabels;
  if (!b.nodeLabels.empty()) g.write("node_labels", b.nodeLabels), arrays |= kNodeLabels;
  if (!b.integrationPoints.empty())
    g.write("integration_points", b.integrationPoints), arrays |= kIntegrationPoints;
  if (b.csysWidth > 0) {
    g.write("local_csys", b.localCsys.data(), {rows, static_cast<hsize_t>(b.csysWidth)});
    arrays |= kLocalCsys;
  }
  // Readers step through element labels with a stride of rows / numberOfElements, so a
  // block with element labels always gets a count (the distinct labels when not given).
  int32_t elementCount = b.numberOfElements;
  if (elementCount == 0 && !b.elementLabels.empty())
    elementCount = static_cast<int32_t>(
        std::set<int32_t>(b.elementLabels.begin(), b.elementLabels.end()).size());
  blockRows_.push_back({b.position, b.type, b.width, b.doublePrecision ? 1 : 0,
                        b.sectionPoint.number, elementCount, b.csysWidth, arrays, b.rows(),
                        b.sectionPoint.description, b.elementType, b.instance});
}

void ResultsWriter::endField() {
  if (!inField_) return;
  FieldOutputData& f = fieldHeader_;
  field_.setString("name", f.name);
  field_.setString("description", f.description);
  field_.setInt("type", f.type);
  field_.setInt("complex", f.isComplex ? 1 : 0);
  field_.setInt("matrix_order", f.matrixOrder);
  field_.writeStrings("component_labels", f.componentLabels);
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
  storeLocations(field_, locations);
  std::vector<int32_t> pos, type, width, prec, sp, count, csys, arrays;
  std::vector<int64_t> rows;
  std::vector<std::string> spd, et, inst;
  for (const auto& r : blockRows_) {
    pos.push_back(r.position), type.push_back(r.type), width.push_back(r.width);
    prec.push_back(r.precision), sp.push_back(r.sectionPoint), count.push_back(r.elementCount);
    csys.push_back(r.csysWidth), arrays.push_back(r.arrays), rows.push_back(r.rows);
    spd.push_back(r.sectionPointDescription), et.push_back(r.elementType),
        inst.push_back(r.instance);
  }
  field_.write("block_positions", pos);
  field_.write("block_types", type);
  field_.write("block_widths", width);
  field_.write("block_precision", prec);
  field_.write("block_section_points", sp);
  field_.writeStrings("block_section_point_descriptions", spd);
  field_.write("block_element_counts", count);
  field_.write("block_csys_widths", csys);
  field_.write("block_arrays", arrays);
  field_.write("block_rows", rows);
  field_.writeStrings("block_element_types", et);
  field_.writeStrings("block_instances", inst);
  blockRows_.clear();
  blockRows_.shrink_to_fit();
  inField_ = false;
}

void ResultsWriter::endFrame() {
  if (!inFrame_) return;
  endField();
  frame_.writeStrings("field_names", fieldNames_);
  fieldNames_.clear();
  inFrame_ = false;
}

void ResultsWriter::addHistoryRegion(const HistoryRegionData& r) {
  if (!inStep_) bad("a history region needs a step first");
  for (const auto& n : historyNames_)
    if (n == r.name) bad("duplicate history region '" + r.name + "'");
  std::set<std::string> outputs;
  for (const auto& o : r.outputs) {
    if (!outputs.insert(o.name).second) bad("duplicate history output '" + o.name + "'");
    if (o.width < 1 || o.data.size() % size_t(o.width) != 0)
      bad("history output '" + o.name + "' has a bad width");
    if (!o.conjugateData.empty() && o.conjugateData.size() != o.data.size())
      bad("history output '" + o.name + "': conjugate data does not match the data");
  }
  h5::Group history = step_.has("history") ? step_.open("history") : step_.create("history");
  h5::Group g = history.create(std::to_string(historyNames_.size()));
  historyNames_.push_back(r.name);
  const HistoryPointData& p = r.point;
  g.setString("name", r.name);
  g.setString("description", r.description);
  g.setInt("position", p.position);
  g.setInt("node_label", p.nodeLabel);
  g.setInt("element_label", p.elementLabel);
  g.setString("element_type", p.elementType);
  g.setInt("integration_point", p.integrationPoint);
  g.setInt("section_point", p.sectionPoint.number);
  g.setString("section_point_description", p.sectionPoint.description);
  g.setString("instance", p.instance);
  storeSet(g.create("region"), p.region);
  std::vector<std::string> names;
  h5::Group og = g.create("outputs");
  for (size_t i = 0; i < r.outputs.size(); ++i) {
    const HistoryOutputData& o = r.outputs[i];
    names.push_back(o.name);
    h5::Group x = og.create(std::to_string(i));
    x.setString("description", o.description);
    x.setInt("type", o.type);
    const hsize_t w = static_cast<hsize_t>(o.width);
    x.write("data", o.data.data(), {o.data.size() / w, w});
    x.write("conjugate_data", o.conjugateData.data(), {o.conjugateData.size() / w, w});
  }
  g.writeStrings("output_names", names);
}

void ResultsWriter::endStep() {
  if (!inStep_) return;
  endFrame();
  std::vector<int32_t> index, domain, mode;
  std::vector<double> value, frequency;
  std::vector<std::string> description;
  for (const auto& f : frameCatalogue_) {
    index.push_back(f.frameIndex), domain.push_back(f.domain), mode.push_back(f.mode);
    value.push_back(f.frameValue), frequency.push_back(f.frequency),
        description.push_back(f.description);
  }
  step_.write("frame_index", index);
  step_.write("frame_domain", domain);
  step_.write("frame_mode", mode);
  step_.write("frame_value", value);
  step_.write("frame_frequency", frequency);
  step_.writeStrings("frame_description", description);
  h5::Group history = step_.has("history") ? step_.open("history") : step_.create("history");
  history.writeStrings("names", historyNames_);
  historyNames_.clear();
  frameCatalogue_.clear();
  inStep_ = false;
}

void ResultsWriter::finish() {
  endStep();
  if (!stepNames_.empty()) steps_.writeStrings("names", stepNames_);
}

}  // namespace odb
