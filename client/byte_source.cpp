#include "client/byte_source.h"

#include <algorithm>
#include <cstring>
#include <string>

#include "client/client_error.h"
#include "platform/platform.h"

namespace odbs::client {

size_t PipeSource::read(uint8_t* buf, size_t n, Deadline deadline) {
  if (fd_ < 0) throw ClientError("the reply pipe is closed");
  if (!platform::waitReadable(fd_, millisecondsLeft(deadline))) {
    throw TimeoutError("no reply bytes arrived within the time limit");
  }
  long got = platform::readSome(fd_, buf, n);
  if (got < 0) throw ClientError("reading the reply descriptor " + std::to_string(fd_) + " failed");
  return static_cast<size_t>(got);
}

MemorySource::MemorySource(std::vector<uint8_t> bytes, std::vector<size_t> chunkSizes,
                           bool stallAtEnd)
    : bytes_(std::move(bytes)), chunks_(std::move(chunkSizes)), stall_(stallAtEnd) {}

size_t MemorySource::read(uint8_t* buf, size_t n, Deadline) {
  if (pos_ == bytes_.size()) {
    if (stall_) throw TimeoutError("no reply bytes arrived within the time limit");
    return 0;
  }
  size_t take = std::min(n, bytes_.size() - pos_);
  if (!chunks_.empty()) {
    size_t limit = std::max<size_t>(chunks_[nextChunk_], 1);
    nextChunk_ = (nextChunk_ + 1) % chunks_.size();
    take = std::min(take, limit);
  }
  std::memcpy(buf, bytes_.data() + pos_, take);
  pos_ += take;
  return take;
}

}  // namespace odbs::client
