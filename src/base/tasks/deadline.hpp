// One point in time that all waits of an operation share, so that the operation as a whole is bounded, not each step.
#pragma once

#include <algorithm>
#include <chrono>

namespace base {

/// On the monotonic clock: setting the machine's time does not move it.
///
///     const auto load = base::Deadline::after(12s);
///     const auto call = std::min(base::Deadline::after(2s), load);  // two seconds, and never past the load's end
class Deadline {
 public:
  using Clock = std::chrono::steady_clock;

  static Deadline never() { return Deadline(Clock::time_point::max()); }

  /// A duration beyond the clock's range counts as `never`.
  static Deadline after(Clock::duration duration) {
    const auto now = Clock::now();
    return duration >= Clock::time_point::max() - now ? never() : Deadline(now + duration);
  }

  /// The instant that lies this much later.
  Deadline plus(Clock::duration duration) const { return *this == never() ? never() : Deadline(end_ + duration); }

  bool passed() const { return Clock::now() >= end_; }
  Clock::time_point end() const { return end_; }

  /// Never less than zero.
  std::chrono::microseconds left() const {
    const auto left = std::chrono::duration_cast<std::chrono::microseconds>(end_ - Clock::now());
    return std::max(left + std::chrono::microseconds(1), std::chrono::microseconds::zero());
  }

  auto operator<=>(const Deadline&) const = default;

 private:
  explicit Deadline(Clock::time_point end) : end_(end) {}

  Clock::time_point end_;
};

}  // namespace base
