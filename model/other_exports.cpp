// irf (the model restricted by the criteria list) and is (the section assignments): these
// replies carry no records yet; the client receives the end record alone.
#include "model/other_exports.h"

namespace odbs {

void exportFilteredModel(OdbContext&, const std::vector<Criterion>&, ReplyChannel& out) {
  out.discardPending();
}

void exportSectionAssignments(OdbContext&, ReplyChannel& out) {
  out.discardPending();
}

}  // namespace odbs
