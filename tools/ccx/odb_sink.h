// Writes the results of an import into the database: the ResultSink that turns planned
// steps, frames, field outputs and history into odb::Writer calls.
//
// A field output of a frame gathers the values at the nodes (result file) and at the
// integration points (print file) under one name, one block per position, element type
// and section point; values at the solver's expanded nodes go to a second block on the
// expanded instance. History regions carry their point: the node, the set of a total, or
// the element face and point of contact output.
#pragma once

#include <string>

#include "odb/writer.h"
#include "tools/ccx/inp_model.h"
#include "tools/ccx/label_index.h"
#include "tools/ccx/results_import.h"

namespace odbs::ccx {

class OdbSink : public ResultSink {
 public:
  OdbSink(const Deck& deck, odb::Writer& writer);

  void expandedMesh(const ExpandedMesh& mesh) override;
  // The model is complete: the writer writes it and lets it go (at the first step when the
  // result file has no mesh).
  void meshRead() override { writer_.writeModel(); }
  void step(int index, const PlannedStep& step) override;
  void frame(int step, const PlannedFrame& frame, std::vector<NodalField>&& nodal,
             std::vector<PointField>&& points) override;
  void history(int step, const std::vector<HistoryRegionData>& regions) override;

 private:
  void addPointBlocks(const PointField& field, bool complex);

  const Deck& deck_;
  odb::Writer& writer_;
  LabelIndex elementIndex_;  // element label -> its index in deck_.elements
  odb_Enum::odb_DomainEnum domain_ = odb_Enum::TIME;
};

}  // namespace odbs::ccx
