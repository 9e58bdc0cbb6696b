// A thread that its owner starts and joins: for work handed off within one command, which
// must be over before the command's reply ends (unlike startThread's detached threads).
#pragma once

#include <functional>
#include <memory>

namespace odbs::platform {

// Runs one body on its own thread. Not copyable. The destructor joins, so a thread never
// outlives its owner.
class JoinableThread {
 public:
  JoinableThread();
  ~JoinableThread();
  JoinableThread(const JoinableThread&) = delete;
  JoinableThread& operator=(const JoinableThread&) = delete;

  // Starts body unless a thread is already running. Returns false when none could be
  // started (the body is then not run). An exception that leaves body ends the process.
  bool start(std::function<void()> body);
  // True from a successful start until join.
  bool started() const;
  // Waits until the body has returned. Does nothing when no thread was started.
  void join();

 private:
  struct Impl;
  std::unique_ptr<Impl> impl_;
};

}  // namespace odbs::platform
