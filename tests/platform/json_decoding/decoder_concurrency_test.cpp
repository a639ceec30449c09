// One decoder used by many threads at once.
#include <atomic>
#include <latch>
#include <string>
#include <thread>
#include <vector>

#include <gtest/gtest.h>

#include "platform/json_decoding/test_types.hpp"

namespace platform {
namespace {

TEST(JsonDecoder, ServesSeveralThreadsAtOnce) {
  const JsonDecoder decoder = decoderOfTallies();
  constexpr int threadCount = 4;
  constexpr int rounds = 50;
  std::latch start(threadCount);
  std::atomic<int> correct = 0;
  {
    std::vector<std::jthread> threads;
    for (int thread = 0; thread < threadCount; ++thread) {
      threads.emplace_back([&, thread] {
        std::string body = "[";
        for (int i = 0; i < 100; ++i) {
          body += (i == 0 ? "" : ",") + std::string(R"({"x":)") + std::to_string(thread * 1000 + i) +
                  R"(,"name":"\u0105","when":"xx"})";
        }
        body += "]";
        start.arrive_and_wait();
        for (int round = 0; round < rounds; ++round) {
          const auto points = decoder.decode<std::vector<Point>>(body);
          const auto failed = decoder.decode<std::vector<Point>>(body.substr(0, body.size() - 1));
          if (points && points->size() == 100 && points->back().x == thread * 1000 + 99 && !failed) ++correct;
        }
      });
    }
  }
  EXPECT_EQ(correct, threadCount * rounds);
}

}  // namespace
}  // namespace platform
