#include "base/tasks/starting_line.hpp"

#include <atomic>
#include <thread>
#include <vector>

#include <gtest/gtest.h>

namespace base {
namespace {

TEST(StartingLine, LetsNobodyGoBeforeAllHaveCome) {
  constexpr int tasks = 8;
  StartingLine line(tasks);
  std::atomic<int> came = 0;
  std::atomic<int> wentEarly = 0;
  std::vector<std::jthread> threads;
  for (int i = 0; i < tasks; ++i) {
    threads.emplace_back([&] {
      ++came;
      line.arriveAndWait({});
      if (came != tasks) ++wentEarly;
    });
  }
  threads.clear();
  EXPECT_EQ(wentEarly, 0);
}

TEST(StartingLine, DoesNotHoldOneWhoIsStopped) {
  StartingLine line(2);
  std::stop_source source;
  std::jthread first([&] { line.arriveAndWait(source.get_token()); });
  source.request_stop();
  first.join();
  // It has come all the same.
  line.arriveAndWait({});
}

}  // namespace
}  // namespace base
