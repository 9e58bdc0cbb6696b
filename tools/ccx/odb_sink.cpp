#include "tools/ccx/odb_sink.h"

#include <algorithm>
#include <map>

#include "tools/ccx/model_import.h"

namespace odbs::ccx {
namespace {

std::string sectionPointDescription(int point) {
  int layer = (point + 1) / 2;
  return "Layer = " + std::to_string(layer) + (point % 2 ? ", bottom" : ", top");
}

}  // namespace

OdbSink::OdbSink(const Deck& deck, odb::Writer& writer) : deck_(deck), writer_(writer) {
  elementIndex_.reserve(deck.elements.size());
  const std::vector<int32_t>& labels = deck.elements.labels();
  for (size_t i = 0; i < labels.size(); ++i) elementIndex_.emplace(labels[i], i);
}

void OdbSink::expandedMesh(const ExpandedMesh& mesh) {
  odb::EntityWriter part = writer_.addInstance(kExpandedInstanceName);
  part.addNodes(mesh.nodeLabels, mesh.coordinates);
  for (const ExpandedMesh::Element& e : mesh.elements) part.addElement(e.type, e.label, e.nodes);
}

void OdbSink::step(int, const PlannedStep& step) {
  odb::StepData data;
  data.name = step.step->name;
  data.description = step.step->description;
  data.procedure = "*" + step.step->procedure;
  data.domain = step.domain;
  data.totalTime = step.startTime;
  domain_ = step.domain;
  writer_.writeModel();  // done at meshRead unless the result file has no mesh
  writer_.addStep(data);
}

void OdbSink::frame(int, const PlannedFrame& frame, std::vector<PointField>&& points) {
  odb::FrameData data;
  data.domain = domain_;
  data.mode = frame.mode;
  data.frameValue = frame.frameValue;
  data.frequency = domain_ == odb_Enum::FREQUENCY ? frame.frameValue : 0.0;
  data.description = frame.description;
  writer_.addFrame(data);
  points_ = std::move(points);
  fieldNames_.clear();
}

void OdbSink::field(NodalField&& field) {
  if (!fieldNames_.insert(field.part.name).second) return;
  const PointField* p = nullptr;
  for (const PointField& f : points_) {
    if (f.name != field.part.name) continue;
    if (f.type == field.part.type && f.labels == field.part.labels) p = &f;
    break;
  }
  addField(&field, p);
}

void OdbSink::frameEnd() {
  for (const PointField& p : points_) {
    if (fieldNames_.insert(p.name).second) addField(nullptr, &p);
  }
  points_.clear();
  fieldNames_.clear();
}

void OdbSink::addField(NodalField* n, const PointField* p) {
  odb::FieldOutputData field;
  field.name = n ? n->part.name : p->name;
  field.description = n ? n->part.description : p->description;
  field.type = n ? n->part.type : p->type;
  field.componentLabels = n ? n->part.labels : p->labels;
  field.isComplex = (n && !n->imaginary.empty()) || (p && !p->imaginary.empty());
  writer_.addFieldOutput(field);
  // The nodal values of one instance as their block; a complex field without imaginary
  // parts gets zeros.
  auto addNodal = [&](const char* instance, std::vector<int32_t>& nodes, std::vector<float>& values,
                      std::vector<float>& imaginary) {
    odb::FieldBlockData block;
    block.instance = instance;
    block.position = odb_Enum::NODAL;
    block.type = field.type;
    block.width = static_cast<int32_t>(std::max<size_t>(1, field.componentLabels.size()));
    block.nodeLabels = std::move(nodes);
    block.data = std::move(values);
    if (field.isComplex) {
      block.conjugateData =
          imaginary.empty() ? std::vector<float>(block.data.size(), 0.f) : std::move(imaginary);
    }
    writer_.addFieldBlock(block);
  };
  if (n) addNodal(kInstanceName, n->nodes, n->values, n->imaginary);
  if (n && !n->expandedNodes.empty()) {
    addNodal(kExpandedInstanceName, n->expandedNodes, n->expandedValues, n->expandedImaginary);
  }
  if (p) addPointBlocks(*p, field.isComplex);
}

void OdbSink::addPointBlocks(const PointField& field, bool complex) {
  // One block per element type and section point, rows in the printed order.
  const size_t width = std::max<size_t>(1, field.labels.size());
  std::map<std::pair<std::string, int32_t>, std::vector<size_t>> groups;
  std::vector<std::pair<std::string, int32_t>> keys;
  for (size_t r = 0; r < field.elements.size(); ++r) {
    uint32_t index = elementIndex_.find(field.elements[r]);
    std::string type = index == LabelIndex::kNone ? std::string() : deck_.elements[index].type;
    auto key = std::make_pair(type, field.sectionPoints[r]);
    auto [g, inserted] = groups.emplace(key, std::vector<size_t>());
    if (inserted) keys.push_back(key);
    g->second.push_back(r);
  }
  for (const auto& key : keys) {
    const std::vector<size_t>& rows = groups[key];
    odb::FieldBlockData block;
    block.instance = kInstanceName;
    block.elementType = key.first;
    block.position = odb_Enum::INTEGRATION_POINT;
    block.type = field.type;
    block.width = static_cast<int32_t>(width);
    if (key.second > 0) block.sectionPoint = {key.second, sectionPointDescription(key.second)};
    std::set<int32_t> elements;
    for (size_t r : rows) {
      block.elementLabels.push_back(field.elements[r]);
      block.integrationPoints.push_back(field.integrationPoints[r]);
      elements.insert(field.elements[r]);
      for (size_t c = 0; c < width; ++c) {
        block.data.push_back(field.values[r * width + c]);
        if (complex) {
          block.conjugateData.push_back(field.imaginary.empty() ? 0.f
                                                                : field.imaginary[r * width + c]);
        }
      }
    }
    block.numberOfElements = static_cast<int32_t>(elements.size());
    writer_.addFieldBlock(block);
  }
}

void OdbSink::history(int, const std::vector<HistoryRegionData>& regions) {
  for (const HistoryRegionData& r : regions) {
    odb::HistoryRegionData region;
    region.name = r.name;
    region.point.position = r.position;
    region.point.instance = kInstanceName;
    if (r.position == odb_Enum::NODAL) {
      region.description = "Output at node " + std::to_string(r.node);
      region.point.nodeLabel = r.node;
    } else if (r.position == odb_Enum::WHOLE_REGION) {
      region.description = std::string("Output totalled over ") +
                           (r.elementSet ? "element" : "node") + " set " + r.set;
      region.point.region.name = r.set;
      region.point.region.type = r.elementSet ? odb_Enum::ELEMENT_SET : odb_Enum::NODE_SET;
      if (const LabelSet* set = r.elementSet ? deck_.elementSet(r.set) : deck_.nodeSet(r.set)) {
        region.point.region.addMembers(kInstanceName, set->labels);
      }
    } else if (r.position == odb_Enum::WHOLE_MODEL) {
      region.description = "Output of the whole model";
    } else {
      region.description = "Contact output at face " + std::to_string(r.face) + " of element " +
                           std::to_string(r.element);
      region.point.elementLabel = r.element;
      region.point.integrationPoint = r.integrationPoint;
      uint32_t index = elementIndex_.find(r.element);
      if (index != LabelIndex::kNone) region.point.elementType = deck_.elements[index].type;
    }
    for (const auto& [name, o] : r.outputs) {
      odb::HistoryOutputData output;
      output.name = name;
      output.description = o.description;
      output.type = odb_Enum::SCALAR;
      output.width = 2;
      output.frameValues = o.frameValues;  // kept in double precision beside the samples
      for (size_t i = 0; i < o.values.size(); ++i) {
        output.data.push_back(static_cast<float>(o.frameValues[i]));
        output.data.push_back(o.values[i]);
      }
      if (!o.imaginary.empty()) {
        for (size_t i = 0; i < o.values.size(); ++i) {
          output.conjugateData.push_back(static_cast<float>(o.frameValues[i]));
          output.conjugateData.push_back(i < o.imaginary.size() ? o.imaginary[i] : 0.f);
        }
      }
      region.outputs.push_back(std::move(output));
    }
    writer_.addHistoryRegion(region);
  }
}

}  // namespace odbs::ccx
