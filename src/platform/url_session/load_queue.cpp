#include "platform/url_session/load_queue.hpp"

#include <utility>

namespace platform {

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
