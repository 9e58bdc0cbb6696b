#include "platform/piece_runner.h"

namespace odbs::platform {

PieceRunner::~PieceRunner() {
  {
    std::lock_guard<std::mutex> lock(mutex_);
    stop_ = true;
  }
  wake_.notify_one();
  helper_.join();
}

void PieceRunner::work() {
  for (size_t i; (i = next_.fetch_add(1, std::memory_order_relaxed)) < count_;) {
    try {
      (*piece_)(i);
    } catch (...) {
      std::lock_guard<std::mutex> lock(mutex_);
      if (!error_) error_ = std::current_exception();
    }
  }
}

void PieceRunner::helperLoop() {
  std::unique_lock<std::mutex> lock(mutex_);
  while (true) {
    wake_.wait(lock, [this] { return stop_ || offered_; });
    if (stop_) return;
    offered_ = false;
    helperWorking_ = true;
    lock.unlock();
    work();
    lock.lock();
    helperWorking_ = false;
    finished_.notify_one();
  }
}

void PieceRunner::run(size_t count, const std::function<void(size_t)>& piece) {
  if (count > 1 && !helper_.started() && !helperFailed_) {
    helperFailed_ = !helper_.start([this] { helperLoop(); });
  }
  const bool offer = count > 1 && helper_.started();
  {
    std::lock_guard<std::mutex> lock(mutex_);
    piece_ = &piece;
    count_ = count;
    next_.store(0, std::memory_order_relaxed);
    error_ = nullptr;
    offered_ = offer;
  }
  if (offer) wake_.notify_one();
  work();
  std::exception_ptr error;
  {
    std::unique_lock<std::mutex> lock(mutex_);
    // A helper that has not joined yet is not waited for: this thread took every piece.
    offered_ = false;
    finished_.wait(lock, [this] { return !helperWorking_; });
    error = error_;
    error_ = nullptr;
  }
  if (error) std::rethrow_exception(error);
}

}  // namespace odbs::platform
