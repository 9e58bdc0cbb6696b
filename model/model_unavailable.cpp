// Model handlers for a server built without a database library. They are never reached
// (every look-up fails first) but keep the dispatcher's table complete.
#include "model/model_export.h"

namespace odbs {

void exportModel(OdbContext&, bool, ReplyChannel&) {}
void sendSets(OdbContext&, int, bool, ReplyChannel&) {}
void sendNamedSets(OdbContext&, const std::vector<Criterion>&, ReplyChannel&) {}
void exportFilteredModel(OdbContext&, const std::vector<Criterion>&, ReplyChannel&) {}
void exportSectionAssignments(OdbContext&, ReplyChannel&) {}

}  // namespace odbs
