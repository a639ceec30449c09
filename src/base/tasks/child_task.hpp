// A part of a task on a thread of its own, which cannot outlive the scope that holds it.
#pragma once

#include <exception>
#include <functional>
#include <optional>
#include <stop_token>
#include <thread>
#include <utility>

namespace base {

/// Runs a function on a new thread. Cancelling the parent cancels the child; leaving the scope cancels it and waits for
/// it. The constructor throws std::system_error where no thread can be started.
template <typename Result>
class ChildTask {
 public:
  ChildTask(std::stop_token parent, std::move_only_function<Result(std::stop_token)> body)
      : thread_([this, body = std::move(body)](std::stop_token stop) mutable {
          try {
            result_.emplace(body(std::move(stop)));
          } catch (...) {
            failure_ = std::current_exception();
          }
        }),
        parentStops_(std::move(parent), Cancel{this}) {}

  ChildTask(const ChildTask&) = delete;
  ChildTask& operator=(const ChildTask&) = delete;

  void cancel() { thread_.request_stop(); }

  /// Waits for the result; called at most once. Throws what the function threw.
  Result await() {
    thread_.join();
    if (failure_) std::rethrow_exception(failure_);
    return std::move(*result_);  // NOLINT(bugprone-unchecked-optional-access): the thread set it before it ended
  }

 private:
  struct Cancel {
    ChildTask* task;
    void operator()() const { task->cancel(); }
  };

  std::optional<Result> result_;
  std::exception_ptr failure_;
  std::jthread thread_;
  std::stop_callback<Cancel> parentStops_;
};

}  // namespace base
