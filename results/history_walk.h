// The history output of commands hi and hr: per step a step record, per history region a
// region record, per history output an output record and, for hr, its values.
//
// hi walks every region of every step and sends no values; hr walks the steps chosen by
// its step number (0: all) and only the regions named in the history name list, in list
// order, and sends each output's samples as value records. A listed region that the step
// does not hold is skipped; one whose reading throws is abandoned (what was sent for it
// stays sent) and the walk goes on with the next name.
#pragma once

#include <cstdint>

#include "context/history_names.h"
#include "context/reply_channel.h"

class odb_Odb;
class odb_Step;
class odb_HistoryRegion;
class odb_HistoryOutput;

namespace odbs {

// The whole walk over the steps of odb. withValues: hr (true) or hi (false); stepFilter: the
// 1-based step to send, 0 for all. Empties names when the walk reaches its end; an
// exception that ends it early (hi: any; hr: a failure outside the listed regions)
// propagates and leaves names as they were.
void walkHistory(const odb_Odb& odb, bool withValues, int32_t stepFilter, HistoryNameList& names,
                 ReplyChannel& out);

// One step: its record, then its regions (all of them, or the listed ones with values).
void walkHistoryStep(const odb_Step& step, uint32_t number, bool withValues,
                     const HistoryNameList& names, ReplyChannel& out);

// One region: its record, then every output in key order.
void walkHistoryRegion(const odb_Step& step, const odb_HistoryRegion& region, bool withValues,
                       ReplyChannel& out);

// One output: its record and, with values, one value record per float of each sample
// (frame value, value, ...) followed by the conjugate value when the output has
// conjugate data. The values go through the pending buffer, which is flushed at the end.
// Without values, the data of a step whose domain is neither frequency nor modal is not
// read at all and the conjugate flag is 0.
void walkHistoryOutput(const odb_Step& step, const odb_HistoryOutput& output, bool withValues,
                       ReplyChannel& out);

}  // namespace odbs
