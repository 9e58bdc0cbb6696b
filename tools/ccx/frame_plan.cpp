#include "tools/ccx/frame_plan.h"

#include <cmath>
#include <cstdio>
#include <cstdlib>

#include "tools/ccx/parse_error.h"

namespace odbs::ccx {
namespace {

bool sameValue(double a, double b) {
  return std::fabs(a - b) <= 1e-6 * std::max(1.0, std::max(std::fabs(a), std::fabs(b)));
}

std::string number(double v) {
  char text[32];
  std::snprintf(text, sizeof text, "%.6g", v);
  return text;
}

odb_Enum::odb_DomainEnum domainOf(StepDomain d) {
  switch (d) {
    case StepDomain::Frequency:
      return odb_Enum::FREQUENCY;
    case StepDomain::Modal:
      return odb_Enum::MODAL;
    default:
      return odb_Enum::TIME;
  }
}

bool matches(const DatBlock& table, const PlannedFrame& frame) {
  if (table.mode > 0 || frame.mode > 0) return table.mode == frame.mode;
  return sameValue(table.time, frame.resultValue);
}

}  // namespace

FramePlan::FramePlan(const Deck& deck) {
  double time = 0;
  for (const Step& step : deck.steps) {
    PlannedStep planned;
    planned.step = &step;
    planned.domain = domainOf(step.domain);
    planned.startTime = time;
    if (step.domain == StepDomain::Time) time += step.timePeriod;
    steps_.push_back(std::move(planned));
  }
}

FramePlan::Place FramePlan::frameOf(const FrdBlock& block) {
  if (block.step < 1 || block.step > static_cast<int>(steps_.size())) {
    throw InputError(block.location + ": the result file belongs to another model: result block " +
                     block.name + " belongs to step " + std::to_string(block.step) +
                     ", but the deck has " + std::to_string(steps_.size()) + " steps");
  }
  Place place;
  place.step = block.step - 1;
  PlannedStep& step = steps_[place.step];
  // An eigenmode where the deck's step has none, or none where it must: the result file
  // was written for another deck.
  const std::string& procedure = step.step->procedure;
  bool eigen = procedure == "FREQUENCY" || procedure == "BUCKLE";
  bool isMode = block.mode > 0 || block.analysisType == 2;
  if ((eigen && !isMode) || (step.domain == odb_Enum::TIME && isMode)) {
    throw InputError(block.location + ": the result file belongs to another model: result block " +
                     block.name + (isMode ? " is an eigenmode" : " is not an eigenmode") +
                     ", but step " + std::to_string(block.step) + " of the deck is a *" +
                     procedure + " step");
  }
  if (!step.frames.empty()) {
    const PlannedFrame& last = step.frames.back();
    if (last.increment == block.increment && last.mode == block.mode &&
        sameValue(last.resultValue, block.value)) {
      place.frame = static_cast<int>(step.frames.size()) - 1;
      return place;
    }
  }
  PlannedFrame frame;
  frame.increment = block.increment;
  frame.mode = block.mode;
  frame.resultValue = block.value;
  if (step.domain == odb_Enum::TIME) {
    // The file holds total time: the step time is a difference, given to the decimal
    // places of the printed total time (2.0001 - 2 is 0.0001, not 0.00009999999999976694).
    frame.frameValue = block.value - step.startTime;
    if (block.valueDecimals >= 0) {
      char text[64];
      std::snprintf(text, sizeof text, "%.*f", block.valueDecimals, frame.frameValue);
      frame.frameValue = std::strtod(text, nullptr);
    }
    if (std::fabs(frame.frameValue) < 1e-12 * std::max(1.0, step.startTime)) frame.frameValue = 0;
    frame.description = "Increment " + std::to_string(block.increment) +
                        ": Step Time = " + number(frame.frameValue);
  } else {
    frame.frameValue = block.value;
    if (block.mode > 0) {
      frame.description = "Mode " + std::to_string(block.mode) + ": " +
                          (step.domain == odb_Enum::MODAL ? "Factor = " : "Frequency = ") +
                          number(block.value);
    } else {
      frame.description = "Frequency = " + number(block.value);
    }
  }
  step.frames.push_back(std::move(frame));
  place.frame = static_cast<int>(step.frames.size()) - 1;
  place.isNew = true;
  return place;
}

std::vector<size_t> TablePlacer::tablesOf(const PlannedFrame& frame) {
  size_t first = cursor_;
  while (first < tables_.size() && !matches(tables_[first], frame)) ++first;
  if (first == tables_.size()) return {};
  passedOver_ += first - cursor_;
  std::vector<size_t> out;
  cursor_ = first;
  while (cursor_ < tables_.size() && matches(tables_[cursor_], frame)) out.push_back(cursor_++);
  return out;
}

}  // namespace odbs::ccx
