// Shares the numbered pieces of one job between the calling thread and one helper thread
// that lives as long as the runner. Both take the next piece not yet taken until none is
// left: with a second core free the job takes about half the time, and on a busy machine,
// where the helper may not get a core in time, the caller takes every piece itself and the
// job is no slower than on one thread.
#pragma once

#include <atomic>
#include <condition_variable>
#include <cstddef>
#include <exception>
#include <functional>
#include <mutex>

#include "platform/joinable_thread.h"

namespace odbs::platform {

class PieceRunner {
 public:
  // Starts no thread yet: the helper is started by the first run() of more than one piece.
  PieceRunner() = default;
  // Stops the helper and waits for it.
  ~PieceRunner();
  PieceRunner(const PieceRunner&) = delete;
  PieceRunner& operator=(const PieceRunner&) = delete;

  // Calls piece(i) once for each i in [0, count), on this thread or the helper's, in any
  // order and at the same time; returns when every call has returned. When a call throws,
  // the pieces not yet begun are still called, and the first exception is thrown here once
  // all are done. When no helper thread can be started, every call is made on this thread.
  // One run at a time: run() is not to be called from a piece or from two threads at once.
  void run(size_t count, const std::function<void(size_t)>& piece);

 private:
  // Takes pieces until none is left; records the first exception.
  void work();
  void helperLoop();

  std::mutex mutex_;
  std::condition_variable wake_;      // the helper: a job was offered, or stop
  std::condition_variable finished_;  // the caller: the helper left the job
  const std::function<void(size_t)>* piece_ = nullptr;
  size_t count_ = 0;
  std::atomic<size_t> next_{0};  // the next piece to take
  bool offered_ = false;         // a job waits for the helper to join it
  bool helperWorking_ = false;   // the helper joined the job and has not left it
  bool stop_ = false;
  bool helperFailed_ = false;  // no helper thread could be started
  std::exception_ptr error_;   // the first exception of the current job
  JoinableThread helper_;      // last: joined before the members above go
};

}  // namespace odbs::platform
