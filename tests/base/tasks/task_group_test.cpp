#include "base/tasks/task_group.hpp"

#include <atomic>
#include <latch>
#include <thread>

#include <gtest/gtest.h>
#include <pthread.h>

namespace base {
namespace {

/// Waits for a stop request, however long it takes.
void waitForStop(std::stop_token stop) {
  std::latch stopped(1);
  const std::stop_callback callback(std::move(stop), [&] { stopped.count_down(); });
  stopped.wait();
}

TEST(TaskGroup, StartsTasksAndReturnsWhileTheyRun) {
  TaskGroup group;
  std::latch release(1);
  std::atomic<int> finished = 0;
  for (int i = 0; i < 3; ++i) {
    group.start([&](std::stop_token) {
      release.wait();
      ++finished;
    });
  }
  EXPECT_EQ(finished, 0);
  release.count_down();
  group.waitForAll();
  EXPECT_EQ(finished, 3);
}

TEST(TaskGroup, CancelsEveryTask) {
  TaskGroup group;
  std::atomic<int> cancelled = 0;
  for (int i = 0; i < 3; ++i) {
    group.start([&](std::stop_token stop) {
      waitForStop(stop);
      ++cancelled;
    });
  }
  group.cancelAll();
  group.waitForAll();
  EXPECT_EQ(cancelled, 3);
}

TEST(TaskGroup, StartsTasksStoppedOnceItIsCancelled) {
  TaskGroup group;
  group.cancelAll();
  std::atomic<bool> stopped = false;
  group.start([&](std::stop_token stop) {
    waitForStop(stop);
    stopped = true;
  });
  group.waitForAll();
  EXPECT_TRUE(stopped);
}

TEST(TaskGroup, CancelsAndJoinsWhenItEnds) {
  std::atomic<bool> stopped = false;
  {
    TaskGroup group;
    group.start([&](std::stop_token stop) {
      waitForStop(stop);
      stopped = true;
    });
  }
  EXPECT_TRUE(stopped);
}

/// While it lives no thread can be started: there is no address space for its stack.
class NoThreads {
 public:
  NoThreads() {
    pthread_getattr_default_np(&before_);
    pthread_attr_t attributes;
    pthread_getattr_default_np(&attributes);
    pthread_attr_setstacksize(&attributes, std::size_t{1} << 47);
    pthread_setattr_default_np(&attributes);
    pthread_attr_destroy(&attributes);
  }
  ~NoThreads() {
    pthread_setattr_default_np(&before_);
    pthread_attr_destroy(&before_);
  }

 private:
  pthread_attr_t before_{};
};

TEST(TaskGroup, RunsATaskOnTheCallersThreadWhereNoOtherCanBeHad) {
  TaskGroup group;
  std::thread::id ranOn;
  {
    const NoThreads none;
    group.start([&](std::stop_token stop) {
      EXPECT_FALSE(stop.stop_requested());
      ranOn = std::this_thread::get_id();
    });
    group.cancelAll();
    group.start([](std::stop_token stop) { EXPECT_TRUE(stop.stop_requested()); });
  }
  EXPECT_EQ(ranOn, std::this_thread::get_id());
  group.waitForAll();  // nothing is left that it would wait for
}

TEST(TaskGroup, TakesTasksFromManyThreads) {
  TaskGroup group;
  std::atomic<int> finished = 0;
  {
    std::vector<std::jthread> starters;
    for (int i = 0; i < 4; ++i) {
      starters.emplace_back([&] {
        for (int j = 0; j < 100; ++j) group.start([&](std::stop_token) { ++finished; });
      });
    }
  }
  group.waitForAll();
  EXPECT_EQ(finished, 400);
}

}  // namespace
}  // namespace base
