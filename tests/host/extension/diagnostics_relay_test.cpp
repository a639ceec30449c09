#include "host/extension/diagnostics_relay.hpp"

#include <array>
#include <string>

#include <fcntl.h>
#include <gtest/gtest.h>
#include <unistd.h>

namespace host {
namespace {

struct NonBlockingPipe {
  NonBlockingPipe() { EXPECT_EQ(::pipe2(ends.data(), O_CLOEXEC | O_NONBLOCK), 0); }
  ~NonBlockingPipe() {
    ::close(ends[0]);
    if (ends[1] >= 0) ::close(ends[1]);
  }
  std::string take() const {
    std::string all;
    std::array<char, 4096> block;
    for (ssize_t count = 0; (count = ::read(ends[0], block.data(), block.size())) > 0;) {
      all.append(block.data(), static_cast<std::size_t>(count));
    }
    return all;
  }
  std::array<int, 2> ends{};
};

TEST(DiagnosticsRelay, HandsOnWhatIsThere) {
  NonBlockingPipe from;
  const NonBlockingPipe to;
  DiagnosticsRelay relay(to.ends[1]);
  EXPECT_TRUE(relay.pump(from.ends[0]));
  ASSERT_EQ(::write(from.ends[1],
                    "no \x1b"
                    "day\n",
                    8),
            8);
  EXPECT_TRUE(relay.pump(from.ends[0]));
  EXPECT_EQ(to.take(), "no ?day\n");
  ::close(from.ends[1]);
  from.ends[1] = -1;
  EXPECT_FALSE(relay.pump(from.ends[0]));
}

TEST(DiagnosticsRelay, DropsWhatPassesItsBound) {
  const NonBlockingPipe from;
  const NonBlockingPipe to;
  DiagnosticsRelay relay(to.ends[1]);
  std::string passed;
  for (int i = 0; i < 100; ++i) {
    ASSERT_EQ(::write(from.ends[1], std::string(1000, 'e').data(), 1000), 1000);
    EXPECT_TRUE(relay.pump(from.ends[0]));
    passed += to.take();
  }
  std::string bounded(DiagnosticsRelay::most, 'e');
  bounded += '\n';
  EXPECT_EQ(passed, bounded);
}

TEST(DiagnosticsRelay, NeverWaitsForAReader) {
  const NonBlockingPipe from;
  std::array<int, 2> full{};
  ASSERT_EQ(::pipe2(full.data(), O_CLOEXEC), 0);
  const int size = ::fcntl(full[1], F_SETPIPE_SZ, 4096);
  const std::string filling(static_cast<std::size_t>(size), 'x');
  ASSERT_EQ(::write(full[1], filling.data(), filling.size()), size);
  DiagnosticsRelay relay(full[1]);
  ASSERT_EQ(::write(from.ends[1], "lost\n", 5), 5);
  EXPECT_TRUE(relay.pump(from.ends[0]));  // blocks for ever if it waits
  ::close(full[0]);
  ::close(full[1]);
}

}  // namespace
}  // namespace host
