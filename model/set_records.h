// The records of one set: header (5 node set, 6 element set, 7 surface: counted name),
// member blocks of up to 30 (8 node labels, 9 element labels, 10 element label and face
// pairs) and the set end record 11.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "context/reply_channel.h"
#include "odb/odb.h"

namespace odbs {

// False for the sets never sent: " ALL NODES", " ALL ELEMENTS", and, unless coupling,
// node sets whose name contains "COUPLING_".
bool isSentSet(std::string_view name, odb_Enum::odb_SetTypeEnum type, bool coupling);
bool isSentSet(const odb_Set& set, bool coupling);

// Appends the records of set to the pending buffer. With instance == nullptr the whole set
// (instance-local form); otherwise the members that lie in that instance (per-instance form
// of an assembly-level set), with an instance header after the set header and a block end
// after the set end when multiInstance. A set whose members cannot be read (none in that
// instance, or a damaged file: the database throws) is sent with header and end only.
void queueSet(const odb_Set& set, const std::string* instance, bool multiInstance,
              ReplyChannel& out);

// queueSet for a set (an entry of list.byKey) of the stored list of sets of kind: the same
// set of the entity's repository of that kind gives the same records, and a set of the
// list that is not sound is sent with header and end only. scratch is working room the
// caller keeps between calls, used only for a set whose member groups are stored apart.
void queueListedSet(const odb::SetListData& list, const odb::SetListData::Keyed& set,
                    odb_Enum::odb_SetTypeEnum kind, const std::string* instance, bool multiInstance,
                    ReplyChannel& out, std::vector<int32_t>& scratch);

// The set error record: '|' with "Error in Sets definition", appended to the pending buffer
// so that it stays in order with the set records around it.
void queueSetError(ReplyChannel& out);

}  // namespace odbs
