// What the callers' threads share with the session's worker: a load that is pending, and the queue of loads.
#pragma once

#include <atomic>
#include <condition_variable>
#include <functional>
#include <memory>
#include <mutex>
#include <optional>
#include <stop_token>
#include <vector>

#include "base/tasks/deadline.hpp"
#include "platform/url/url.hpp"
#include "platform/url_session/load_result.hpp"
#include "platform/url_session/request_headers.hpp"

namespace platform {

TransportError cancelledError();

class PendingLoad {
 public:
  PendingLoad(Url url, RequestHeaders headers, base::Deadline deadline);

  const Url& url() const { return url_; }
  const RequestHeaders& headers() const { return headers_; }

  /// Worker: hands over the result. Only the first counts.
  void settle(LoadResult result);

  /// Worker: whether the caller has left and no result is wanted.
  bool isAbandoned() const { return abandoned_.load(std::memory_order_relaxed); }

  /// Caller: waits for the result. If a stop is requested or the deadline passes first, it abandons the load, calls
  /// `wakeWorker` and returns `cancelled` or `timedOut`, without waiting for the worker.
  LoadResult await(std::stop_token stop, const std::function<void()>& wakeWorker);

 private:
  const Url url_;
  const RequestHeaders headers_;
  const base::Deadline deadline_;
  std::atomic<bool> abandoned_ = false;
  std::mutex mutex_;
  std::condition_variable settled_;
  std::optional<LoadResult> result_;
};

class LoadQueue {
 public:
  using Loads = std::vector<std::shared_ptr<PendingLoad>>;

  // Any thread.

  /// Every submitted load is settled: by the worker, or here once the queue refuses loads.
  void submit(std::shared_ptr<PendingLoad> load);
  /// Makes the worker check for abandoned loads.
  void wake();
  /// Makes the worker end.
  void end();

  // The worker.

  /// `wakeWorker` has to end the worker's wait. It is called on any thread, never by two at once. An empty function
  /// means that the worker no longer waits.
  void setWaker(std::function<void()> wakeWorker);
  /// What was submitted since the last call. Absent when the session is ending; the rest is then settled with
  /// `cancelled`.
  std::optional<Loads> take();
  /// Settles what was submitted, and everything submitted later, with this error.
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
