// Where a FrameReader gets its bytes from: the reply pipe of a server (PipeSource) or
// bytes held in memory (MemorySource: captured streams and tests).
#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

#include "client/deadline.h"

namespace odbs::client {

class ByteSource {
 public:
  virtual ~ByteSource() = default;
  // Reads between 1 and n bytes into buf, waiting at most until the deadline. Returns the
  // count, or 0 at the end of the stream. Throws TimeoutError when no byte arrives in time
  // and ClientError when the read fails.
  virtual size_t read(uint8_t* buf, size_t n, Deadline deadline) = 0;
};

// Reads a pipe or other descriptor, which it does not own; a negative descriptor stands
// for a pipe that was closed on this side, and reading it throws ClientError.
class PipeSource : public ByteSource {
 public:
  explicit PipeSource(int fd) : fd_(fd) {}
  size_t read(uint8_t* buf, size_t n, Deadline deadline) override;

 private:
  int fd_;
};

// Hands out a copy of the given bytes in pieces: each read returns at most the next size
// from chunkSizes (cycling; empty means no limit), so that tests can split frames at any
// byte. At the end it reports end of stream, or with stallAtEnd a time-out as a silent
// server would.
class MemorySource : public ByteSource {
 public:
  explicit MemorySource(std::vector<uint8_t> bytes, std::vector<size_t> chunkSizes = {},
                        bool stallAtEnd = false);
  size_t read(uint8_t* buf, size_t n, Deadline deadline) override;

 private:
  std::vector<uint8_t> bytes_;
  std::vector<size_t> chunks_;
  bool stall_;
  size_t pos_ = 0;
  size_t nextChunk_ = 0;
};

}  // namespace odbs::client
