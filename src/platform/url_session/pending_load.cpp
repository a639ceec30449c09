#include "platform/url_session/pending_load.hpp"

#include <utility>

namespace platform {
namespace {

using Clock = TimeLimits::Clock;

// Far enough to mean "never", near enough that adding it to an instant cannot overflow.
constexpr absl::Duration longestLimit = absl::Hours(24 * 365 * 50);

Clock::duration clockDuration(absl::Duration duration) {
  if (duration >= longestLimit) return Clock::duration::max();
  return absl::ToChronoNanoseconds(std::max(duration, absl::ZeroDuration()));
}

Clock::time_point after(Clock::time_point begin, Clock::duration duration) {
  return duration == Clock::duration::max() ? Clock::time_point::max() : begin + duration;
}

}  // namespace

TransportError cancelledError() { return {TransportError::Kind::cancelled, 0, "cancelled"}; }

TimeLimits TimeLimits::from(absl::Duration idle, absl::Duration whole) {
  const auto now = Clock::now();
  return {.idle = clockDuration(idle), .begin = now, .end = after(now, clockDuration(whole))};
}

TimeLimits::Clock::time_point TimeLimits::idleDeadline(Clock::time_point lastByte) const {
  return after(lastByte, idle);
}

PendingLoad::PendingLoad(Url url, RequestHeaders headers, TimeLimits limits)
    : url_(std::move(url)), headers_(std::move(headers)), limits_(limits) {}

void PendingLoad::settle(LoadResult result) {
  {
    const std::lock_guard lock(mutex_);
    if (result_) return;
    result_ = std::move(result);
  }
  settled_.notify_one();  // without the lock, for which the caller would only have to wait again
}

LoadResult PendingLoad::await(std::stop_token stop, const std::function<void()>& wakeWorker) {
  bool stopped = false;
  const std::stop_callback onStop(std::move(stop), [this, &stopped] {
    {
      const std::lock_guard lock(mutex_);
      stopped = true;
    }
    settled_.notify_one();
  });
  // Locked after the callback is registered, which may run it at once, and let go before the callback is taken back,
  // which waits for one that runs.
  {
    std::unique_lock lock(mutex_);
    settled_.wait(lock, [this, &stopped] { return stopped || result_; });
    if (result_) return *std::move(result_);
  }
  abandoned_.store(true, std::memory_order_relaxed);
  wakeWorker();
  return std::unexpected(cancelledError());
}

}  // namespace platform
