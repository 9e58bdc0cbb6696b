// Writes the results of an import into the database: the ResultSink that turns planned
// steps, frames, field outputs and history into odb::Writer calls.
//
// Fields are written as they come, so that the writer stores them while the import reads
// on. A field output of a frame gathers the values at the nodes (result file) and at the
// integration points (print file) under one name, one block per position, element type
// and section point; values at the solver's expanded nodes go to a second block on the
// expanded instance. History regions carry their point: the node, the set of a total, or
// the element face and point of contact output.
#pragma once

#include <set>
#include <string>
#include <vector>

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
  // Adds the frame and keeps its printed fields until the nodal field of the same name
  // comes or the frame ends.
  void frame(int step, const PlannedFrame& frame, std::vector<PointField>&& points) override;
  // Writes the field output with its nodal blocks at once, and the printed field of its
  // name in the same field output (when the two agree in type and components). A second
  // field of a name already written in the frame is left out.
  void field(NodalField&& field) override;
  // Writes the printed fields that no nodal field took, in the order they were printed.
  void frameEnd() override;
  void history(int step, const std::vector<HistoryRegionData>& regions) override;

 private:
  // One field output: the nodal field n (or null), then the printed field p (or null).
  void addField(NodalField* n, const PointField* p);
  void addPointBlocks(const PointField& field, bool complex);

  const Deck& deck_;
  odb::Writer& writer_;
  LabelIndex elementIndex_;  // element label -> its index in deck_.elements
  odb_Enum::odb_DomainEnum domain_ = odb_Enum::TIME;
  std::vector<PointField> points_;    // printed for the open frame
  std::set<std::string> fieldNames_;  // field outputs written in the open frame
};

}  // namespace odbs::ccx
