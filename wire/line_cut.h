// How the server cuts the bytes it reads into command lines; the client library uses the
// same rule to know which replies a text will produce.
//
// A line ends at a newline or once it holds kMaxCommandLine bytes, or at end of input. Its
// last byte is then dropped: that removes the newline, and also the last real character of
// a line cut by length or by end of input (clients rely on this). A carriage return before
// the newline stays.
#pragma once

#include <cstddef>

namespace odbs {

constexpr size_t kMaxCommandLine = 4095;  // bytes of one command line, newline included

// True when the byte c, stored as the line's stored-th byte (1-based), ends the line.
constexpr bool endsCommandLine(char c, size_t stored) {
  return c == '\n' || stored >= kMaxCommandLine;
}

}  // namespace odbs
