// Reply records: composing one record and sending it over the reply descriptor.
//
// Two layers. RecordBuilder composes one record (type byte and body, at most
// kRecordBufferSize bytes) with typed little-endian writers. ReplyChannel frames records
// (16-bit count, then the record) and writes them either one per write (send*) or gathered
// in the pending output buffer (queue*), which is written in pieces of fewer than
// kPendingFlushLimit bytes.
//
// Rule for handlers: flush() before returning after queuing, so that the end record the
// dispatcher writes arrives after everything queued; never interleave direct sends and
// queued records without a flush between them.
#pragma once

#include <algorithm>
#include <cassert>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <string_view>

#include "wire/coding.h"
#include "wire/frame.h"
#include "wire/record_types.h"

namespace odbs {

// The largest record the server composes (type byte + body).
constexpr size_t kRecordBufferSize = 10240;

// The pending output buffer: its size, and the limit that pending bytes plus one more
// framed record must stay below, or the pending bytes are written first.
constexpr size_t kPendingBufferSize = 40961;
constexpr size_t kPendingFlushLimit = 40950;

class RecordBuilder {
 public:
  explicit RecordBuilder(uint8_t type) { buf_[0] = type; }

  // Each writer appends one value. A value that does not fit in the record buffer is
  // dropped whole and the builder marks itself malformed (the body lost its layout); a
  // text is cut to what fits and its count says so, which leaves the record well-formed.
  RecordBuilder& i32(int32_t v) {
    return fixed(4, [v](uint8_t* p) { putI32(p, v); });
  }
  RecordBuilder& u32(uint32_t v) {
    return fixed(4, [v](uint8_t* p) { putU32(p, v); });
  }
  RecordBuilder& f32(float v) {
    return fixed(4, [v](uint8_t* p) { putF32(p, v); });
  }
  RecordBuilder& f64(double v) {
    return fixed(8, [v](uint8_t* p) { putF64(p, v); });
  }
  RecordBuilder& u8(uint8_t v) {
    return fixed(1, [v](uint8_t* p) { putU8(p, v); });
  }
  RecordBuilder& bytes(const void* src, size_t n);
  RecordBuilder& text(std::string_view s);  // counted text: u32 count, bytes

  uint8_t type() const { return buf_[0]; }
  const uint8_t* data() const { return buf_; }   // type byte, then body
  size_t size() const { return len_; }           // 1 + body length
  bool truncated() const { return truncated_; }  // a text was cut or a value dropped
  bool malformed() const { return malformed_; }  // a value was dropped whole

 private:
  template <typename F>
  RecordBuilder& fixed(size_t n, F put) {
    if (kRecordBufferSize - len_ < n) return drop();
    put(buf_ + len_);
    len_ += n;
    return *this;
  }

  RecordBuilder& drop() {
    truncated_ = malformed_ = true;
    return *this;
  }

  uint8_t buf_[kRecordBufferSize];
  size_t len_ = 1;
  bool truncated_ = false;
  bool malformed_ = false;
};

class ReplyChannel {
 public:
  // Writes to fd, which the channel does not own. Allocates the pending output buffer.
  explicit ReplyChannel(int fd);
  ReplyChannel(const ReplyChannel&) = delete;
  ReplyChannel& operator=(const ReplyChannel&) = delete;

  int fd() const { return fd_; }

  // ---- One write per record ----
  // send and queue throw std::length_error, writing nothing, for a malformed record.
  void send(const RecordBuilder& rec);
  // A counted-text record of the given type (the message record '|' by default).
  void sendText(std::string_view text, uint8_t type = kRecMessage);
  void sendEnd();

  // ---- Gathered in the pending output buffer ----
  void queue(const RecordBuilder& rec);
  void queueText(std::string_view text, uint8_t type);
  // Reserves a framed record of the given type and body length in the pending buffer and
  // returns where its body starts; the caller fills exactly bodyLen bytes. For fixed-size
  // bulk records (nodes, elements, values) without an intermediate copy.
  // Precondition: bodyLen < kRecordBufferSize. Inline: it runs once per bulk record.
  uint8_t* queueFixed(uint8_t type, size_t bodyLen) {
    assert(bodyLen < kRecordBufferSize);
    uint8_t* record = reserve(1 + std::min(bodyLen, kRecordBufferSize - 1));
    *record = type;
    return record + 1;
  }
  // Writes the pending bytes, if any, with one write.
  void flush();
  // Forgets the pending bytes without writing them.
  void discardPending() { pending_len_ = 0; }

  // The pending buffer as it stands (the raw-write throughput test sends it unframed).
  const uint8_t* pendingBuffer() const { return pending_.get(); }
  size_t pendingLength() const { return pending_len_; }

  // The raw writers the layers above rest on. record = type byte + body.
  // Precondition: 1 <= len <= kRecordBufferSize.
  void sendRaw(const uint8_t* record, size_t len);
  void queueRaw(const uint8_t* record, size_t len);
  void writeBytes(const void* data, size_t len);

 private:
  // The one way into the pending buffer: makes room for a framed record of len bytes (type
  // byte + body), writing the pending bytes first when pending + len would reach
  // kPendingFlushLimit; stores the count and returns where the record goes.
  uint8_t* reserve(size_t len) {
    if (pending_len_ + len >= kPendingFlushLimit) flush();
    uint8_t* record = putU16(pending_.get() + pending_len_, static_cast<uint16_t>(len));
    pending_len_ += kFrameHeaderSize + len;
    return record;
  }

  int fd_;
  std::unique_ptr<uint8_t[]> pending_;
  size_t pending_len_ = 0;
};

}  // namespace odbs
