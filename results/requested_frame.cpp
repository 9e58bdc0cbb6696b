#include "results/requested_frame.h"

#include "odb/odb.h"

namespace odbs {

RequestedFrame requestedFrame(const odb_Odb& odb, int32_t step, int32_t frame) {
  const odb_StepRepository& steps = odb.steps();
  // Both sequences check their index: out_of_range below 0 or past the end.
  const odb_Step& s = steps[steps.stepNames()[step - 1]];
  return {s, s.frames()[frame]};
}

}  // namespace odbs
