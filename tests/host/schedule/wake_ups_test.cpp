#include "host/schedule/wake_ups.hpp"

#include <absl/time/clock.h>
#include <gtest/gtest.h>
#include <poll.h>

namespace host {
namespace {

bool readable(int descriptor) {
  pollfd polled{.fd = descriptor, .events = POLLIN, .revents = 0};
  return poll(&polled, 1, 0) == 1;
}

TEST(RealTimeTimer, IsDueAtOnceForAnInstantThatHasPassed) {
  for (const absl::Time instant : {absl::UnixEpoch(), absl::InfinitePast(), absl::Now() - absl::Hours(1)}) {
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
  timer.set(absl::Milliseconds(30));
  EXPECT_FALSE(timer.take());
  waitForAny({timer.descriptor()});
  EXPECT_TRUE(timer.take());
  timer.set(absl::ZeroDuration());
  waitForAny({timer.descriptor()});
  EXPECT_TRUE(timer.take());
  timer.set(absl::InfiniteDuration());
  EXPECT_FALSE(readable(timer.descriptor()));
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
