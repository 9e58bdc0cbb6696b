// Splits a byte stream into reply frames: a 16-bit little-endian count, a type byte, and
// count - 1 body bytes.
//
// Bounded: the reader holds at most one frame (under 64 KiB) plus one read's worth of
// bytes, whatever the stream holds. Every call takes a deadline and throws TimeoutError
// when the bytes it needs do not arrive in time. A frame with count 0 throws FrameError (it
// has no room for its type byte); a stream that ends inside a frame throws StreamEndError
// saying how much of the frame had arrived.
//
// Also reads unframed bytes, for output that the server writes without frames (the raw
// throughput test) and for checks of the exact bytes on the wire.
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <vector>

#include "client/byte_source.h"
#include "client/deadline.h"
#include "client/record.h"

namespace odbs::client {

class FrameReader {
 public:
  // Reads from source, which must outlive the reader.
  explicit FrameReader(ByteSource& source);

  // The next record. The view's body points into the reader's buffer and stays valid until
  // the next call on the reader. Throws StreamEndError at the end of the stream, also at a
  // frame boundary.
  RecordView nextView(Deadline deadline);
  Record next(Deadline deadline) { return Record::copyOf(nextView(deadline)); }

  // The next record, or nothing when the stream ends cleanly at a frame boundary.
  std::optional<Record> nextOrEnd(Deadline deadline);

  // Exactly n unframed bytes. Throws StreamEndError when the stream ends first.
  std::vector<uint8_t> readBytes(size_t n, Deadline deadline);
  // Reads and drops exactly n unframed bytes without holding them.
  void skipBytes(size_t n, Deadline deadline);
  // Every byte up to the end of the stream. Throws ClientError when more than maxBytes
  // arrive, TimeoutError when the stream does not end in time.
  std::vector<uint8_t> readToEnd(Deadline deadline, size_t maxBytes = 1 << 20);

  // Bytes handed out so far (frames and unframed reads).
  uint64_t bytesConsumed() const { return consumed_; }

 private:
  // Makes at least need bytes available; returns false when the stream ends first.
  bool fill(size_t need, Deadline deadline);
  size_t available() const { return end_ - start_; }
  void consume(size_t n) {
    start_ += n;
    consumed_ += n;
  }

  ByteSource& source_;
  std::unique_ptr<uint8_t[]> buf_;
  size_t start_ = 0;
  size_t end_ = 0;
  uint64_t consumed_ = 0;
};

}  // namespace odbs::client
