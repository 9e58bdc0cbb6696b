// Decoders of the records that belong to the server core: the message text '|', the
// process id '}', the end record '~' and the '"' record of the framed throughput test m.
//
// Each decoder takes a record of its type and returns its fields. It throws DecodeError
// when the type byte is another one or the body does not have the expected layout
// (too short, trailing bytes, a text count running past the end). Decoders of the model,
// catalogue, field and history records live in files of their own beside this one.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "client/record.h"

namespace odbs::client {

// '|': counted text for the user. The upgrade-needed record (text count 1, no text byte)
// decodes as upgradeNeeded with an empty text.
struct MessageRecord {
  std::string text;
  bool upgradeNeeded = false;
};
MessageRecord decodeMessage(const RecordView& rec);

// '}': the server's process id.
int32_t decodeProcessId(const RecordView& rec);

// '~': no body. Throws DecodeError for any other record.
void decodeEnd(const RecordView& rec);

// '"' in the reply to m: the record's sequence number (0, 1, ...), then the test integers
// 0, 1, ..., n - 1.
struct TestRecord {
  uint32_t sequence = 0;
  std::vector<int32_t> values;
};
TestRecord decodeTestRecord(const RecordView& rec);

// Throws DecodeError unless rec has type `type`; `what` names the record in the message.
void expectType(const RecordView& rec, uint8_t type, const char* what);

// Throws DecodeError unless ok (every field was read) and r has read the whole body.
void expectFields(bool ok, const ByteReader& r, const RecordView& rec, const char* what);

// A record of type `type` whose body is exactly the fields that read(ByteReader&, T&) reads
// in order (read returns false when the body ends first). Returns the value read; throws
// DecodeError naming `what` on another type, a body too short or bytes left over.
template <typename T, typename Read>
T decodeFields(const RecordView& rec, uint8_t type, const char* what, Read read) {
  expectType(rec, type, what);
  ByteReader r = rec.reader();
  T value{};
  expectFields(read(r, value), r, rec, what);
  return value;
}

}  // namespace odbs::client
