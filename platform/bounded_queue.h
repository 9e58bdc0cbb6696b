// A queue between two threads that holds at most a fixed number of items: the producer
// waits while it is full, the consumer while it is empty. Its slots are allocated once, so
// neither push nor pop allocates (nor throws, for items whose moves do not throw).
#pragma once

#include <condition_variable>
#include <cstddef>
#include <mutex>
#include <utility>
#include <vector>

namespace odbs::platform {

// Items are moved in and out. Thread-safe; not copyable.
template <typename T>
class BoundedQueue {
 public:
  explicit BoundedQueue(size_t capacity) : slots_(capacity < 1 ? 1 : capacity) {}
  BoundedQueue(const BoundedQueue&) = delete;
  BoundedQueue& operator=(const BoundedQueue&) = delete;

  // Appends item, waiting while the queue is full. Returns false, dropping the item, once
  // the queue is closed.
  bool push(T item) {
    std::unique_lock<std::mutex> lock(mutex_);
    notFull_.wait(lock, [this] { return closed_ || count_ < slots_.size(); });
    if (closed_) return false;
    slots_[(first_ + count_) % slots_.size()] = std::move(item);
    ++count_;
    notEmpty_.notify_one();
    return true;
  }

  // Takes the oldest item into *out, waiting while the queue is empty and open. Returns
  // false when the queue is closed and holds nothing more.
  bool pop(T* out) {
    std::unique_lock<std::mutex> lock(mutex_);
    notEmpty_.wait(lock, [this] { return closed_ || count_ > 0; });
    if (count_ == 0) return false;
    *out = std::move(slots_[first_]);
    slots_[first_] = T();
    first_ = (first_ + 1) % slots_.size();
    --count_;
    notFull_.notify_one();
    return true;
  }

  // Refuses further pushes; pop still hands out the items queued before. With discard,
  // those items are dropped at once instead.
  void close(bool discard = false) {
    std::lock_guard<std::mutex> lock(mutex_);
    closed_ = true;
    if (discard) {
      for (; count_ > 0; --count_, first_ = (first_ + 1) % slots_.size()) slots_[first_] = T();
    }
    notFull_.notify_all();
    notEmpty_.notify_all();
  }

 private:
  std::mutex mutex_;
  std::condition_variable notFull_, notEmpty_;
  std::vector<T> slots_;  // a ring: count_ items from slots_[first_] on
  size_t first_ = 0, count_ = 0;
  bool closed_ = false;
};

}  // namespace odbs::platform
