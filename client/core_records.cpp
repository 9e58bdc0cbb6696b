#include "client/core_records.h"

#include "client/client_error.h"
#include "client/reply_reader.h"
#include "wire/frame.h"

namespace odbs::client {

void expectType(const RecordView& rec, uint8_t type, const char* what) {
  if (rec.type != type) {
    throw DecodeError(std::string(what) + " record expected (type " + typeName(type) +
                      "), got type " + typeName(rec.type));
  }
}

namespace {

void expectConsumed(const ByteReader& r, const char* what) {
  if (!r.atEnd()) {
    throw DecodeError(std::string(what) + " record has " + std::to_string(r.remaining()) +
                      " bytes after its fields");
  }
}

}  // namespace

MessageRecord decodeMessage(const RecordView& rec) {
  expectType(rec, kRecMessage, "message");
  MessageRecord out;
  if (isUpgradeNeeded(rec)) {
    out.upgradeNeeded = true;
    return out;
  }
  ByteReader r = rec.reader();
  if (!r.getText(&out.text)) {
    throw DecodeError("message record: text count runs past the " + std::to_string(rec.size) +
                      "-byte body");
  }
  expectConsumed(r, "message");
  return out;
}

int32_t decodeProcessId(const RecordView& rec) {
  expectType(rec, kRecProcessId, "process-id");
  ByteReader r = rec.reader();
  int32_t pid = 0;
  if (!r.getI32(&pid)) {
    throw DecodeError("process-id record: body of " + std::to_string(rec.size) +
                      " bytes, 4 expected");
  }
  expectConsumed(r, "process-id");
  return pid;
}

void decodeEnd(const RecordView& rec) {
  expectType(rec, kRecEnd, "end");
  if (rec.size != 0) {
    throw DecodeError("end record with a body of " + std::to_string(rec.size) + " bytes");
  }
}

TestRecord decodeTestRecord(const RecordView& rec) {
  expectType(rec, kRecSequenced, "test");
  ByteReader r = rec.reader();
  TestRecord out;
  if (!r.getU32(&out.sequence) || r.remaining() % 4 != 0) {
    throw DecodeError("test record: body of " + std::to_string(rec.size) +
                      " bytes, 4 + 4n expected");
  }
  out.values.resize(r.remaining() / 4);
  for (int32_t& v : out.values) r.getI32(&v);
  return out;
}

}  // namespace odbs::client
