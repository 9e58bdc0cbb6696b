#include "client/contact_records.h"

#include "client/client_error.h"
#include "client/core_records.h"
#include "wire/record_types.h"

namespace odbs::client {

namespace {

struct RowType {
  uint8_t type;
  ContactRowKind kind;
  bool complex;
};

const RowType kRowTypes[] = {
    {kRecRealValue, ContactRowKind::kField, false},
    {kRecComplexValue, ContactRowKind::kField, true},
    {kRecRotationReal, ContactRowKind::kRotation, false},
    {kRecRotationComplex, ContactRowKind::kRotation, true},
    {kRecRotation1Real, ContactRowKind::kRotation1, false},
    {kRecRotation1Complex, ContactRowKind::kRotation1, true},
    {kRecRotation2Real, ContactRowKind::kRotation2, false},
    {kRecRotation2Complex, ContactRowKind::kRotation2, true},
    {kRecRotation3Real, ContactRowKind::kRotation3, false},
    {kRecRotation3Complex, ContactRowKind::kRotation3, true},
};

const RowType* rowType(uint8_t type) {
  for (const RowType& t : kRowTypes)
    if (t.type == type) return &t;
  return nullptr;
}

}  // namespace

bool isContactRowType(uint8_t type) {
  return rowType(type) != nullptr;
}

ContactRow decodeContactRow(const RecordView& rec) {
  const RowType* t = rowType(rec.type);
  if (!t) throw DecodeError("record of type " + typeName(rec.type) + " is not a contact value row");
  size_t floatBytes = rec.size >= 4 ? rec.size - 4 : 0;
  size_t group = t->complex ? 8 : 4;
  if (rec.size < 4 || floatBytes % group != 0) {
    throw DecodeError("contact value row: body of " + std::to_string(rec.size) +
                      " bytes is not a label and " + (t->complex ? "pairs of " : "") + "floats");
  }
  ContactRow row;
  row.kind = t->kind;
  row.complex = t->complex;
  ByteReader r = rec.reader();
  r.getI32(&row.label);
  size_t n = floatBytes / group;
  row.values.resize(n);
  for (float& v : row.values) r.getF32(&v);
  if (t->complex) {
    row.conjugates.resize(n);
    for (float& v : row.conjugates) r.getF32(&v);
  }
  return row;
}

const char* contactRowKindName(ContactRowKind kind) {
  switch (kind) {
    case ContactRowKind::kField:
      return "value";
    case ContactRowKind::kRotation:
      return "UR";
    case ContactRowKind::kRotation1:
      return "UR1";
    case ContactRowKind::kRotation2:
      return "UR2";
    case ContactRowKind::kRotation3:
      return "UR3";
  }
  return "value";
}

ElementStatusRecord decodeElementStatus(const RecordView& rec) {
  return decodeFields<ElementStatusRecord>(rec, kRecElementStatus, "element status",
                                           [](ByteReader& r, ElementStatusRecord& s) {
                                             return r.getI32(&s.element) && r.getF32(&s.value);
                                           });
}

}  // namespace odbs::client
