#include "host/feed/feed_thread.hpp"

#include <csignal>
#include <cstdint>
#include <system_error>
#include <utility>

#include <pthread.h>
#include <sys/eventfd.h>

namespace host {
namespace {

/// Blocks all signals for the length of a scope, so that a thread begun in it leaves them to the main thread.
class SignalsBlocked {
 public:
  SignalsBlocked() {
    sigset_t all;
    sigfillset(&all);
    pthread_sigmask(SIG_SETMASK, &all, &before_);
  }
  ~SignalsBlocked() { pthread_sigmask(SIG_SETMASK, &before_, nullptr); }
  SignalsBlocked(const SignalsBlocked&) = delete;
  SignalsBlocked& operator=(const SignalsBlocked&) = delete;

 private:
  sigset_t before_{};
};

}  // namespace

FeedThread::FeedThread(ExtensionSettings settings, FeedListener listener, Feed::Placeholders placeholders)
    : wake_(eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK)) {
  // Without them the thread would wait for ever.
  if (!time_.works() || !wake_.isOpen()) throw std::system_error(std::make_error_code(std::errc::too_many_files_open));
  settings.interruption = wake_.get();
  const SignalsBlocked blocked;
  thread_ =
      std::jthread([this, settings = std::move(settings), listener = std::move(listener), placeholders]() mutable {
        SystemRecovery recovery;
        Feed feed(std::move(settings), std::move(listener), time_, recovery, placeholders);
        run(feed);
      });
}

FeedThread::~FeedThread() {
  {
    const std::scoped_lock lock(mutex_);
    ending_ = true;
  }
  eventfd_write(wake_.get(), 1);
}

void FeedThread::post(Task task) {
  // Both under one lock: the wake-up must not come after its task was taken, or it would interrupt that task.
  const std::scoped_lock lock(mutex_);
  posted_.push_back(std::move(task));
  eventfd_write(wake_.get(), 1);
}

std::vector<FeedThread::Task> FeedThread::takePosted() {
  const std::scoped_lock lock(mutex_);
  eventfd_t count = 0;
  eventfd_read(wake_.get(), &count);
  return std::exchange(posted_, {});
}

void FeedThread::run(Feed& feed) {
  while (true) {
    auto descriptors = feed.descriptors();
    descriptors.push_back(wake_.get());
    waitForAny(descriptors);
    const auto tasks = takePosted();
    {
      const std::scoped_lock lock(mutex_);
      if (ending_) return;
    }
    for (const auto& task : tasks) task(feed);
    // A task that was posted meanwhile goes first: it would only interrupt a load that begins here.
    if (tasks.empty()) feed.handleWakeUps();
  }
}

}  // namespace host
