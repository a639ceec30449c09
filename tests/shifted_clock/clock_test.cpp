// The time that programs under a shifted clock are told.
#include <absl/time/clock.h>
#include <gtest/gtest.h>

#include "shifted_clock/functions.hpp"
#include "support/child_process.hpp"

namespace shifted_clock {
namespace {

/// The seconds by each function that tells the real-time clock.
std::vector<std::time_t> secondsBy(const Functions& functions) {
  timeval ofDay{};
  functions.gettimeofday(&ofDay, nullptr);
  std::time_t written = 0;
  functions.time(&written);
  return {absl::ToTimeT(nowBy(functions)), absl::ToTimeT(nowBy(functions, CLOCK_REALTIME_COARSE)), ofDay.tv_sec,
          functions.time(nullptr), written};
}

TEST(TimeUnderAShiftedClock, IsWhatTheTestSetByEveryFunction) {
  const auto& functions = librarysFunctions();
  for (const std::time_t set : std::vector<std::time_t>{1'000'000'000, 1'741'993'198, 4'000'000'000}) {
    testsClock().set(absl::FromTimeT(set));
    for (const auto seconds : secondsBy(functions)) {
      EXPECT_GE(seconds, set - 1);  // the coarse clock is some milliseconds late
      EXPECT_LE(seconds, set + 30);
    }
  }
}

TEST(TimeUnderAShiftedClock, PassesAsEver) {
  testsClock().set(absl::FromUnixSeconds(1'000'000'000));
  const auto& functions = librarysFunctions();
  const auto machines = absl::Now();
  const auto begin = nowBy(functions);
  while (absl::Now() < machines + absl::Milliseconds(5)) {
  }
  EXPECT_GE(nowBy(functions) - begin, absl::Milliseconds(5) - absl::Microseconds(1));
}

TEST(TimeUnderAShiftedClock, OtherClocksStayAsTheyAreButForSleep) {
  const auto& functions = librarysFunctions();
  const auto ahead = [&](clockid_t clock) { return nowBy(functions, clock) - nowBy(kernelsFunctions(), clock); };
  const auto asleep = ahead(CLOCK_BOOTTIME);
  testsClock().set(testsClock().now() + absl::Hours(5));
  EXPECT_LT(absl::AbsDuration(ahead(CLOCK_MONOTONIC)), absl::Minutes(1));
  EXPECT_LT(absl::AbsDuration(ahead(CLOCK_BOOTTIME) - asleep), absl::Minutes(1));
  const auto before = testsClock().now();
  testsClock().sleep(absl::Hours(3));
  EXPECT_LT(absl::AbsDuration(ahead(CLOCK_MONOTONIC)), absl::Minutes(1));
  EXPECT_LT(absl::AbsDuration(ahead(CLOCK_BOOTTIME) - asleep - absl::Hours(3)), absl::Minutes(1));
  EXPECT_LT(absl::AbsDuration(testsClock().now() - before - absl::Hours(3)), absl::Minutes(1));
}

TEST(TimeUnderAShiftedClock, IsToldToProgramsAndToThoseTheyStart) {
  const support::ShiftedClock clock(absl::FromUnixSeconds(1'741'993'198), "Europe/Warsaw");
  std::vector<std::string> environment{"PATH=/usr/bin:/bin"};
  for (const auto& [name, value] : clock.environment()) environment.push_back(name + "=" + value);
  for (const auto& command : {std::vector<std::string>{"date", "-u", "+%F"},
                              {"sh", "-c", "exec date -u +%F"},
                              {"sh", "-c", "env date -u +%F; :"}}) {
    support::ChildProcess date({.command = command, .environment = environment, .input = {}});
    EXPECT_EQ(date.firstLine(), "2025-03-14");
  }
}

}  // namespace
}  // namespace shifted_clock
