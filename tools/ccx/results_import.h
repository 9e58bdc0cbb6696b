// Turns the result file and the print file of a deck into the results of the database,
// field by field, and hands them to a sink (the database writer, or a test).
//
// It is the result file's visitor: blocks arrive in file order. A frame opens at its first
// block, with the tables printed for it, and in a step of the time domain each field goes
// to the sink as soon as its block is read, so that the database writes it while the rest
// of the file is read. Elsewhere (eigenmodes, steady-state points) imaginary parts may
// follow all the real ones: the frame's fields are held until the frame ends, so that the
// real and imaginary parts become one complex field output. (The solver writes no
// imaginary parts in time steps; one there finds no real part and is skipped with a
// warning.)
//
// The result file's mesh is checked against the deck (Expansion): results of another
// model are refused. Values at the solver's expanded nodes of shells and beams go twice
// into the database: on the expanded instance as written, and mapped back to the deck's
// nodes (mean of the expanded nodes, sum for forces). Where a step writes beam section
// forces instead of stresses, the stress block's values at beam nodes become the field
// outputs SF and SM. Values at nodes that neither the deck nor an expanded element has are
// left out with one warning. The nodal contact block of the result file also becomes the
// history of each slave node that touches during the step (see HistoryCollector::addPoints).
#pragma once

#include <memory>
#include <string>
#include <vector>

#include "tools/ccx/expansion.h"
#include "tools/ccx/frame_plan.h"
#include "tools/ccx/frd_fields.h"
#include "tools/ccx/frd_parser.h"
#include "tools/ccx/label_index.h"
#include "tools/ccx/print_results.h"

namespace odbs::ccx {

struct NodalField {
  FieldPart part;  // name, description, type and component labels
  std::vector<int32_t> nodes;
  std::vector<float> values;     // rows of max(1, part.labels.size()) components
  std::vector<float> imaginary;  // same shape for complex results, else empty
  // The values at the expanded instance's nodes, same layout; empty when there are none.
  std::vector<int32_t> expandedNodes;
  std::vector<float> expandedValues, expandedImaginary;
};

class ResultSink {
 public:
  virtual ~ResultSink() = default;
  // The solver's expanded elements, before the first step; not called when there are none.
  virtual void expandedMesh(const ExpandedMesh&) {}
  // The result file's mesh is read and checked (after expandedMesh): nothing more joins the
  // model. Not called for a result file without an element block.
  virtual void meshRead() {}
  // A step begins; called for every step of the deck, in order, before its frames.
  virtual void step(int index, const PlannedStep& step) = 0;
  // A frame of the step last begun opens, as its first result block is read, with the
  // field outputs at integration points printed for it.
  virtual void frame(int step, const PlannedFrame& frame, std::vector<PointField>&& points) = 0;
  // A complete field output at the nodes of the open frame, in the result file's order.
  virtual void field(NodalField&& field) = 0;
  // The open frame ends: no more fields come for it.
  virtual void frameEnd() = 0;
  // The history of the step, after its last frame.
  virtual void history(int step, const std::vector<HistoryRegionData>& regions) = 0;
};

class ResultImport : public FrdVisitor {
 public:
  ResultImport(const Deck& deck, const DatFile& prints, const std::string& resultPath,
               ResultSink& sink, Warnings& warnings);

  // The node check ends at nodesEnd, or at the next call of another kind when nodesEnd does
  // not come (a caller that hands over all nodes at once).
  void nodes(std::vector<FrdNode>&& nodes) override;
  void nodesEnd() override;
  void elements(std::vector<FrdElement>&& elements) override;
  void elementsEnd() override;
  void block(FrdBlock&& block) override;
  // Ends the last frame and the remaining steps; call after the result file is read.
  void finish();

  const FramePlan& plan() const { return plan_; }
  size_t tablesPassedOver() const { return placer_.passedOver() + placer_.left(); }

 private:
  void openFrame(int step, int frame);
  void closeFrame();
  // Hands the fields gathered so far to the sink.
  void handOverFields();
  void openStepsUpTo(int step);
  // Rows of a block by where their values go.
  struct Rows {
    std::vector<size_t> deck, expanded;
    std::vector<std::pair<int32_t, std::vector<size_t>>> mapped;  // deck node, its rows
    size_t lost = 0;
    int32_t firstLost = 0;
  };
  Rows rowsOf(const FrdBlock& block, bool forces) const;
  // History of the result file's nodal contact block: one series per slave node.
  void addContactHistory(const FrdBlock& block, const std::vector<FieldPart>& parts,
                         const Rows& rows, double frameValue, HistoryCollector& history);
  // Moves the block's arrays into the frame's field when they are the field as they stand
  // (up to the order of columns); false when the field must be built row by row.
  bool takeWhole(const std::vector<FieldPart>& parts, const Rows& rows, FrdBlock& block);
  void addParts(const std::vector<FieldPart>& parts, const Rows& rows, const FrdBlock& block,
                bool forces);

  const Deck& deck_;
  const DatFile& prints_;
  std::string path_;
  ResultSink& sink_;
  Warnings& warnings_;
  FramePlan plan_;
  TablePlacer placer_;
  ShellLayers shells_;
  LabelBits deckNodes_;
  Expansion expansion_;
  LabelBits beamNodes_;              // nodes of the deck's beam elements
  std::vector<bool> sectionForces_;  // per step: beam stresses are section forces
  std::vector<HistoryCollector> history_;
  int stepsOpened_ = 0;  // steps handed to the sink so far
  int openStep_ = -1, openFrame_ = -1;
  std::vector<NodalField> fields_;       // of the open frame, not yet handed over
  bool holdFields_ = false;              // imaginary parts may still join fields_
  std::vector<const DatBlock*> tables_;  // printed for the open frame
  bool frameHasContact_ = false;         // the open frame has the nodal contact block
};

}  // namespace odbs::ccx
