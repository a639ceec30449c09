#include "base/tasks/task_group.hpp"

#include <algorithm>
#include <memory>
#include <system_error>
#include <utility>

namespace base {

TaskGroup::~TaskGroup() {
  cancelAll();
  waitForAll();
}

void TaskGroup::start(Body body) {
  joinFinished();
  // Shared with the thread, so that the task is not lost where no thread can be started.
  const auto shared = std::make_shared<Body>(std::move(body));
  std::stop_source withoutThread;
  {
    const std::lock_guard lock(mutex_);
    Task& task = tasks_.emplace_back();
    try {
      // The thread waits for the lock before it marks its end, so the assignment is done by then.
      task.thread = std::jthread([this, &task, shared](std::stop_token stop) {
        (*shared)(std::move(stop));
        const std::lock_guard endLock(mutex_);
        task.finished = true;
        taskFinished_.notify_all();
      });
      if (cancelled_) task.thread.request_stop();
      return;
    } catch (const std::system_error&) {
      tasks_.pop_back();
    }
    if (cancelled_) withoutThread.request_stop();
  }
  (*shared)(withoutThread.get_token());
}

void TaskGroup::cancelAll() {
  const std::lock_guard lock(mutex_);
  cancelled_ = true;
  for (auto& task : tasks_) task.thread.request_stop();
}

void TaskGroup::waitForAll() {
  {
    std::unique_lock lock(mutex_);
    taskFinished_.wait(lock, [this] { return std::ranges::all_of(tasks_, &Task::finished); });
  }
  joinFinished();
}

void TaskGroup::joinFinished() {
  std::list<Task> finished;
  {
    const std::lock_guard lock(mutex_);
    for (auto task = tasks_.begin(); task != tasks_.end();) {
      const auto next = std::next(task);
      if (task->finished) finished.splice(finished.end(), tasks_, task);
      task = next;
    }
  }
  // Joined outside the lock: a thread that has marked its end may still hold it.
}

}  // namespace base
