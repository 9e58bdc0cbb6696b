// The records of the history output: step '2', region '4', output '6' (written one per
// write) and the value records '8' (gathered in the pending output buffer).
#pragma once

#include <cstdint>
#include <string>

#include "context/reply_channel.h"
#include "results/history_point_fields.h"

class odb_Step;
class odb_HistoryRegion;
class odb_HistoryOutput;

namespace odbs {

// '2': u32 step number (1-based), u32 domain, f64 total time, name, description.
void sendHistoryStep(const odb_Step& step, uint32_t number, ReplyChannel& out);

// '4': region name, region set name, u32 history position code, three i32 point fields.
void sendHistoryRegion(const std::string& name, const std::string& setName,
                       const HistoryPointFields& point, ReplyChannel& out);

// '6': name, description, u32 type code, u32 conjugate flag (0 or 1).
void sendHistoryOutput(const odb_HistoryOutput& output, bool conjugate, ReplyChannel& out);

// One '8' record (a single f32) appended to the pending output buffer.
inline void queueHistoryValue(float v, ReplyChannel& out) {
  putF32(out.queueFixed(kRecHistoryValue, 4), v);
}

}  // namespace odbs
