#include "client/frame_reader.h"

#include <algorithm>
#include <cstring>
#include <string>

#include "client/client_error.h"
#include "wire/coding.h"
#include "wire/frame.h"

namespace odbs::client {

namespace {

// One whole frame (2 + 65535 bytes) plus room for large reads.
constexpr size_t kBufferSize = 2 * 65536 + 65536;

}  // namespace

FrameReader::FrameReader(ByteSource& source) : source_(source), buf_(new uint8_t[kBufferSize]) {}

bool FrameReader::fill(size_t need, Deadline deadline) {
  while (available() < need) {
    if (start_ != 0 && kBufferSize - end_ < need - available()) {
      std::memmove(buf_.get(), buf_.get() + start_, available());
      end_ -= start_;
      start_ = 0;
    }
    size_t got = source_.read(buf_.get() + end_, kBufferSize - end_, deadline);
    if (got == 0) return false;
    end_ += got;
  }
  return true;
}

RecordView FrameReader::nextView(Deadline deadline) {
  if (!fill(kFrameHeaderSize, deadline)) {
    if (available() == 0) {
      throw StreamEndError("the reply stream ended after " + std::to_string(consumed_) +
                           " bytes, where a frame was expected");
    }
    throw StreamEndError("the reply stream ended inside a frame count, after " +
                         std::to_string(consumed_) + " bytes");
  }
  size_t count = loadU16(buf_.get() + start_);
  if (count == 0) {
    throw FrameError("frame with count 0 at byte " + std::to_string(consumed_) +
                     ": a frame holds at least its type byte");
  }
  if (!fill(kFrameHeaderSize + count, deadline)) {
    throw StreamEndError("the reply stream ended inside a frame at byte " +
                         std::to_string(consumed_) + ": count " + std::to_string(count) + ", " +
                         std::to_string(available() - kFrameHeaderSize) + " record bytes arrived");
  }
  const uint8_t* rec = buf_.get() + start_ + kFrameHeaderSize;
  RecordView view{rec[0], rec + 1, count - 1};
  consume(kFrameHeaderSize + count);
  return view;
}

std::optional<Record> FrameReader::nextOrEnd(Deadline deadline) {
  if (available() == 0 && !fill(1, deadline)) return std::nullopt;
  return next(deadline);
}

std::vector<uint8_t> FrameReader::readBytes(size_t n, Deadline deadline) {
  std::vector<uint8_t> out;
  out.reserve(std::min<size_t>(n, kBufferSize));
  while (out.size() < n) {
    if (available() == 0 && !fill(1, deadline)) {
      throw StreamEndError("the reply stream ended after " + std::to_string(out.size()) + " of " +
                           std::to_string(n) + " expected bytes");
    }
    size_t take = std::min(available(), n - out.size());
    out.insert(out.end(), buf_.get() + start_, buf_.get() + start_ + take);
    consume(take);
  }
  return out;
}

void FrameReader::skipBytes(size_t n, Deadline deadline) {
  size_t done = 0;
  while (done < n) {
    if (available() == 0 && !fill(1, deadline)) {
      throw StreamEndError("the reply stream ended after " + std::to_string(done) + " of " +
                           std::to_string(n) + " expected bytes");
    }
    size_t take = std::min(available(), n - done);
    consume(take);
    done += take;
  }
}

std::vector<uint8_t> FrameReader::readToEnd(Deadline deadline, size_t maxBytes) {
  std::vector<uint8_t> out;
  for (;;) {
    if (available() == 0 && !fill(1, deadline)) return out;
    if (out.size() + available() > maxBytes) {
      throw ClientError("more than " + std::to_string(maxBytes) +
                        " bytes arrived before the reply stream ended");
    }
    out.insert(out.end(), buf_.get() + start_, buf_.get() + end_);
    consume(available());
  }
}

}  // namespace odbs::client
