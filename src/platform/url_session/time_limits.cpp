#include "platform/url_session/time_limits.hpp"

#include <algorithm>

namespace platform {
namespace {

using Clock = TimeLimits::Clock;

// Far enough to mean "never", near enough that adding it to an instant cannot overflow.
constexpr absl::Duration longestLimit = absl::Hours(24 * 365 * 50);

Clock::duration clockDuration(absl::Duration duration) {
  if (duration >= longestLimit) return Clock::duration::max();
  return absl::ToChronoNanoseconds(std::max(duration, absl::ZeroDuration()));
}

}  // namespace

TimeLimits TimeLimits::from(absl::Duration idle, absl::Duration whole) {
  const auto now = Clock::now();
  const Clock::duration limit = clockDuration(whole);
  return {.idle = clockDuration(idle),
          .begin = now,
          .end = limit == Clock::duration::max() ? Clock::time_point::max() : now + limit};
}

}  // namespace platform
