#include "results/history_records.h"

#include "odb/results.h"

namespace odbs {

void sendHistoryStep(const odb_Step& step, uint32_t number, ReplyChannel& out) {
  out.send(RecordBuilder(kRecHistoryStep)
               .u32(number)
               .u32(static_cast<uint32_t>(step.domain()))
               .f64(step.totalTime())
               .text(step.name())
               .text(step.description()));
}

void sendHistoryRegion(const std::string& name, const std::string& setName,
                       const HistoryPointFields& point, ReplyChannel& out) {
  out.send(RecordBuilder(kRecHistoryRegion)
               .text(name)
               .text(setName)
               .u32(point.code)
               .i32(point.values[0])
               .i32(point.values[1])
               .i32(point.values[2]));
}

void sendHistoryOutput(const odb_HistoryOutput& output, bool conjugate, ReplyChannel& out) {
  out.send(RecordBuilder(kRecHistoryOutput)
               .text(output.name())
               .text(output.description())
               .u32(static_cast<uint32_t>(output.type()))
               .u32(conjugate ? 1 : 0));
}

}  // namespace odbs
