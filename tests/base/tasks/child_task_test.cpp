#include "base/tasks/child_task.hpp"

#include <atomic>
#include <latch>
#include <stdexcept>
#include <string>

#include <gtest/gtest.h>

namespace base {
namespace {

TEST(ChildTask, GivesItsResult) {
  ChildTask<std::string> child({}, [](std::stop_token) { return std::string("done"); });
  EXPECT_EQ(child.await(), "done");
}

TEST(ChildTask, RunsBesideItsSiblings) {
  std::latch bothRun(2);
  const auto meet = [&](std::stop_token) {
    bothRun.arrive_and_wait();
    return true;
  };
  ChildTask<bool> first({}, meet);
  ChildTask<bool> second({}, meet);
  EXPECT_TRUE(first.await());
  EXPECT_TRUE(second.await());
}

/// Ends only when it is told to stop.
struct UntilStopped {
  std::atomic<bool>* stopped;
  bool operator()(std::stop_token stop) const {
    std::latch told(1);
    const std::stop_callback callback(std::move(stop), [&] { told.count_down(); });
    told.wait();
    *stopped = true;
    return true;
  }
};

TEST(ChildTask, IsCancelledAndWaitedForWhenItsScopeEnds) {
  std::atomic<bool> stopped = false;
  {
    const ChildTask<bool> child({}, UntilStopped{&stopped});
  }
  EXPECT_TRUE(stopped);
}

TEST(ChildTask, HandsOnWhatItsFunctionThrows) {
  ChildTask<int> child({}, [](std::stop_token) -> int { throw std::runtime_error("no memory"); });
  EXPECT_THROW(child.await(), std::runtime_error);
}

TEST(ChildTask, IsCancelledWithItsParent) {
  std::atomic<bool> stopped = false;
  std::stop_source parent;
  ChildTask<bool> child(parent.get_token(), UntilStopped{&stopped});
  parent.request_stop();
  EXPECT_TRUE(child.await());
  EXPECT_TRUE(stopped);
}

TEST(ChildTask, OfAStoppedParentStartsStopped) {
  std::atomic<bool> stopped = false;
  std::stop_source parent;
  parent.request_stop();
  ChildTask<bool> child(parent.get_token(), UntilStopped{&stopped});
  EXPECT_TRUE(child.await());
}

}  // namespace
}  // namespace base
