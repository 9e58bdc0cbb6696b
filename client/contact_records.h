// Decoders of the records of the contact and status output (command rd): value rows of
// the requested field (17 real, 18 complex), rotation rows (19/20 for UR, 38/40, 57/60
// and 76/80 for UR1, UR2, UR3) and element status ('"'). The title (1), analysis code (2)
// and instance headers ('H') decode with the model decoders.
//
// Each decoder throws DecodeError when the type byte is not one of its types or the body
// does not have the record's layout.
#pragma once

#include <cstdint>
#include <vector>

#include "client/record.h"
#include "client/record_catalog.h"

namespace odbs::client {

// Which output a value row belongs to.
enum class ContactRowKind { kField, kRotation, kRotation1, kRotation2, kRotation3 };

// A value row: its label, the components and, for complex rows, the conjugates.
struct ContactRow {
  ContactRowKind kind = ContactRowKind::kField;
  bool complex = false;
  int32_t label = 0;
  std::vector<float> values, conjugates;
};
// True for the type bytes of value and rotation rows.
bool isContactRowType(uint8_t type);
ContactRow decodeContactRow(const RecordView& rec);
const char* contactRowKindName(ContactRowKind kind);

// '"': one element's status (or 0.0 for a failed connector).
struct ElementStatusRecord {
  int32_t element = 0;
  float value = 0.f;
};
ElementStatusRecord decodeElementStatus(const RecordView& rec);

// Registers describers of these records for replies to rd.
void addContactRecords(RecordCatalog& catalog);

}  // namespace odbs::client
