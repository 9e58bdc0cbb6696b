// Turns the result file and the print file of a deck into the results of the database,
// frame by frame, and hands them to a sink (the database writer, or a test).
//
// It is the result file's visitor: blocks arrive in file order, and each frame's blocks
// are gathered until the next frame begins, so that the real and imaginary parts of a
// steady-state point become one complex field output and the frame's printed tables can
// join it. Only one frame is held at a time. Values at nodes the deck does not define (the
// solver's expanded shell nodes) are left out with one warning.
#pragma once

#include <memory>
#include <string>
#include <unordered_set>
#include <vector>

#include "tools/ccx/frame_plan.h"
#include "tools/ccx/frd_fields.h"
#include "tools/ccx/frd_parser.h"
#include "tools/ccx/print_results.h"

namespace odbs::ccx {

struct NodalField {
  FieldPart part;  // name, description, type and component labels
  std::vector<int32_t> nodes;
  std::vector<float> values;     // rows of max(1, part.labels.size()) components
  std::vector<float> imaginary;  // same shape for complex results, else empty
};

class ResultSink {
 public:
  virtual ~ResultSink() = default;
  // A step begins; called for every step of the deck, in order, before its frames.
  virtual void step(int index, const PlannedStep& step) = 0;
  // A complete frame of the step last begun, with its field outputs.
  virtual void frame(int step, const PlannedFrame& frame, std::vector<NodalField>&& nodal,
                     std::vector<PointField>&& points) = 0;
  // The history of the step, after its last frame.
  virtual void history(int step, const std::vector<HistoryRegionData>& regions) = 0;
};

class ResultImport : public FrdVisitor {
 public:
  ResultImport(const Deck& deck, const DatFile& prints, const std::string& resultPath,
               ResultSink& sink, Warnings& warnings);

  void block(FrdBlock&& block) override;
  // Ends the last frame and the remaining steps; call after the result file is read.
  void finish();

  const FramePlan& plan() const { return plan_; }
  size_t tablesPassedOver() const { return placer_.passedOver() + placer_.left(); }

 private:
  void closeFrame();
  void openStepsUpTo(int step);

  const Deck& deck_;
  const DatFile& prints_;
  std::string path_;
  ResultSink& sink_;
  Warnings& warnings_;
  FramePlan plan_;
  TablePlacer placer_;
  ShellLayers shells_;
  std::unordered_set<int32_t> deckNodes_;
  std::vector<HistoryCollector> history_;
  int stepsOpened_ = 0;  // steps handed to the sink so far
  int openStep_ = -1, openFrame_ = -1;
  std::vector<NodalField> fields_;  // of the open frame
};

}  // namespace odbs::ccx
