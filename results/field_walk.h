// The paths of the field walk that visit the blocks of a field one by one (result modes
// 0, -1, -2 and -3), after walkField has resolved step, frame and field.
#pragma once

#include <cstdint>

#include "context/command_state.h"
#include "context/reply_channel.h"
#include "results/instance_names.h"
#include "results/section_point_tables.h"

class odb_FieldOutput;
class odb_SequenceFieldBulkData;

namespace odbs {

// Which blocks and places a path sends.
enum class FieldPath {
  kSectionPoints,  // rl with a pair, rv: blocks of the pair's section points (rv: all)
  kSurface,        // rt (lowest) and rb (highest section point of each element)
  kGeneral,        // rs, rl without a pair: every block
};

// Enters, per element, the lowest and highest section point over the blocks of a field
// (blocks without section points or element labels are left out).
void fillSectionRanges(const odb_SequenceFieldBulkData& blocks, LabelTable& table);

// The path for a result mode (not 1) and the section point pair.
FieldPath fieldPathOf(int32_t resultMode, const SectionPointPair& pair);

// Sends the values of field by the path of request (its result mode, pair, upper-case and
// request-defined flags): per block the instance-name record when the instance changed
// (multi-instance databases), the data-class record when it changed, the element type
// record and the value records. Queues on out; releases the bulk data at the end.
void sendFieldPath(const InstanceNumbering& instances, const odb_FieldOutput& field,
                   const FieldRequest& request, ReplyChannel& out);

}  // namespace odbs
