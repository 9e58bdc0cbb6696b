// Model export handler of G and g: the model header, sections, materials, nodes and elements.
#pragma once

#include "context/odb_context.h"
#include "context/reply_channel.h"

namespace odbs {

// G (nodesOnly) and g: title, analysis code, annotation, sections, materials, nodes and
// elements of every instance.
void exportModel(OdbContext& ctx, bool nodesOnly, ReplyChannel& out);

}  // namespace odbs
