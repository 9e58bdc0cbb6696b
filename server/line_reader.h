// Splits the command descriptor's byte stream into command lines.
//
// Input is read in blocks of kInputBlockSize bytes and split here, never byte by byte from
// the descriptor. A line ends at a newline, after kMaxCommandLine characters, or at end of
// input. The last stored character is then cleared: that removes the newline, and also the
// last real character of a line cut by length or by end of input (clients rely on this).
// A carriage return before the newline stays.
#pragma once

#include <cstddef>

#include "wire/line_cut.h"

namespace odbs {

constexpr size_t kInputBlockSize = 4096;  // command input is read in blocks of this size

class LineReader {
 public:
  // Reads from fd, which the reader does not own.
  explicit LineReader(int fd) : fd_(fd) {}

  // Reads the next line into line (zero-terminated, at most kMaxCommandLine - 1 characters
  // after clearing). Returns false at end of input before the first byte of a line, or on
  // a read error other than an interruption: the caller then ends the process.
  bool next(char (&line)[kMaxCommandLine + 1]);

 private:
  int fd_;
  char block_[kInputBlockSize];
  long unread_ = 0;
  long pos_ = 0;
};

}  // namespace odbs
