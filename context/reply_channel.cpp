#include "context/reply_channel.h"

#include <algorithm>
#include <cstring>

#include "platform/platform.h"

namespace odbs {

RecordBuilder& RecordBuilder::bytes(const void* src, size_t n) {
  if (kRecordBufferSize - len_ < n) {
    truncated_ = true;
    return *this;
  }
  len_ = static_cast<size_t>(putBytes(buf_ + len_, src, n) - buf_);
  return *this;
}

RecordBuilder& RecordBuilder::text(std::string_view s) {
  if (kRecordBufferSize - len_ < 4) {
    truncated_ = true;
    return *this;
  }
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

void ReplyChannel::sendRaw(const uint8_t* record, size_t len) {
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
  len = std::min(len, kRecordBufferSize);
  if (pending_len_ + len >= kPendingFlushLimit) flush();
  uint8_t* p = putU16(pending_.get() + pending_len_, static_cast<uint16_t>(len));
  std::memcpy(p, record, len);
  pending_len_ += kFrameHeaderSize + len;
}

void ReplyChannel::queueText(std::string_view text, uint8_t type) {
  queue(RecordBuilder(type).text(text));
}

uint8_t* ReplyChannel::queueFixed(uint8_t type, size_t bodyLen) {
  size_t len = 1 + std::min(bodyLen, kRecordBufferSize - 1);
  if (pending_len_ + len >= kPendingFlushLimit) flush();
  uint8_t* p = putU16(pending_.get() + pending_len_, static_cast<uint16_t>(len));
  *p = type;
  pending_len_ += kFrameHeaderSize + len;
  return p + 1;
}

void ReplyChannel::flush() {
  if (pending_len_ == 0) return;
  writeBytes(pending_.get(), pending_len_);
  pending_len_ = 0;
}

}  // namespace odbs
