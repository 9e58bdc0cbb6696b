// The two pipe throughput tests of the protocol, used to measure a parent's reading speed.
#pragma once

#include "context/reply_channel.h"

namespace odbs {

// M: args "count size". Writes count blocks of size bytes taken from the pending output
// buffer as they are, one write each and without framing (a size beyond the buffer repeats
// it). Prints "\t<count*size>\n" to standard error.
void runRawWriteTest(const char* args, ReplyChannel& out);

// m: args "count n". Sends count records of type '"' through the pending buffer, each with
// its sequence number and the n integers 0..n-1 (n limited to what one record holds).
// Prints "\t<(4n+7)*count>\n" to standard error.
void runFramedRecordTest(const char* args, ReplyChannel& out);

}  // namespace odbs
