// When each connector element failed: the table behind the element status that the
// contact output reports for connectors when the frame has no connector status field.
#pragma once

#include <cstdint>
#include <vector>

#include "context/reply_channel.h"

class odb_Step;

namespace odbs {

struct ConnectorFailure {
  int32_t element = 0;
  float time = 0.f;  // frame value of the first sample with a positive CFAILST value
};

// Sorted by element label (stable: equal labels keep the regions' key order).
using ConnectorFailureTable = std::vector<ConnectorFailure>;

// Builds the table from the history of step: every region at a whole element (position 8)
// with a positive element label and element type "CONN3D2" whose outputs named
// "CFAILST..." hold a sample of exactly two floats with a value above 0 contributes its
// element and the smallest frame value at which that happens (per output the first such
// sample that lowers the time found so far). Regions without such a sample are left out.
ConnectorFailureTable buildConnectorFailures(const odb_Step& step);

// Element status records ('"': u32 element label, f32 0.0) for every connector that has
// failed at time t (t >= its failure time, compared in single precision), in table order,
// appended to the pending buffer.
void queueFailedConnectors(const ConnectorFailureTable& table, double t, ReplyChannel& out);

}  // namespace odbs
