// The records of one set: header (5 node set, 6 element set, 7 surface: counted name),
// member blocks of up to 30 (8 node labels, 9 element labels, 10 element label and face
// pairs) and the set end record 11.
#pragma once

#include <string>

#include "context/reply_channel.h"
#include "odb/odb.h"

namespace odbs {

// False for the sets never sent: " ALL NODES", " ALL ELEMENTS", and, unless coupling,
// node sets whose name contains "COUPLING_".
bool isSentSet(const odb_Set& set, bool coupling);

// Appends the records of set to the pending buffer. With instance == nullptr the whole set
// (instance-local form); otherwise the members that lie in that instance (per-instance form
// of an assembly-level set), with an instance header after the set header and a block end
// after the set end when multiInstance. A set with no members in that instance (the
// database throws std::out_of_range) is sent with header and end only. Any other failure
// while reading members propagates after the header has been queued.
void queueSet(const odb_Set& set, const std::string* instance, bool multiInstance,
              ReplyChannel& out);

// The set error record: '|' with "Error in Sets definition", appended to the pending buffer
// so that it stays in order with the set records around it.
void queueSetError(ReplyChannel& out);

}  // namespace odbs
