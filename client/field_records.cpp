#include "client/field_records.h"

#include "client/client_error.h"
#include "client/core_records.h"
#include "client/model_records.h"
#include "wire/field_value_coding.h"
#include "wire/record_types.h"

namespace odbs::client {

namespace {

[[noreturn]] void tooShort(const char* what) {
  throw DecodeError(std::string(what) + " record ends inside its fields");
}

}  // namespace

uint32_t decodeDataClass(const RecordView& rec) {
  return decodeFields<uint32_t>(rec, kRecDataClass, "data-class",
                                [](ByteReader& r, uint32_t& code) { return r.getU32(&code); });
}

ElementTypeRecord decodeElementType(const RecordView& rec) {
  ElementTypeRecord e = decodeFields<ElementTypeRecord>(
      rec, kRecElementType, "element type", [](ByteReader& r, ElementTypeRecord& e) {
        return r.getBytes(kElementTypeNameBytes, &e.type) && r.getI32(&e.surfaceTag) &&
               r.getI32(&e.sectionPoint);
      });
  e.type.erase(e.type.find_last_not_of(' ') + 1);
  return e;
}

std::array<float, 6> decodeOrientation(const RecordView& rec) {
  return decodeFields<std::array<float, 6>>(rec, kRecOrientation, "orientation",
                                            [](ByteReader& r, std::array<float, 6>& rows) {
                                              for (float& v : rows)
                                                if (!r.getF32(&v)) return false;
                                              return true;
                                            });
}

bool isFieldValueType(uint8_t type) {
  ValueHeader h;
  return valueHeaderOf(type, &h);
}

FieldValueRecord decodeFieldValue(const RecordView& rec) {
  ValueHeader h;
  if (!valueHeaderOf(rec.type, &h))
    throw DecodeError("expected a field value record, got type " + typeName(rec.type));
  ByteReader r = rec.reader();
  FieldValueRecord v;
  v.hasElement = h.element;
  v.hasNode = h.node;
  v.hasPoint = h.point;
  if ((h.element && !r.getI32(&v.element)) || (h.node && !r.getI32(&v.node)) ||
      (h.point && !r.getI32(&v.point)))
    tooShort("field value");
  if (r.remaining() % 4 != 0)
    throw DecodeError("field value record with " + std::to_string(r.remaining()) +
                      " component bytes, not a multiple of 4");
  v.components.resize(r.remaining() / 4);
  for (float& c : v.components) r.getF32(&c);
  return v;
}

RegionRecord decodeRegion(const RecordView& rec) {
  return decodeFields<RegionRecord>(rec, kRecRegion, "region", [](ByteReader& r, RegionRecord& g) {
    return r.getI32(&g.side) && r.getI32(&g.code) && r.getI32(&g.kind) && r.getText(&g.name) &&
           r.getText(&g.instance) && r.getText(&g.pair) && r.getI32(&g.pairKind);
  });
}

void FieldReplyDecoder::add(const RecordView& rec) {
  if (isFieldValueType(rec.type)) {
    FieldValueRecord v = decodeFieldValue(rec);
    if (v.hasElement) current_.element = v.element;
    if (v.hasNode) current_.node = v.node;
    if (v.hasPoint) current_.point = v.point;
    current_.components = std::move(v.components);
    current_.hasOrientation = orientationPending_;
    orientationPending_ = false;
    rows_.push_back(current_);
    return;
  }
  switch (rec.type) {
    case kRecTitle:
      title_ = decodeTitle(rec);
      break;
    case kRecAnalysisCode:
      code_ = decodeAnalysisCode(rec);
      break;
    case kRecInstanceHeader:
      current_.instance = decodeInstanceHeader(rec);
      break;
    case kRecDataClass:
      current_.dataClass = decodeDataClass(rec);
      break;
    case kRecElementType: {
      ElementTypeRecord e = decodeElementType(rec);
      current_.elementType = e.type;
      current_.surfaceTag = e.surfaceTag;
      current_.sectionPoint = e.sectionPoint;
      break;
    }
    case kRecOrientation:
      current_.orientation = decodeOrientation(rec);
      orientationPending_ = true;
      break;
    case kRecRegion: {
      // A region starts the value stream afresh.
      RegionRecord g = decodeRegion(rec);
      current_ = FieldValueRow();
      current_.side = g.side;
      current_.region = g.name;
      orientationPending_ = false;
      break;
    }
    default:
      break;
  }
}

}  // namespace odbs::client
