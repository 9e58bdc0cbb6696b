// Node records (3) and element records (4), appended to the pending output buffer straight
// from the database's bulk arrays.
#pragma once

#include <cstdint>
#include <vector>

#include "context/reply_channel.h"
#include "model/element_section_map.h"
#include "model/section_numbering.h"
#include "odb/odb.h"

namespace odbs {

// One flag per entry of a node or element sequence: 1 keeps the entry, 0 leaves it out.
using Selection = std::vector<uint8_t>;

// One node record per node, in sequence order: i32 label, then the node's coordinates as
// f32 (as many as the sequence's dimension). With keep, only the nodes it flags.
void queueNodeRecords(const odb_SequenceNode& nodes, ReplyChannel& out,
                      const Selection* keep = nullptr);

// One element record per element with at least one node, in sequence order: the type
// name (padded with blanks to 8 characters; a longer name whole, unpadded), i32 label,
// i32 section number, then the node labels; for a type beginning with "CONN3D2" an i32
// node count first and one i32 0 per node after the labels. The section number comes from
// sections (frozen) when it holds the label, else from the element's section category
// through tables, else 0 (ElementSectionNumbers). Elements too large for one record are cut
// to what fits. With keep, only the elements it flags.
void queueElementRecords(const odb_SequenceElement& elements, const ElementSectionMap& sections,
                         const SectionTables& tables, ReplyChannel& out,
                         const Selection* keep = nullptr);

}  // namespace odbs
