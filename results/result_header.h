// The two records that open every field, contact and history reply: the title record (1,
// counted analysis title) and the analysis-code record (2, the code minus 1), each written
// at once, not through the pending output buffer.
#pragma once

#include "context/reply_channel.h"

class odb_Odb;

namespace odbs {

void sendResultHeader(const odb_Odb& odb, ReplyChannel& out);

}  // namespace odbs
