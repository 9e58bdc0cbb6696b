// The command dispatcher: one command line in, the handler of its row of the command table
// (wire/command_table.h) run, the reply closed as the row's reply kind says.
//
// Commands C, D, d, ho, hb and irc write nothing at all, q ends the process, u writes
// either the upgrade-needed record or the end record; every other line, unknown letters
// and empty lines included, is answered with exactly one end record after whatever its
// handler sent.
//
// The dispatcher alone decides what happens when a handler ends by an exception: the
// exception is dropped without a word (a bad database never ends the server), records
// still pending are written before the end record, except for the model family (G, g, S,
// s, irs, irf, is), whose pending records are dropped, and the reply is closed as usual.
#pragma once

#include "context/command_state.h"
#include "context/reply_channel.h"

namespace odbs {

class Dispatcher {
 public:
  // Replies go to outFd, which the dispatcher does not own.
  explicit Dispatcher(int outFd) : out_(outFd) {}

  // Runs one command line (zero-terminated, newline removed). Returns only if the command
  // does not end the process.
  void run(const char* line);

  CommandState& state() { return state_; }
  ReplyChannel& out() { return out_; }

 private:
  ReplyChannel out_;
  CommandState state_;
};

// Reads command lines from inFd and runs them until end of input or q; ends the process
// with status 0 and never returns.
[[noreturn]] void runCommandLoop(int inFd, int outFd);

}  // namespace odbs
