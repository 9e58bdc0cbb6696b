// The value extraction of result mode 1 (command rm): every value of a field output as
// the value record family, values of section-point blocks reduced to the middle of the
// section.
#pragma once

#include "context/reply_channel.h"
#include "results/instance_names.h"

class odb_FieldOutput;

namespace odbs {

// First the blocks without a section point, value by value (each block opened by its
// data class when that changed and its element type record with -1, -1). With
// requestDefined, a place (element, integration point, node, instance) already sent is
// not sent again. Then, per instance and element type of the blocks with section points,
// one element type record with 1, 1 and the mid-surface value of every place: the average
// of the values at the element's middle pair of section points. Queues the records on out
// (the caller flushes) and releases the field's bulk data at the end.
void sendFieldValues(const InstanceNumbering& instances, const odb_FieldOutput& field,
                     ReplyChannel& out, bool upperCase, bool requestDefined);

}  // namespace odbs
