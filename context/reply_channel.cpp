#include "context/reply_channel.h"

#include <algorithm>
#include <cassert>
#include <cstring>
#include <stdexcept>
#include <string>

#include "platform/platform.h"

namespace odbs {

RecordBuilder& RecordBuilder::bytes(const void* src, size_t n) {
  if (kRecordBufferSize - len_ < n) return drop();
  len_ = static_cast<size_t>(putBytes(buf_ + len_, src, n) - buf_);
  return *this;
}

RecordBuilder& RecordBuilder::text(std::string_view s) {
  if (kRecordBufferSize - len_ < 4) return drop();
  size_t room = kRecordBufferSize - len_ - 4;
  if (s.size() > room) {
    s = s.substr(0, room);
    truncated_ = true;
  }
  len_ = static_cast<size_t>(putText(buf_ + len_, s) - buf_);
  return *this;
}

ReplyChannel::ReplyChannel(int fd) : fd_(fd), pending_(new uint8_t[kPendingBufferSize]()) {}

void ReplyChannel::writeBytes(const void* data, size_t len) {
  platform::writeAll(fd_, data, len);
}

namespace {

void refuseMalformed(const RecordBuilder& rec) {
  if (rec.malformed()) {
    throw std::length_error("record of type " + std::to_string(rec.type()) +
                            " does not fit in one frame");
  }
}

}  // namespace

void ReplyChannel::send(const RecordBuilder& rec) {
  refuseMalformed(rec);
  sendRaw(rec.data(), rec.size());
}

void ReplyChannel::queue(const RecordBuilder& rec) {
  refuseMalformed(rec);
  queueRaw(rec.data(), rec.size());
}

void ReplyChannel::sendRaw(const uint8_t* record, size_t len) {
  assert(len >= 1 && len <= kRecordBufferSize);
  uint8_t frame[kFrameHeaderSize + kRecordBufferSize];
  len = std::min(len, kRecordBufferSize);
  putU16(frame, static_cast<uint16_t>(len));
  std::memcpy(frame + kFrameHeaderSize, record, len);
  writeBytes(frame, len + kFrameHeaderSize);
}

void ReplyChannel::sendText(std::string_view text, uint8_t type) {
  send(RecordBuilder(type).text(text));
}

void ReplyChannel::sendEnd() {
  writeBytes(kEndFrame, sizeof kEndFrame);
}

void ReplyChannel::queueRaw(const uint8_t* record, size_t len) {
  assert(len >= 1 && len <= kRecordBufferSize);
  len = std::min(len, kRecordBufferSize);
  std::memcpy(reserve(len), record, len);
}

void ReplyChannel::queueText(std::string_view text, uint8_t type) {
  // As RecordBuilder(type).text(text), composed in place: the text cut to what one record
  // holds after its type byte and count.
  text = text.substr(0, std::min(text.size(), kRecordBufferSize - 1 - 4));
  putText(queueFixed(type, 4 + text.size()), text);
}

void ReplyChannel::flush() {
  if (pending_len_ == 0) return;
  writeBytes(pending_.get(), pending_len_);
  pending_len_ = 0;
}

}  // namespace odbs
