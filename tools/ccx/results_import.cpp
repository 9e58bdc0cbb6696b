#include "tools/ccx/results_import.h"

#include <algorithm>

#include "tools/ccx/parse_error.h"
#include "tools/ccx/text.h"

namespace odbs::ccx {
namespace {

// Puts the columns of rows rows of values (source.size() wide) in place in the order that
// source names: column c of a row becomes what its column source[c] held. The common widths
// are spelt out for the compiler (stresses at 200,000 nodes: 2.3 ms in a loop of any width,
// 0.7 ms so).
template <size_t kWidth>
void permuteRows(float* values, size_t rows, const std::vector<int>& source) {
  int from[kWidth];
  std::copy(source.begin(), source.end(), from);
  float row[kWidth];
  for (float* v = values; v < values + rows * kWidth; v += kWidth) {
    for (size_t c = 0; c < kWidth; ++c) row[c] = v[from[c]];
    for (size_t c = 0; c < kWidth; ++c) v[c] = row[c];
  }
}

void permuteColumns(float* values, size_t rows, const std::vector<int>& source) {
  if (source.size() == 3) return permuteRows<3>(values, rows, source);
  if (source.size() == 6) return permuteRows<6>(values, rows, source);
  const size_t width = source.size();
  std::vector<float> row(width);
  for (float* v = values; v < values + rows * width; v += width) {
    for (size_t c = 0; c < width; ++c) row[c] = v[source[c]];
    std::copy(row.begin(), row.end(), v);
  }
}

}  // namespace

ResultImport::ResultImport(const Deck& deck, const DatFile& prints, const std::string& resultPath,
                           ResultSink& sink, Warnings& warnings)
    : deck_(deck),
      prints_(prints),
      path_(resultPath),
      sink_(sink),
      warnings_(warnings),
      plan_(deck),
      placer_(prints.blocks),
      shells_(shellLayersOf(deck)),
      expansion_(deck, resultPath),
      history_(deck.steps.size()) {
  deckNodes_.reserve(deck.nodes.size());
  for (const Node& n : deck.nodes) deckNodes_.insert(n.label);
  // Beam types decided once per type, not per element.
  const ElementList& elements = deck.elements;
  std::vector<char> beam;
  for (const std::string& type : elements.typeNames())
    beam.push_back(startsWith(type, "B3") || startsWith(type, "B2"));
  if (std::find(beam.begin(), beam.end(), 1) != beam.end()) {
    for (size_t i = 0; i < elements.size(); ++i) {
      if (!beam[elements.typeNumbers()[i]]) continue;
      for (int32_t n : elements[i].nodes) beamNodes_.insert(n);
    }
  }
  // An element output request with SECTION FORCES holds until a later step asks for
  // element output without it.
  bool sectionForces = false;
  for (const Step& step : deck.steps) {
    for (const OutputRequest& r : step.outputs) {
      if (r.keyword == "EL FILE" || r.keyword == "ELEMENT OUTPUT") {
        sectionForces = r.parameters.count("SECTION FORCES") > 0;
      }
    }
    sectionForces_.push_back(sectionForces);
  }
}

void ResultImport::nodes(std::vector<FrdNode>&& nodes) {
  expansion_.addNodes(nodes);
}

void ResultImport::nodesEnd() {
  expansion_.finishNodes(warnings_);
}

void ResultImport::elements(std::vector<FrdElement>&& elements) {
  expansion_.finishNodes(warnings_);
  expansion_.addElements(elements);
}

void ResultImport::elementsEnd() {
  expansion_.finishNodes(warnings_);
  expansion_.finishElements(warnings_);
  if (!expansion_.mesh().empty()) sink_.expandedMesh(expansion_.mesh());
  sink_.meshRead();
}

void ResultImport::openStepsUpTo(int step) {
  while (stepsOpened_ <= step) {
    if (stepsOpened_ > 0) {
      sink_.history(stepsOpened_ - 1, history_[stepsOpened_ - 1].regions());
    }
    sink_.step(stepsOpened_, plan_.steps()[stepsOpened_]);
    ++stepsOpened_;
  }
}

void ResultImport::block(FrdBlock&& block) {
  expansion_.finishNodes(warnings_);
  FramePlan::Place place = plan_.frameOf(block);
  if (place.step < openStep_) {
    throw InputError(block.location + ": result block " + block.name + " of step " +
                     std::to_string(block.step) + " follows results of step " +
                     std::to_string(openStep_ + 1));
  }
  if (place.isNew) {
    closeFrame();
    openStepsUpTo(place.step);
    openFrame(place.step, place.frame);
  }
  std::vector<FieldPart> parts = fieldsOfBlock(block.name, block.storedCount());
  if (parts.empty()) {
    warnings_.warn("frd-result:" + block.name,
                   block.location + ": result block " + block.name + " is not imported; skipped");
    return;
  }
  const bool forces = parts.front().name == "RF";
  Rows rows = rowsOf(block, forces);
  if (rows.lost > 0) {
    warnings_.warn("frd-nodes", block.location + ": values of " + block.name + " at " +
                                    std::to_string(rows.lost) + " nodes (first " +
                                    std::to_string(rows.firstLost) +
                                    ") that neither the deck nor an expanded element has are "
                                    "not imported");
  }
  if (block.name == "CONTACT") {
    addContactHistory(block, parts, rows, plan_.steps()[place.step].frames[place.frame].frameValue,
                      history_[place.step]);
    frameHasContact_ = true;
  }
  if (parts.front().name == "S" && sectionForces_[place.step] && !beamNodes_.empty()) {
    // The stresses at beam nodes are the beam's section forces and moments.
    Rows beams, others = rows;
    others.deck.clear();
    for (size_t r : rows.deck) {
      (beamNodes_.count(block.nodes[r]) ? beams : others).deck.push_back(r);
    }
    addParts(sectionForceParts(parts.front().imaginary), beams, block, false);
    rows = std::move(others);
  }
  if (!takeWhole(parts, rows, block)) addParts(parts, rows, block, forces);
  if (!holdFields_) handOverFields();
}

void ResultImport::handOverFields() {
  for (NodalField& field : fields_) sink_.field(std::move(field));
  fields_.clear();
}

bool ResultImport::takeWhole(const std::vector<FieldPart>& parts, const Rows& rows,
                             FrdBlock& block) {
  // The common case of a large model: one field of every stored column at the deck's
  // nodes, in file order. The block's arrays become the field's, its columns put in the
  // field's order in place, instead of being copied.
  if (parts.size() != 1 || parts.front().imaginary || !rows.mapped.empty() ||
      !rows.expanded.empty() || rows.deck.size() != block.nodes.size()) {
    return false;
  }
  const FieldPart& part = parts.front();
  const size_t width = part.source.size();
  if (static_cast<int>(width) != block.storedCount()) return false;
  std::vector<bool> used(width, false);
  for (int s : part.source) {
    if (s < 0 || static_cast<size_t>(s) >= width || used[s]) return false;
    used[s] = true;
  }
  bool identity = true;
  for (size_t c = 0; c < width; ++c) identity = identity && part.source[c] == static_cast<int>(c);
  if (!identity) permuteColumns(block.values.data(), block.nodes.size(), part.source);
  NodalField field;
  field.part = part;
  field.nodes = std::move(block.nodes);
  field.values = std::move(block.values);
  fields_.push_back(std::move(field));
  return true;
}

ResultImport::Rows ResultImport::rowsOf(const FrdBlock& block, bool forces) const {
  Rows rows;
  rows.deck.reserve(block.nodes.size());
  LabelIndex expandedRow;  // expanded node label -> its row
  for (size_t r = 0; r < block.nodes.size(); ++r) {
    int32_t label = block.nodes[r];
    if (deckNodes_.count(label)) {
      rows.deck.push_back(r);
    } else if (expansion_.isExpandedNode(label)) {
      rows.expanded.push_back(r);
      expandedRow.emplace(label, r);
    } else if (rows.lost++ == 0) {
      rows.firstLost = label;
    }
  }
  if (expandedRow.empty()) return rows;
  LabelBits direct;
  for (size_t r : rows.deck) direct.insert(block.nodes[r]);
  for (const Expansion::Source& s : expansion_.sources()) {
    if (direct.count(s.deckNode)) continue;  // the file has the deck node's own value
    std::vector<size_t> from;
    for (int32_t label : forces ? s.all : s.mean) {
      uint32_t row = expandedRow.find(label);
      if (row == LabelIndex::kNone) break;
      from.push_back(row);
    }
    if (from.size() == (forces ? s.all : s.mean).size()) {
      rows.mapped.emplace_back(s.deckNode, std::move(from));
    }
  }
  return rows;
}

void ResultImport::addParts(const std::vector<FieldPart>& parts, const Rows& rows,
                            const FrdBlock& block, bool forces) {
  if (rows.deck.empty() && rows.mapped.empty() && rows.expanded.empty()) return;
  const int stored = block.storedCount();
  for (const FieldPart& part : parts) {
    NodalField field;
    field.part = part;
    const size_t width = part.source.size();
    field.nodes.reserve(rows.deck.size() + rows.mapped.size());
    field.values.reserve((rows.deck.size() + rows.mapped.size()) * width);
    for (size_t r : rows.deck) {
      field.nodes.push_back(block.nodes[r]);
      for (int s : part.source) field.values.push_back(block.values[r * stored + s]);
    }
    for (const auto& [node, from] : rows.mapped) {
      field.nodes.push_back(node);
      for (int s : part.source) {
        double sum = 0;
        for (size_t r : from) sum += block.values[r * stored + s];
        field.values.push_back(static_cast<float>(forces ? sum : sum / from.size()));
      }
    }
    for (size_t r : rows.expanded) {
      field.expandedNodes.push_back(block.nodes[r]);
      for (int s : part.source) field.expandedValues.push_back(block.values[r * stored + s]);
    }
    if (part.imaginary) {
      // Joins the real part read earlier in this frame, when the nodes agree.
      NodalField* real = nullptr;
      for (NodalField& f : fields_) {
        if (f.part.name == part.name && f.imaginary.empty()) real = &f;
      }
      if (!real || real->nodes != field.nodes || real->expandedNodes != field.expandedNodes) {
        warnings_.warn("frd-imaginary:" + block.name, block.location + ": imaginary parts " +
                                                          block.name +
                                                          " without matching real parts; skipped");
        continue;
      }
      real->imaginary = std::move(field.values);
      real->expandedImaginary = std::move(field.expandedValues);
      continue;
    }
    fields_.push_back(std::move(field));
  }
}

void ResultImport::addContactHistory(const FrdBlock& block, const std::vector<FieldPart>& parts,
                                     const Rows& rows, double frameValue,
                                     HistoryCollector& history) {
  // The block holds every node of the model, 0 except at slave nodes in contact (the
  // solver stores no positive clearance): a node's series begins when it first touches.
  const int stored = block.storedCount();
  std::vector<std::string> outputs;
  for (const FieldPart& part : parts) outputs.push_back(part.name);
  std::vector<PointSample> points;
  for (size_t r : rows.deck) {
    const float* row = &block.values[r * stored];
    bool touching = false;
    for (const FieldPart& part : parts) touching |= row[part.source[0]] != 0.f;
    if (!touching) continue;
    PointSample p;
    p.region = nodeRegion(block.nodes[r]);
    for (const FieldPart& part : parts) p.values.push_back(row[part.source[0]]);
    points.push_back(std::move(p));
  }
  history.addPoints("result file contact", outputs, "Contact variable at the slave node",
                    frameValue, std::move(points));
}

void ResultImport::openFrame(int step, int frame) {
  openStep_ = step;
  openFrame_ = frame;
  const PlannedStep& planned = plan_.steps()[step];
  holdFields_ = planned.domain != odb_Enum::TIME;
  tables_.clear();
  for (size_t i : placer_.tablesOf(planned.frames[frame])) tables_.push_back(&prints_.blocks[i]);
  sink_.frame(step, planned.frames[frame], pointFieldsOf(tables_, shells_, warnings_));
}

void ResultImport::closeFrame() {
  if (openStep_ < 0 || openFrame_ < 0) return;
  handOverFields();
  const PlannedFrame& frame = plan_.steps()[openStep_].frames[openFrame_];
  for (const DatBlock* table : tables_) {
    if (table->kind == DatRowKind::IntegrationPoint) continue;
    // The same variables at the same slave nodes as the result file's contact block.
    if (table->kind == DatRowKind::ContactNode && frameHasContact_) continue;
    history_[openStep_].add(*table, frame.frameValue, warnings_);
  }
  frameHasContact_ = false;
  sink_.frameEnd();
  openFrame_ = -1;
}

void ResultImport::finish() {
  expansion_.finishNodes(warnings_);
  closeFrame();
  openStepsUpTo(static_cast<int>(plan_.steps().size()) - 1);
  if (stepsOpened_ > 0) sink_.history(stepsOpened_ - 1, history_[stepsOpened_ - 1].regions());
  size_t missed = tablesPassedOver();
  if (missed > 0) {
    warnings_.warn("dat-unplaced", std::to_string(missed) +
                                       " printed tables match no frame of the result file and "
                                       "are not imported");
  }
}

}  // namespace odbs::ccx
