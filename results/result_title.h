// The two records that open a result reply so that the client can label it: the title
// (1: counted analysis title) and the analysis code (2: u32 analysis code minus 1), each
// with one write.
#pragma once

#include "context/reply_channel.h"

class odb_Odb;

namespace odbs {

void sendResultTitle(const odb_Odb& odb, ReplyChannel& out);

}  // namespace odbs
