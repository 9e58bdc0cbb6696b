// The command dispatcher: one command line in, the handler of its letter run, the reply
// closed with the end record where the command has one.
//
// Commands C, D, d, ho, hb and irc write nothing at all, q ends the process, u writes
// either the upgrade-needed record or the end record; every other line, unknown letters
// and empty lines included, is answered with exactly one end record after whatever its
// handler sent. Exceptions from database handlers are swallowed so that a bad database
// never ends the server.
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
