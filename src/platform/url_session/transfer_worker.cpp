#include "platform/url_session/transfer_worker.hpp"

#include <csignal>
#include <system_error>

namespace platform {
namespace {

// Signals to the process are handled by the program's own threads, and a broken connection must not raise SIGPIPE here.
// A new thread inherits the mask.
class AllSignalsBlocked {
 public:
  AllSignalsBlocked() {
    sigset_t all;
    sigfillset(&all);
    pthread_sigmask(SIG_SETMASK, &all, &before_);
  }
  ~AllSignalsBlocked() { pthread_sigmask(SIG_SETMASK, &before_, nullptr); }
  AllSignalsBlocked(const AllSignalsBlocked&) = delete;
  AllSignalsBlocked& operator=(const AllSignalsBlocked&) = delete;

 private:
  sigset_t before_;
};

}  // namespace

std::unique_ptr<TransferWorker> TransferWorker::start(TransferSettings settings) {
  std::unique_ptr<TransferWorker> worker(new TransferWorker(std::move(settings)));
  const AllSignalsBlocked blocked;
  try {
    worker->thread_ = std::thread(&TransferWorker::run, worker.get());
  } catch (const std::system_error&) {
    return nullptr;
  }
  return worker;
}

TransferWorker::~TransferWorker() {
  if (!thread_.joinable()) return;
  queue_.end();
  thread_.join();
}

void TransferWorker::run() { TransferLoop(queue_, settings_).run(); }

}  // namespace platform
