// Time limits of the client library. Every wait for the server is bounded by a Deadline,
// a point on the monotonic clock; nothing in the library waits without one.
#pragma once

#include <algorithm>
#include <chrono>

namespace odbs::client {

using Clock = std::chrono::steady_clock;
using Deadline = Clock::time_point;

// The point timeoutMs milliseconds from now (negative counts as 0).
inline Deadline deadlineIn(int timeoutMs) {
  return Clock::now() + std::chrono::milliseconds(std::max(timeoutMs, 0));
}

// Milliseconds left until the deadline, 0 once it has passed; capped so that it fits an int.
inline int millisecondsLeft(Deadline deadline) {
  auto left = std::chrono::duration_cast<std::chrono::milliseconds>(deadline - Clock::now());
  return static_cast<int>(std::clamp<long long>(left.count(), 0, 1LL << 30));
}

}  // namespace odbs::client
