// Set handler of S and s: node sets, element sets and surfaces.
#pragma once

#include "context/odb_context.h"
#include "context/reply_channel.h"

namespace odbs {

// S (mode 0) and s (mode 1): node sets, element sets and surfaces.
void sendSets(OdbContext& ctx, int mode, bool flag, ReplyChannel& out);

}  // namespace odbs
