// A barrier: tasks wait here until all of them have arrived.
#pragma once

#include <condition_variable>
#include <cstddef>
#include <mutex>
#include <stop_token>

namespace base {

/// Every task arrives once. Safe to use from many threads.
class StartingLine {
 public:
  explicit StartingLine(std::size_t tasks) : missing_(tasks) {}

  /// Returns when all tasks have arrived, or the caller's stop is requested.
  void arriveAndWait(std::stop_token stop) {
    std::unique_lock lock(mutex_);
    if (--missing_ == 0) allCame_.notify_all();
    allCame_.wait(lock, std::move(stop), [this] { return missing_ == 0; });
  }

 private:
  std::mutex mutex_;
  std::condition_variable_any allCame_;
  std::size_t missing_;
};

}  // namespace base
