// The records that open every model, set and result reply: the title and the analysis
// code, and the annotation lines of the model export. All are written one per write.
#pragma once

#include "context/reply_channel.h"
#include "odb/odb.h"

namespace odbs {

// Title record (1: counted analysis title) and analysis-code record (2: i32 code - 1).
void sendModelHeader(const odb_Odb& odb, ReplyChannel& out);

// One annotation line record (21: counted text) per line of the annotation text under the
// key "xml", newline included; a last line without newline is sent when not empty. Sends
// nothing when there is no such text. Never throws: a failure ends the lines quietly.
void sendAnnotationLines(const odb_Odb& odb, ReplyChannel& out);

}  // namespace odbs
