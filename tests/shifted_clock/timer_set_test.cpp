// What timers do when their clock is set or the machine sleeps: as timerfd_create(2) says and as Linux 6.1 does it, for
// no test sets the machine's clock to see.
#include <thread>

#include <gtest/gtest.h>
#include <sys/wait.h>

#include "shifted_clock/functions.hpp"

namespace shifted_clock {
namespace {

class TimerUnderASetClock : public testing::Test {
 protected:
  void set(absl::Duration by) { clock_.set(clock_.now() + by); }
  absl::Time now() const { return nowBy(functions_); }
  absl::Time inAnHour() const { return now() + absl::Hours(1); }

  const Functions& functions_ = librarysFunctions();
  support::ShiftedClock& clock_ = testsClock();
  Timer timer_{functions_, CLOCK_REALTIME};
};

constexpr int cancelOnSet{TFD_TIMER_CANCEL_ON_SET};

TEST_F(TimerUnderASetClock, ForwardOrBackIsToldOnce) {
  for (const auto by : {absl::Minutes(10), -absl::Minutes(10), absl::Nanoseconds(1)}) {
    ASSERT_EQ(timer_.armAt(inAnHour(), cancelOnSet), 0);
    EXPECT_FALSE(timer_.readable());
    set(by);
    EXPECT_EQ(timer_.readWhenReadable(), "ECANCELED");
    EXPECT_EQ(timer_.read(), "EAGAIN");
    EXPECT_FALSE(timer_.readable());
  }
}

TEST_F(TimerUnderASetClock, IsDueAtItsInstantAllTheSame) {
  const auto instant = inAnHour();
  ASSERT_EQ(timer_.armAt(instant, cancelOnSet), 0);
  set(absl::Hours(1) - absl::Seconds(1));
  EXPECT_EQ(timer_.readWhenReadable(), "ECANCELED");
  EXPECT_EQ(timer_.readWhenReadable(), "1");
  EXPECT_GE(now(), instant);
}

TEST_F(TimerUnderASetClock, InstantThatIsPassedByIsToldAsTheSettingAlone) {
  ASSERT_EQ(timer_.armAt(inAnHour(), cancelOnSet), 0);
  set(absl::Hours(2));
  EXPECT_EQ(timer_.readWhenReadable(), "ECANCELED");
  EXPECT_EQ(timer_.read(), "EAGAIN");
  EXPECT_FALSE(timer_.readable());
  ASSERT_EQ(timer_.armAt(now() - absl::Hours(1), cancelOnSet), 0);
  EXPECT_EQ(timer_.readWhenReadable(), "1");
}

TEST_F(TimerUnderASetClock, TimerThatWasDueIsToldUntilItIsArmedWithoutTheWish) {
  ASSERT_EQ(timer_.armAt(now(), cancelOnSet), 0);
  ASSERT_EQ(timer_.readWhenReadable(), "1");
  set(absl::Minutes(1));
  EXPECT_EQ(timer_.readWhenReadable(), "ECANCELED");
  EXPECT_FALSE(timer_.readable());
  ASSERT_EQ(timer_.arm(0, {}), 0);
  set(absl::Minutes(1));
  EXPECT_EQ(timer_.read(), "EAGAIN");
}

TEST_F(TimerUnderASetClock, SettingThatNobodyReadIsToldByTheNextArmingWhichCounts) {
  ASSERT_EQ(timer_.armAt(inAnHour(), cancelOnSet), 0);
  set(absl::Minutes(1));
  ASSERT_TRUE(timer_.readable(absl::Seconds(30)));
  EXPECT_EQ(timer_.armAt(now() + absl::Milliseconds(20), cancelOnSet), ECANCELED);
  EXPECT_EQ(timer_.readWhenReadable(), "1");
  EXPECT_EQ(timer_.armAt(inAnHour(), cancelOnSet), 0);
}

TEST_F(TimerUnderASetClock, WithoutTheWishOnlyTheInstantCounts) {
  ASSERT_EQ(timer_.armAt(inAnHour()), 0);
  set(absl::Minutes(10));
  EXPECT_EQ(timer_.read(), "EAGAIN");
  set(-absl::Hours(10));
  EXPECT_EQ(timer_.read(), "EAGAIN");
  set(absl::Hours(12));
  EXPECT_EQ(timer_.readWhenReadable(), "1");
  EXPECT_EQ(timer_.read(), "EAGAIN");
}

TEST_F(TimerUnderASetClock, WhatWasDueStaysDueWhenTheClockGoesBack) {
  ASSERT_EQ(timer_.armAt(now()), 0);
  ASSERT_TRUE(timer_.readable(absl::Seconds(30)));
  set(-absl::Hours(1));
  EXPECT_EQ(timer_.read(), "1");
}

TEST_F(TimerUnderASetClock, PausesPassWhateverTheClockIsSetTo) {
  for (const auto clock : {CLOCK_REALTIME, CLOCK_BOOTTIME, CLOCK_MONOTONIC}) {
    Timer pause(functions_, clock);
    ASSERT_EQ(pause.armIn(absl::Hours(1)), 0);
    set(absl::Hours(2));
    EXPECT_EQ(pause.read(), "EAGAIN") << clock;
    ASSERT_EQ(pause.armIn(absl::Milliseconds(20)), 0);
    set(-absl::Hours(2));
    EXPECT_EQ(pause.readWhenReadable(), "1") << clock;
  }
}

TEST_F(TimerUnderASetClock, SleepCountsForPausesOfTheClockThatCountsItAndIsToldAsASetting) {
  Timer counting(functions_, CLOCK_BOOTTIME);
  Timer awake(functions_, CLOCK_MONOTONIC);
  ASSERT_EQ(timer_.armAt(now() + absl::Hours(5), cancelOnSet), 0);
  ASSERT_EQ(counting.armIn(absl::Hours(1)), 0);
  ASSERT_EQ(awake.armIn(absl::Hours(1)), 0);
  clock_.sleep(absl::Hours(2));
  EXPECT_EQ(timer_.readWhenReadable(), "ECANCELED");
  EXPECT_EQ(counting.readWhenReadable(), "1");
  EXPECT_EQ(awake.read(), "EAGAIN");
}

TEST_F(TimerUnderASetClock, WhoeverIsBlockedIsWoken) {
  Timer blocking(functions_, CLOCK_REALTIME, 0);
  ASSERT_EQ(blocking.armAt(inAnHour(), cancelOnSet), 0);
  std::string read;
  std::jthread reader([&] { read = blocking.read(); });
  set(absl::Minutes(1));
  reader.join();
  EXPECT_EQ(read, "ECANCELED");
}

TEST_F(TimerUnderASetClock, ForkedProcessFollowsTheClockToo) {
  ASSERT_EQ(timer_.armAt(inAnHour(), cancelOnSet), 0);
  const pid_t process = fork();
  if (process == 0) {
    Timer timer(functions_, CLOCK_REALTIME);
    const bool armed = timer.armAt(nowBy(functions_) + absl::Hours(1), cancelOnSet) == 0;
    set(absl::Minutes(1));
    _exit(armed && timer.readWhenReadable() == "ECANCELED" ? 0 : 1);
  }
  int status = -1;
  ASSERT_EQ(waitpid(process, &status, 0), process);
  EXPECT_EQ(status, 0);
  EXPECT_EQ(timer_.readWhenReadable(), "ECANCELED") << "set by another process";
}

TEST_F(TimerUnderASetClock, ManySettingsAreToldToEveryTimerThatWaits) {
  Timer others[] = {{functions_, CLOCK_REALTIME}, {functions_, CLOCK_REALTIME}, {functions_, CLOCK_REALTIME}};
  for (int i = 0; i < 200; ++i) {
    for (auto& other : others) ASSERT_EQ(other.armAt(inAnHour(), cancelOnSet), 0);
    set(absl::Minutes(i % 2 == 0 ? 10 : -10));
    for (auto& other : others) ASSERT_EQ(other.readWhenReadable(), "ECANCELED") << i;
  }
}

}  // namespace
}  // namespace shifted_clock
