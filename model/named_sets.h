// Set handler of irs: the sets named by the criteria list.
#pragma once

#include <vector>

#include "context/command_state.h"
#include "context/odb_context.h"
#include "context/reply_channel.h"

namespace odbs {

// irs: the sets named by the criteria list.
void sendNamedSets(OdbContext& ctx, const std::vector<Criterion>& criteria, ReplyChannel& out);

}  // namespace odbs
