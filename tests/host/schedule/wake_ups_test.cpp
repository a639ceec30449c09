#include "host/schedule/wake_ups.hpp"

#include <array>

#include <absl/time/clock.h>
#include <fcntl.h>
#include <gtest/gtest.h>
#include <poll.h>

namespace host {
namespace {

bool readable(int descriptor) {
  pollfd polled{.fd = descriptor, .events = POLLIN, .revents = 0};
  return poll(&polled, 1, 0) == 1;
}

TEST(RealTimeTimer, IsDueAtOnceForAnInstantThatHasPassed) {
  for (const absl::Time instant : {absl::UnixEpoch(), absl::UnixEpoch() - absl::Milliseconds(500), absl::InfinitePast(),
                                   absl::Now() - absl::Hours(1)}) {
    RealTimeTimer timer;
    timer.set(instant);
    waitForAny({timer.descriptor()});
    EXPECT_EQ(timer.take(), RealTimeTimer::Event::due);
    EXPECT_EQ(timer.take(), RealTimeTimer::Event::none);
  }
}

TEST(RealTimeTimer, IsDueWhenItsInstantComes) {
  RealTimeTimer timer;
  const absl::Time instant = absl::Now() + absl::Milliseconds(30);
  timer.set(instant);
  waitForAny({timer.descriptor()});
  EXPECT_EQ(timer.take(), RealTimeTimer::Event::due);
  EXPECT_GE(absl::Now(), instant);
}

TEST(RealTimeTimer, IsNotDueBeforeOrWhenCleared) {
  RealTimeTimer timer;
  timer.set(absl::InfiniteFuture());
  EXPECT_FALSE(readable(timer.descriptor()));
  timer.set(absl::Now());
  timer.clear();
  EXPECT_FALSE(readable(timer.descriptor()));
}

TEST(PauseTimer, IsDueAfterItsPause) {
  PauseTimer timer;
  timer.set(absl::Hours(1));
  EXPECT_FALSE(timer.take());
  timer.set(absl::Milliseconds(30));
  waitForAny({timer.descriptor()});
  EXPECT_TRUE(timer.take());
  timer.set(absl::ZeroDuration());
  waitForAny({timer.descriptor()});
  EXPECT_TRUE(timer.take());
  timer.set(absl::InfiniteDuration());
  EXPECT_FALSE(readable(timer.descriptor()));
}

TEST(PauseTimer, TellsWhatIsLeftOfItsPause) {
  PauseTimer timer;
  EXPECT_EQ(timer.left(), absl::ZeroDuration());
  timer.set(absl::Hours(1));
  EXPECT_GT(timer.left(), absl::ZeroDuration());
  EXPECT_LE(timer.left(), absl::Hours(1));
  timer.set(absl::ZeroDuration());
  waitForAny({timer.descriptor()});
  EXPECT_EQ(timer.left(), absl::ZeroDuration());
  timer.set(absl::Hours(1));
  timer.clear();
  EXPECT_EQ(timer.left(), absl::ZeroDuration());
}

TEST(DescriptorSet, ReportsASignalAndAReaderThatIsGoneButNotAFile) {
  std::array<int, 2> ends{};
  ASSERT_EQ(pipe2(ends.data(), O_CLOEXEC), 0);
  base::FileDescriptor reader(ends[0]);
  const base::FileDescriptor writer(ends[1]);
  const base::FileDescriptor file(open("/dev/null", O_WRONLY | O_CLOEXEC));
  DescriptorSet set;
  set.addForItsEnd(file.get());
  set.addForItsEnd(writer.get());
  EXPECT_FALSE(readable(set.descriptor()));
  reader.reset();
  EXPECT_TRUE(readable(set.descriptor()));

  SignalDescriptor signals({SIGUSR1});
  DescriptorSet other;
  other.add(signals.descriptor());
  EXPECT_FALSE(readable(other.descriptor()));
  raise(SIGUSR1);
  EXPECT_TRUE(readable(other.descriptor()));
  EXPECT_EQ(signals.take(), SIGUSR1);
  EXPECT_FALSE(readable(other.descriptor()));
}

TEST(SignalDescriptor, TellsSignalsInsteadOfLettingThemEndTheProcess) {
  SignalDescriptor signals({SIGTERM, SIGWINCH});
  EXPECT_EQ(signals.take(), 0);
  raise(SIGTERM);
  waitForAny({signals.descriptor()});
  EXPECT_EQ(signals.take(), SIGTERM);
  EXPECT_EQ(signals.take(), 0);
}

}  // namespace
}  // namespace host
