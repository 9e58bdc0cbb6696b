// The per-row records of the contact and status output, appended to the pending buffer:
// value rows (17/18 and the rotation pairs) and element status rows ('"').
#pragma once

#include <cstdint>

#include "context/reply_channel.h"

class odb_FieldBulkData;

namespace odbs {

// Record types of one output: real rows, and complex rows (values then conjugates).
struct RowTypes {
  uint8_t real;
  uint8_t complex;
};

// One record per row: u32 label, the row's components as f32 and, when complex, the
// conjugate components as f32 (doubles are narrowed). With sentinel, real rows send the
// most negative float as -1e-30 (contact outputs that mark "no value" with it). Throws
// std::runtime_error when a complex block has no conjugate values or a row does not fit
// a record.
void queueValueRows(const odb_FieldBulkData& block, bool complex, RowTypes types, bool sentinel,
                    ReplyChannel& out);

// One element status record ('"': u32 element label, f32) per element: rows that repeat the
// previous row's element label are skipped. The value is the row's first component, or
// with connectorStatus 1.0 when it is 0.0 and 0.0 otherwise.
void queueStatusRows(const odb_FieldBulkData& block, bool connectorStatus, ReplyChannel& out);

}  // namespace odbs
