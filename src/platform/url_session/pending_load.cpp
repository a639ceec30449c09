#include "platform/url_session/pending_load.hpp"

#include <utility>

namespace platform {

TransportError cancelledError() { return {TransportError::Kind::cancelled, 0, "cancelled"}; }

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
