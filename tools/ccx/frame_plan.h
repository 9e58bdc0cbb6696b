// The steps and frames of an import, built while the result file is read: each run of
// result blocks with the same step, increment, mode and value is one frame of that step.
// Printed tables (.dat) are placed on the frame whose time, frequency or mode they were
// printed for.
#pragma once

#include <string>
#include <vector>

#include "odb/enums.h"
#include "tools/ccx/dat_model.h"
#include "tools/ccx/frd_model.h"
#include "tools/ccx/inp_model.h"

namespace odbs::ccx {

struct PlannedFrame {
  int increment = 0;        // the result file's increment number (0 for steady-state points)
  int mode = 0;             // eigenmode number, 0 when the frame is not a mode
  double resultValue = 0;   // as the result file gives it: total time, frequency, factor
  double frameValue = 0;    // step time of time steps; frequency or factor otherwise
  std::string description;  // "Increment 2: Step Time = 0.5", "Mode 1: Frequency = 209.3"
};

struct PlannedStep {
  const Step* step = nullptr;
  odb_Enum::odb_DomainEnum domain = odb_Enum::TIME;
  double startTime = 0;  // total time when the step begins
  std::vector<PlannedFrame> frames;
};

class FramePlan {
 public:
  // One planned step per deck step; time steps start where the previous ones ended.
  explicit FramePlan(const Deck& deck);

  struct Place {
    int step = -1;       // index into steps()
    int frame = -1;      // index into steps()[step].frames
    bool isNew = false;  // the block opened this frame
  };
  // The frame of a result block, appended to its step when the block is the first of it.
  // Throws InputError when the block names a step that the deck does not have.
  Place frameOf(const FrdBlock& block);

  const std::vector<PlannedStep>& steps() const { return steps_; }

 private:
  std::vector<PlannedStep> steps_;
};

// Hands out the printed tables of each frame in turn. Tables and frames come in the same
// order; tables printed at a time for which the result file has no frame are passed over
// and counted.
class TablePlacer {
 public:
  explicit TablePlacer(const std::vector<DatBlock>& tables) : tables_(tables) {}

  // Indexes of the tables printed for this frame (possibly none).
  std::vector<size_t> tablesOf(const PlannedFrame& frame);
  // Tables passed over so far, and those never reached (call after the last frame).
  size_t passedOver() const { return passedOver_; }
  size_t left() const { return tables_.size() - cursor_; }

 private:
  const std::vector<DatBlock>& tables_;
  size_t cursor_ = 0;
  size_t passedOver_ = 0;
};

}  // namespace odbs::ccx
