// Decoders of the field value record family (the replies to the field forms of command r):
// data class '%', element type 30, orientation 39 and the eight value records 21, 22, 23,
// 24, 31, 32 ' ', 33 '!', 34 '"'; and FieldReplyDecoder, which follows a whole reply and
// turns it into one row per value with its full place.
//
// Decoders throw DecodeError when the type byte is another one or the body does not have
// the record's layout.
#pragma once

#include <array>
#include <cstdint>
#include <string>
#include <utility>
#include <vector>

#include "client/record.h"
#include "client/record_catalog.h"

namespace odbs::client {

// '%': the data-class code of the values that follow (1 scalar, 2 full tensor, 4 planar
// tensor, 8 surface tensor, 16 vector).
uint32_t decodeDataClass(const RecordView& rec);

// 30: element type of the block that follows (trailing blanks removed), surface tag and
// section point (-1, -1 without section points; 1, 1 for mid-surface values).
struct ElementTypeRecord {
  std::string type;
  int32_t surfaceTag = -1;
  int32_t sectionPoint = -1;
};
ElementTypeRecord decodeElementType(const RecordView& rec);

// 39: rows 0 and 1 of the rotation matrix of the next value's local coordinate system.
std::array<float, 6> decodeOrientation(const RecordView& rec);

// True for the eight value record types.
bool isFieldValueType(uint8_t type);

// A value record: which location numbers it carries, their values and the components
// (for a complex field the conjugate components follow the real ones).
struct FieldValueRecord {
  bool hasElement = false, hasNode = false, hasPoint = false;
  int32_t element = 0, node = 0, point = 0;
  std::vector<float> components;
};
FieldValueRecord decodeFieldValue(const RecordView& rec);

// One value of a field reply with everything the records before it said.
// 96 (rn, rg): the region whose values follow.
struct RegionRecord {
  int32_t side = 0;  // 1 for A, 2 for B
  int32_t code = 0;  // the suffix code asked for
  int32_t kind = 0;  // 1 node set, 2 element set, 3 surface
  std::string name, instance, pair;
  int32_t pairKind = 0;  // 1 contact pair, 2 tie, 0 named directly
};
RegionRecord decodeRegion(const RecordView& rec);

struct FieldValueRow {
  int32_t side = 0;      // rn, rg: the region's side (1 A, 2 B); 0 in other replies
  std::string region;    // rn, rg: the region's name
  std::string instance;  // empty in a single-instance database
  std::string elementType;
  int32_t surfaceTag = -1;
  int32_t sectionPoint = -1;
  uint32_t dataClass = 0;
  int32_t element = 0;
  int32_t point = 0;
  int32_t node = -1;
  std::vector<float> components;
  bool hasOrientation = false;
  std::array<float, 6> orientation{};
};

// Follows the records of one field reply in order. Title and analysis code are kept;
// records of other types are ignored.
class FieldReplyDecoder {
 public:
  void add(const RecordView& rec);
  const std::string& title() const { return title_; }
  int32_t analysisCodeMinus1() const { return code_; }
  const std::vector<FieldValueRow>& rows() const { return rows_; }
  // The rows so far, moved out: the decoder is left without any (for a reader that keeps
  // them, without a copy of every row).
  std::vector<FieldValueRow> takeRows() { return std::move(rows_); }

 private:
  std::string title_;
  int32_t code_ = 0;
  FieldValueRow current_;
  bool orientationPending_ = false;
  std::vector<FieldValueRow> rows_;
};

// Registers describers of these records for replies to r (not rd).
void addFieldRecords(RecordCatalog& catalog);

}  // namespace odbs::client
