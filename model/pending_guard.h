// Drops the records that a handler left in the pending buffer when it ends by an exception:
// the dispatcher writes the end record and goes on, and a later reply must not carry them.
#pragma once

#include <exception>

#include "context/reply_channel.h"

namespace odbs {

class PendingGuard {
 public:
  explicit PendingGuard(ReplyChannel& out) : out_(out), exceptions_(std::uncaught_exceptions()) {}
  ~PendingGuard() {
    if (std::uncaught_exceptions() > exceptions_) out_.discardPending();
  }
  PendingGuard(const PendingGuard&) = delete;
  PendingGuard& operator=(const PendingGuard&) = delete;

 private:
  ReplyChannel& out_;
  int exceptions_;
};

}  // namespace odbs
