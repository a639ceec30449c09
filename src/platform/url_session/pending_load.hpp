// One load as the caller and the worker thread share it: what is asked, until when, and the place where the result is
// handed over. How the load is done is the worker's business.
#pragma once

#include <atomic>
#include <condition_variable>
#include <expected>
#include <functional>
#include <mutex>
#include <optional>
#include <stop_token>

#include "platform/url_session/request_headers.hpp"
#include "platform/url_session/time_limits.hpp"
#include "platform/url_session/transport_error.hpp"
#include "platform/url_session/url.hpp"
#include "platform/url_session/url_response.hpp"

namespace platform {

using LoadResult = std::expected<DataAndResponse, TransportError>;

TransportError cancelledError();

class PendingLoad {
 public:
  PendingLoad(Url url, RequestHeaders headers, TimeLimits limits);

  const Url& url() const { return url_; }
  const RequestHeaders& headers() const { return headers_; }
  const TimeLimits& limits() const { return limits_; }

  /// Worker: hands over the result. Only the first counts.
  void settle(LoadResult result);

  /// Worker: whether the caller has left and no result is wanted.
  bool isAbandoned() const { return abandoned_.load(std::memory_order_relaxed); }

  /// Caller: waits for the result. On a stop request the load is abandoned, the worker is told by `wakeWorker`, and
  /// the answer is `cancelled`.
  LoadResult await(std::stop_token stop, const std::function<void()>& wakeWorker);

 private:
  const Url url_;
  const RequestHeaders headers_;
  const TimeLimits limits_;
  std::atomic<bool> abandoned_ = false;
  std::mutex mutex_;
  std::condition_variable settled_;
  std::optional<LoadResult> result_;
};

}  // namespace platform
