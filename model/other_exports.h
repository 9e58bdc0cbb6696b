// Handlers of irf and is, which answer with the end record alone for now.
#pragma once

#include <vector>

#include "context/command_state.h"
#include "context/odb_context.h"
#include "context/reply_channel.h"

namespace odbs {

// irf: the model restricted by the criteria list.
void exportFilteredModel(OdbContext& ctx, const std::vector<Criterion>& criteria,
                         ReplyChannel& out);

// is: the section assignments.
void exportSectionAssignments(OdbContext& ctx, ReplyChannel& out);

}  // namespace odbs
