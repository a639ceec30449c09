#include "platform/url_session/pending_load.hpp"

#include <utility>

namespace platform {

TransportError cancelledError() { return {TransportError::Kind::cancelled, 0, "cancelled"}; }

PendingLoad::PendingLoad(Url url, RequestHeaders headers, base::Deadline deadline)
    : url_(std::move(url)), headers_(std::move(headers)), deadline_(deadline) {}

void PendingLoad::settle(LoadResult result) {
  const std::lock_guard lock(mutex_);
  if (result_) return;
  result_ = std::move(result);
  settled_.notify_one();
}

LoadResult PendingLoad::await(std::stop_token stop, const std::function<void()>& wakeWorker) {
  bool stopped = false;
  const std::stop_callback onStop(std::move(stop), [this, &stopped] {
    const std::lock_guard lock(mutex_);
    stopped = true;
    settled_.notify_one();
  });
  bool isCancelled = false;
  // Lock only after the callback is registered: registering may run it at once. Unlock before it is deregistered: that
  // waits for a running callback.
  {
    std::unique_lock lock(mutex_);
    settled_.wait_until(lock, deadline_.end(), [this, &stopped] { return stopped || result_; });
    if (result_) return *std::move(result_);
    isCancelled = stopped;
  }
  abandoned_.store(true, std::memory_order_relaxed);
  wakeWorker();
  if (isCancelled) return std::unexpected(cancelledError());
  return std::unexpected(TransportError{TransportError::Kind::timedOut, 0, "no answer in time"});
}

void LoadQueue::submit(std::shared_ptr<PendingLoad> load) {
  {
    const std::lock_guard lock(mutex_);
    if (!refusal_) {
      submitted_.push_back(std::move(load));
      wakeLocked();
      return;
    }
  }
  load->settle(std::unexpected(*refusal_));  // never changes again
}

void LoadQueue::wake() {
  const std::lock_guard lock(mutex_);
  wakeLocked();
}

void LoadQueue::end() {
  const std::lock_guard lock(mutex_);
  ending_ = true;
  wakeLocked();
}

void LoadQueue::setWaker(std::function<void()> wakeWorker) {
  const std::lock_guard lock(mutex_);
  wakeWorker_ = std::move(wakeWorker);
}

std::optional<LoadQueue::Loads> LoadQueue::take() {
  Loads loads;
  {
    const std::lock_guard lock(mutex_);
    loads.swap(submitted_);
    if (!ending_) return loads;
  }
  for (const auto& load : loads) load->settle(std::unexpected(cancelledError()));
  return std::nullopt;
}

void LoadQueue::refuse(const TransportError& error) {
  Loads refused;
  {
    const std::lock_guard lock(mutex_);
    refusal_ = error;
    refused.swap(submitted_);
  }
  for (const auto& load : refused) load->settle(std::unexpected(error));
}

}  // namespace platform
