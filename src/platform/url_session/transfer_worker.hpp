// The session's worker: one thread that loads the transfer module and does every load with it.
#pragma once

#include <memory>
#include <thread>
#include <utility>

#include "platform/url_session/load_queue.hpp"
#include "platform/url_session/transfer_module.hpp"

namespace platform {

class TransferWorker {
 public:
  /// Starts the thread and returns at once; the module is loaded on it, beside whatever the caller does next. Null when
  /// the thread cannot be started.
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
