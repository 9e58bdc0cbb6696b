#include "tools/ccx/results_import.h"

#include "tools/ccx/parse_error.h"

namespace odbs::ccx {

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
      history_(deck.steps.size()) {
  deckNodes_.reserve(deck.nodes.size());
  for (const Node& n : deck.nodes) deckNodes_.insert(n.label);
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
  FramePlan::Place place = plan_.frameOf(block);
  if (place.step < openStep_) {
    throw InputError(block.location + ": result block " + block.name + " of step " +
                     std::to_string(block.step) + " follows results of step " +
                     std::to_string(openStep_ + 1));
  }
  if (place.isNew) {
    closeFrame();
    openStepsUpTo(place.step);
    openStep_ = place.step;
    openFrame_ = place.frame;
  }
  std::vector<FieldPart> parts = fieldsOfBlock(block.name, block.storedCount());
  if (parts.empty()) {
    warnings_.warn("frd-result:" + block.name,
                   block.location + ": result block " + block.name + " is not imported; skipped");
    return;
  }
  const int stored = block.storedCount();
  std::vector<size_t> rows;
  rows.reserve(block.nodes.size());
  for (size_t r = 0; r < block.nodes.size(); ++r) {
    if (deckNodes_.count(block.nodes[r])) rows.push_back(r);
  }
  if (rows.size() < block.nodes.size()) {
    warnings_.warn("frd-nodes", path_ + ": values at nodes that the deck does not define (" +
                                    std::to_string(block.nodes.size() - rows.size()) + " in " +
                                    block.name + " at " + block.location +
                                    ", the solver's expanded shell or beam nodes) are skipped");
  }
  for (const FieldPart& part : parts) {
    const size_t width = part.source.size();
    std::vector<float> values;
    values.reserve(rows.size() * width);
    for (size_t r : rows) {
      for (int s : part.source) values.push_back(block.values[r * stored + s]);
    }
    if (part.imaginary) {
      // Joins the real part read earlier in this frame, when the nodes agree.
      NodalField* real = nullptr;
      for (NodalField& f : fields_) {
        if (f.part.name == part.name && f.imaginary.empty()) real = &f;
      }
      if (!real || real->values.size() != values.size()) {
        warnings_.warn("frd-imaginary:" + block.name, block.location + ": imaginary parts " +
                                                          block.name +
                                                          " without matching real parts; skipped");
        continue;
      }
      real->imaginary = std::move(values);
      continue;
    }
    NodalField field;
    field.part = part;
    field.nodes.reserve(rows.size());
    for (size_t r : rows) field.nodes.push_back(block.nodes[r]);
    field.values = std::move(values);
    fields_.push_back(std::move(field));
  }
}

void ResultImport::closeFrame() {
  if (openStep_ < 0 || openFrame_ < 0) return;
  const PlannedFrame& frame = plan_.steps()[openStep_].frames[openFrame_];
  std::vector<const DatBlock*> tables;
  for (size_t i : placer_.tablesOf(frame)) tables.push_back(&prints_.blocks[i]);
  std::vector<PointField> points = pointFieldsOf(tables, shells_, warnings_);
  for (const DatBlock* table : tables) {
    if (table->kind != DatRowKind::IntegrationPoint) {
      history_[openStep_].add(*table, frame.frameValue, warnings_);
    }
  }
  sink_.frame(openStep_, frame, std::move(fields_), std::move(points));
  fields_.clear();
  openFrame_ = -1;
}

void ResultImport::finish() {
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
