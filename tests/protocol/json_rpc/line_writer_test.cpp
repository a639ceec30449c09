#include "protocol/json_rpc/line_writer.hpp"

#include <csignal>
#include <string>
#include <thread>
#include <vector>

#include <fcntl.h>
#include <gtest/gtest.h>
#include <unistd.h>

#include "protocol/json_rpc/line_reader.hpp"

namespace protocol::json_rpc {
namespace {

TEST(LineWriter, KeepsLinesOfManyThreadsWholeOnANonBlockingPipe) {
  int ends[2];
  ASSERT_EQ(::pipe2(ends, O_CLOEXEC), 0);
  ASSERT_EQ(::fcntl(ends[1], F_SETFL, O_NONBLOCK), 0);
  LineWriter writer(ends[1]);
  std::vector<std::jthread> threads;
  constexpr int threadCount = 4;
  constexpr int linesEach = 50;
  for (int i = 0; i < threadCount; ++i) {
    threads.emplace_back([&writer, i] {
      for (int n = 0; n < linesEach; ++n) {
        // Longer than a pipe holds, so every line is written in several pieces.
        EXPECT_TRUE(writer.write(std::string(100'000, static_cast<char>('a' + i))));
      }
    });
  }
  LineReader reader(ends[0]);
  std::vector<int> counts(threadCount);
  for (int n = 0; n < threadCount * linesEach; ++n) {
    const auto result = reader.next();
    ASSERT_EQ(result.status, LineReader::Status::line);
    ASSERT_EQ(result.text.size(), 100'000U);
    ASSERT_EQ(result.text.find_first_not_of(result.text[0]), std::string_view::npos);
    ++counts[static_cast<std::size_t>(result.text[0] - 'a')];
  }
  EXPECT_EQ(counts, std::vector<int>(threadCount, linesEach));
  threads.clear();
  ::close(ends[0]);
  ::close(ends[1]);
}

TEST(LineWriter, ReportsAReaderThatLeft) {
  const auto previous = std::signal(SIGPIPE, SIG_IGN);
  int ends[2];
  ASSERT_EQ(::pipe2(ends, O_CLOEXEC), 0);
  ::close(ends[0]);
  LineWriter writer(ends[1]);
  for (int attempt = 0; attempt < 2; ++attempt) {
    const auto written = writer.write("{}");
    ASSERT_FALSE(written);
    EXPECT_EQ(written.error(), std::errc::broken_pipe);
  }
  ::close(ends[1]);
  std::signal(SIGPIPE, previous);
}

}  // namespace
}  // namespace protocol::json_rpc
