// Handlers of irf (the model of g restricted by the criteria list) and is (the section
// assignments of every instance).
#pragma once

#include <vector>

#include "context/command_state.h"
#include "context/odb_context.h"
#include "context/reply_channel.h"

namespace odbs {

// irf: with an empty criteria list the reply of g (exportModel). Otherwise title, analysis
// code, annotation lines, the section records of g whose number a sent element carries
// (behind H owner ... I in a multi-instance model), the materials those sections name,
// then per instance (H) the selected nodes and elements, and in a multi-instance model the
// root assembly block (model/model_filter.h says what the criteria select). Throws what the
// database throws.
void exportFilteredModel(OdbContext& ctx, const std::vector<Criterion>& criteria,
                         ReplyChannel& out);

// is: title, analysis code, then per instance (H) one record 'T' per section assignment
// followed by its region in the instance-local set form (I); then per root assembly
// assignment 'T' and its region in the per-instance form for each instance it spans. H and
// I only in a multi-instance model. Throws what the database throws.
void exportSectionAssignments(OdbContext& ctx, ReplyChannel& out);

}  // namespace odbs
