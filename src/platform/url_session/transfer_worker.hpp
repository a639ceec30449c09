// The session's worker: the thread on which every load is carried out.
#pragma once

#include <memory>
#include <thread>
#include <utility>

#include "platform/url_session/pending_load.hpp"
#include "platform/url_session/transfer_loop.hpp"

namespace platform {

class TransferWorker {
 public:
  /// Starts the thread and returns at once. The thread initialises the HTTP library while the caller goes on.
  /// Null when the thread cannot be started.
  static std::unique_ptr<TransferWorker> start(TransferSettings settings);

  /// Settles every load that is not over with `cancelled` and joins the thread.
  ~TransferWorker();

  TransferWorker(const TransferWorker&) = delete;
  TransferWorker& operator=(const TransferWorker&) = delete;

  LoadQueue& queue() { return queue_; }

 private:
  explicit TransferWorker(TransferSettings settings) : settings_(std::move(settings)) {}

  void run();

  const TransferSettings settings_;
  LoadQueue queue_;
  std::thread thread_;
};

}  // namespace platform
