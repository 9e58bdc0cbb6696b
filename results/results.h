// Result handlers: field output of one frame, contact and status output, history output
// and the two-region field output.
#pragma once

#include <string>
#include <vector>

#include "context/command_state.h"
#include "context/odb_context.h"
#include "context/reply_channel.h"

namespace odbs {

// r forms other than d, n and g.
void walkField(OdbContext& ctx, const FieldRequest& request, ResultCache& cache, ReplyChannel& out);

// rd: contact and status output for the selected labels.
void sendContactStatus(OdbContext& ctx, const RequestParams& request,
                       const SelectionList& selection, ReplyChannel& out);

// hi (form 0) and hr (form 1, region number): history output.
void sendHistory(OdbContext& ctx, int form, int number, const std::vector<std::string>& names,
                 ReplyChannel& out);

// rn / rg: field output of two regions.
void sendRegionField(OdbContext& ctx, const RequestParams& request, bool upperCase,
                     const RegionRequest& region, ReplyChannel& out);

}  // namespace odbs
