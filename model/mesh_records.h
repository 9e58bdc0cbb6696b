// Node records (3) and element records (4), appended to the pending output buffer straight
// from the database's bulk arrays.
#pragma once

#include "context/reply_channel.h"
#include "model/element_section_map.h"
#include "model/section_numbering.h"
#include "odb/odb.h"

namespace odbs {

// One node record per node, in sequence order: i32 label, then the node's coordinates as
// f32 (as many as the sequence's dimension).
void queueNodeRecords(const odb_SequenceNode& nodes, ReplyChannel& out);

// One element record per element with at least one node, in sequence order: the type
// name (padded with blanks to 8 characters; a longer name whole, unpadded), i32 label,
// i32 section number, then the node labels; for a type beginning with "CONN3D2" an i32
// node count first and one i32 0 per node after the labels. The section number comes from
// sections (frozen) when it holds the label, else from the element's section category
// through tables, else 0. Elements too large for one record are cut to what fits.
void queueElementRecords(const odb_SequenceElement& elements, const ElementSectionMap& sections,
                         const SectionTables& tables, ReplyChannel& out);

}  // namespace odbs
