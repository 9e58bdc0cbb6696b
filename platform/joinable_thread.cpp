// One implementation for every system: the standard library's thread wraps the system's.
#include "platform/joinable_thread.h"

#include <system_error>
#include <thread>

namespace odbs::platform {

struct JoinableThread::Impl {
  std::thread thread;
};

JoinableThread::JoinableThread() : impl_(std::make_unique<Impl>()) {}

JoinableThread::~JoinableThread() {
  join();
}

bool JoinableThread::start(std::function<void()> body) {
  if (started()) return false;
  try {
    impl_->thread = std::thread(std::move(body));
  } catch (const std::system_error&) {
    return false;
  }
  return true;
}

bool JoinableThread::started() const {
  return impl_->thread.joinable();
}

void JoinableThread::join() {
  if (impl_->thread.joinable()) impl_->thread.join();
}

}  // namespace odbs::platform
