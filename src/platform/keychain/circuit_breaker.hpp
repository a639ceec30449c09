// Remembers that a service did not answer, so that the next calls do not wait for it again.
#pragma once

#include <chrono>
#include <functional>
#include <mutex>
#include <optional>
#include <utility>

namespace platform {

/// A monotonic clock: setting the machine's time does not move it.
using MonotonicClock = std::function<std::chrono::steady_clock::time_point()>;

/// Safe to use from many threads.
class CircuitBreaker {
 public:
  CircuitBreaker(std::chrono::steady_clock::duration pause, MonotonicClock clock)
      : pause_(pause), clock_(std::move(clock)) {}

  void trip() {
    const std::lock_guard lock(mutex_);
    openUntil_ = clock_() + pause_;
  }

  /// Whether calls should fail at once.
  bool open() {
    const std::lock_guard lock(mutex_);
    return openUntil_ && clock_() < *openUntil_;
  }

 private:
  const std::chrono::steady_clock::duration pause_;
  const MonotonicClock clock_;
  std::mutex mutex_;
  std::optional<std::chrono::steady_clock::time_point> openUntil_;
};

}  // namespace platform
