// A load's limits, counted from the moment of the call.
#pragma once

#include <chrono>

#include <absl/time/time.h>

namespace platform {

struct TimeLimits {
  using Clock = std::chrono::steady_clock;

  /// Longest wait without a byte; Clock::duration::max() for no limit.
  Clock::duration idle;
  Clock::time_point begin;
  /// When the whole load must be over; Clock::time_point::max() for no limit.
  Clock::time_point end;

  /// Begins now. Durations too long for the clock count as no limit.
  static TimeLimits from(absl::Duration idle, absl::Duration whole);

  Clock::time_point idleDeadline(Clock::time_point lastByte) const {
    return idle == Clock::duration::max() ? Clock::time_point::max() : lastByte + idle;
  }
};

}  // namespace platform
