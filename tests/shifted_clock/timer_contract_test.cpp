// What timers do while nobody sets a clock: the kernel's own and the library's, by the same tests.
#include <array>
#include <cstring>

#include <gtest/gtest.h>

#include "shifted_clock/functions.hpp"

namespace shifted_clock {
namespace {

struct Contract {
  const char* name;
  const Functions& (*functions)();
};

class TimerContract : public testing::TestWithParam<Contract> {
 protected:
  const Functions& functions_ = GetParam().functions();
  absl::Time now(clockid_t clock) const { return nowBy(functions_, clock); }
};

INSTANTIATE_TEST_SUITE_P(By, TimerContract,
                         testing::Values(Contract{"kernel", kernelsFunctions}, Contract{"library", librarysFunctions}),
                         [](const auto& contract) { return contract.param.name; });

constexpr std::array<clockid_t, 3> clocks{CLOCK_REALTIME, CLOCK_BOOTTIME, CLOCK_MONOTONIC};

TEST_P(TimerContract, InstantIsDueWhenItComesAndNotBefore) {
  for (const auto clock : clocks) {
    for (const int flags : std::array<int, 2>{0, TFD_TIMER_CANCEL_ON_SET}) {
      Timer timer(functions_, clock);
      const auto instant = now(clock) + absl::Milliseconds(20);
      ASSERT_EQ(timer.armAt(instant, flags), 0);
      EXPECT_EQ(timer.readWhenReadable(), "1") << clock;
      EXPECT_GE(now(clock), instant) << clock;
      EXPECT_EQ(timer.read(), "EAGAIN");
    }
  }
}

TEST_P(TimerContract, PauseIsDueWhenItHasPassed) {
  for (const auto clock : clocks) {
    Timer timer(functions_, clock);
    const auto begin = now(CLOCK_MONOTONIC);
    ASSERT_EQ(timer.armIn(absl::Milliseconds(20)), 0);
    EXPECT_EQ(timer.readWhenReadable(), "1") << clock;
    EXPECT_GE(now(CLOCK_MONOTONIC), begin + absl::Milliseconds(20)) << clock;
  }
}

TEST_P(TimerContract, InstantThatHasPassedIsDueAtOnce) {
  for (const auto clock : clocks) {
    for (const auto instant : {absl::FromUnixNanos(1), now(clock) - absl::Milliseconds(1), now(clock)}) {
      Timer timer(functions_, clock);
      ASSERT_EQ(timer.armAt(instant, TFD_TIMER_CANCEL_ON_SET), 0);
      EXPECT_EQ(timer.readWhenReadable(), "1");
      EXPECT_EQ(timer.read(), "EAGAIN");
    }
  }
}

TEST_P(TimerContract, TimerThatIsNotArmedIsNotDue) {
  for (const auto clock : clocks) {
    Timer timer(functions_, clock);
    EXPECT_EQ(timer.read(), "EAGAIN");
    ASSERT_EQ(timer.armAt(now(clock), TFD_TIMER_CANCEL_ON_SET), 0);
    ASSERT_TRUE(timer.readable(absl::Seconds(30)));
    ASSERT_EQ(timer.arm(0, {}), 0);
    EXPECT_FALSE(timer.readable()) << "it was unarmed before it was read";
    EXPECT_EQ(timer.read(), "EAGAIN");
  }
}

TEST_P(TimerContract, TimerThatIsArmedAnewForgetsItsInstant) {
  for (const auto clock : clocks) {
    Timer timer(functions_, clock);
    ASSERT_EQ(timer.armAt(now(clock)), 0);
    ASSERT_TRUE(timer.readable(absl::Seconds(30)));
    ASSERT_EQ(timer.armAt(absl::FromUnixSeconds(9'000'000'000)), 0) << "some centuries ahead";
    EXPECT_FALSE(timer.readable());
    ASSERT_EQ(timer.armIn(absl::Milliseconds(1)), 0);
    EXPECT_EQ(timer.readWhenReadable(), "1");
  }
}

TEST_P(TimerContract, IntervalIsDueAgainAndAgain) {
  for (const auto clock : clocks) {
    Timer timer(functions_, clock);
    const auto interval = absl::ToTimespec(absl::Milliseconds(5));
    ASSERT_EQ(timer.arm(0, interval, interval), 0);
    for (int i = 0; i < 3; ++i) EXPECT_GE(std::stoi(timer.readWhenReadable()), 1);
  }
}

TEST_P(TimerContract, TellsWhatIsLeftOfTheArmingBefore) {
  for (const auto clock : clocks) {
    Timer timer(functions_, clock);
    ASSERT_EQ(timer.armAt(now(clock) + absl::Hours(2)), 0);
    const itimerspec off{};
    itimerspec before{};
    ASSERT_EQ(functions_.timerfdSettime(timer.descriptor(), 0, &off, &before), 0);
    const auto left = absl::DurationFromTimespec(before.it_value);
    EXPECT_LE(left, absl::Hours(2)) << clock;
    EXPECT_GT(left, absl::Hours(1)) << clock;
  }
}

TEST_P(TimerContract, RefusesWhatCannotBe) {
  Timer timer(functions_, CLOCK_REALTIME);
  EXPECT_EQ(timer.arm(TFD_TIMER_ABSTIME, {.tv_sec = 1, .tv_nsec = 1'000'000'000}), EINVAL);
  EXPECT_EQ(timer.arm(TFD_TIMER_ABSTIME, {.tv_sec = -1, .tv_nsec = 0}), EINVAL);
  EXPECT_EQ(timer.arm(1 << 20, {.tv_sec = 1, .tv_nsec = 0}), EINVAL);
  std::uint32_t tooSmall = 0;
  EXPECT_EQ(functions_.read(timer.descriptor(), &tooSmall, sizeof tooSmall), -1);
  EXPECT_EQ(errno, EINVAL);
}

TEST_P(TimerContract, NumberOfAClosedTimerIsAnyoneElses) {
  int number = -1;
  {
    const Timer timer(functions_, CLOCK_REALTIME);
    number = timer.descriptor();
  }
  std::array<int, 2> ends{};
  ASSERT_EQ(pipe(ends.data()), 0);
  ASSERT_EQ(ends[0], number);
  ASSERT_EQ(write(ends[1], "0123456789", 10), 10);
  std::array<char, 16> text{};
  EXPECT_EQ(functions_.read(ends[0], text.data(), text.size()), 10);
  EXPECT_STREQ(text.data(), "0123456789");
  for (const int end : ends) EXPECT_EQ(functions_.close(end), 0);
}

}  // namespace
}  // namespace shifted_clock
