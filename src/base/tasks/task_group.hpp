// Tasks that outlive the call that starts them. The group's owner joins them; no thread is detached.
#pragma once

#include <condition_variable>
#include <functional>
#include <list>
#include <mutex>
#include <stop_token>
#include <thread>

namespace base {

/// Each task runs on a thread of its own. Safe to use from many threads.
class TaskGroup {
 public:
  using Body = std::move_only_function<void(std::stop_token)>;

  TaskGroup() = default;
  TaskGroup(const TaskGroup&) = delete;
  TaskGroup& operator=(const TaskGroup&) = delete;
  /// Cancels what still runs and waits for it.
  ~TaskGroup();

  /// Starts a task and returns at once. After `cancelAll` tasks start with their stop already requested. If no
  /// thread can be started, the task runs on the caller's thread and has ended when this returns.
  void start(Body body);

  /// Asks every task to stop; it does not wait.
  void cancelAll();

  /// Waits until no task runs.
  void waitForAll();

 private:
  struct Task {
    std::jthread thread;
    bool finished = false;
  };

  void joinFinished();

  std::mutex mutex_;
  std::condition_variable taskFinished_;
  std::list<Task> tasks_;
  bool cancelled_ = false;
};

}  // namespace base
