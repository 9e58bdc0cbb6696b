// The step and frame that the numbers of D or d name, shared by the field, region and
// contact output.
#pragma once

#include <cstdint>

class odb_Odb;
class odb_Step;
class odb_Frame;

namespace odbs {

struct RequestedFrame {
  const odb_Step& step;
  const odb_Frame& frame;
};

// Step number step (counted from 1, in repository order) of odb and its frame frame
// (counted from 0). Throws std::out_of_range when the database has no such step or the step
// no such frame (a negative frame included). Precondition: step >= 1.
RequestedFrame requestedFrame(const odb_Odb& odb, int32_t step, int32_t frame);

}  // namespace odbs
