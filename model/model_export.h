// Model export handlers: the model, its sets and surfaces, sections and materials.
#pragma once

#include <vector>

#include "context/command_state.h"
#include "context/odb_context.h"
#include "context/reply_channel.h"

namespace odbs {

// G (nodesOnly) and g: title, analysis code, annotation, sections, materials, nodes and
// elements of every instance.
void exportModel(OdbContext& ctx, bool nodesOnly, ReplyChannel& out);

// S (mode 0) and s (mode 1): node sets, element sets and surfaces.
void sendSets(OdbContext& ctx, int mode, bool flag, ReplyChannel& out);

// irs: the sets named by the criteria list.
void sendNamedSets(OdbContext& ctx, const std::vector<Criterion>& criteria, ReplyChannel& out);

// irf: the model restricted by the criteria list.
void exportFilteredModel(OdbContext& ctx, const std::vector<Criterion>& criteria,
                         ReplyChannel& out);

// is: the section assignments.
void exportSectionAssignments(OdbContext& ctx, ReplyChannel& out);

}  // namespace odbs
