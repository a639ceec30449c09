#include "base/tasks/task_group.hpp"

#include <atomic>
#include <latch>

#include <gtest/gtest.h>

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
