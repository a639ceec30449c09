// The session's worker: one thread that alone drives every transfer, sharing connections between them, and keeps the
// loads' limits. It sleeps until a socket, a caller or a deadline needs it.
#pragma once

#include <cstddef>
#include <memory>
#include <mutex>
#include <optional>
#include <set>
#include <string>
#include <thread>
#include <utility>
#include <vector>

#include "platform/url_session/exchange.hpp"
#include "platform/url_session/pending_load.hpp"
#include "platform/url_session/trusted_roots.hpp"

namespace platform {

struct TransferLoopSettings {
  std::size_t longestBody;
  std::string trustedRootsFile;
};

class TransferLoop {
 public:
  /// Starts the worker and returns at once; the library is loaded on it, beside whatever the caller does next. Null
  /// when the thread cannot be started.
  static std::unique_ptr<TransferLoop> start(TransferLoopSettings settings);

  /// Settles every load that is not over with `cancelled` and joins the thread.
  ~TransferLoop();

  TransferLoop(const TransferLoop&) = delete;
  TransferLoop& operator=(const TransferLoop&) = delete;

  /// Any thread: begins a load.
  void submit(std::shared_ptr<PendingLoad> load);

  /// Any thread: makes the worker look for abandoned loads.
  void wake();

 private:
  using Clock = TimeLimits::Clock;
  using Exchanges = std::vector<std::unique_ptr<Exchange>>;

  struct FreeMulti {
    void operator()(CURLM* multi) const { curl_multi_cleanup(multi); }
  };

  explicit TransferLoop(TransferLoopSettings settings) : settings_(std::move(settings)) {}

  void run();
  bool openLibrary();
  bool takeSubmitted();
  void begin(const std::shared_ptr<PendingLoad>& load);
  void collectFinished();
  void giveUpOverdueAndAbandoned();
  void finish(Exchange& exchange, LoadResult result);
  void rememberProtocol(const Exchange& exchange);
  void cancelAll();
  const TrustedRoots& rootsFor(const Url& url);
  int waitMilliseconds() const;

  const TransferLoopSettings settings_;

  std::mutex mutex_;  // guards the four below
  std::vector<std::shared_ptr<PendingLoad>> submitted_;
  bool ending_ = false;
  bool refusing_ = false;      // the library could not be loaded
  CURLM* wakeable_ = nullptr;  // the worker's multi handle, once it can be woken

  // The worker's own.
  std::unique_ptr<CURLM, FreeMulti> multi_;
  Exchanges exchanges_;
  std::set<std::string> originsWithHttp2_;
  std::optional<TrustedRoots> roots_;

  std::thread worker_;
};

}  // namespace platform
