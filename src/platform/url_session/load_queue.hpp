// The loads on their way from the callers' threads to the session's worker. How they are done is the worker's business.
#pragma once

#include <functional>
#include <memory>
#include <mutex>
#include <optional>
#include <vector>

#include "platform/url_session/pending_load.hpp"

namespace platform {

class LoadQueue {
 public:
  using Loads = std::vector<std::shared_ptr<PendingLoad>>;

  // Any thread.

  /// Every load that is submitted is settled: by the worker, or here once the queue is refusing.
  void submit(std::shared_ptr<PendingLoad> load);
  /// Makes the worker look for abandoned loads.
  void wake();
  /// Makes the worker end.
  void end();

  // The worker.

  /// From now on `wakeWorker`, called on any thread and never by two at once, ends the worker's wait. Until the first,
  /// nobody needs to call it: the worker looks for loads once it can wait. An empty one ends that.
  void setWaker(std::function<void()> wakeWorker);
  /// What was submitted since; absent when the session is ending, and whatever still came is settled with `cancelled`.
  std::optional<Loads> take();
  /// Settles what was submitted, and all that comes later, with this error.
  void refuse(const TransportError& error);

 private:
  void wakeLocked() const {
    if (wakeWorker_) wakeWorker_();
  }

  std::mutex mutex_;  // guards all below
  Loads submitted_;
  bool ending_ = false;
  std::optional<TransportError> refusal_;
  std::function<void()> wakeWorker_;
};

}  // namespace platform
