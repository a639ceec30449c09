#include "host/schedule/reload_schedule.hpp"

#include <gtest/gtest.h>

namespace host {
namespace {

const absl::Time now = absl::FromUnixSeconds(1741944600);

TEST(GrowingPause, DoublesUpToTheLongest) {
  GrowingPause pause(absl::Seconds(1), absl::Minutes(5));
  for (const int seconds : {1, 2, 4, 8, 16, 32, 64, 128, 256, 300, 300})
    EXPECT_EQ(pause.next(), absl::Seconds(seconds));
  pause.reset();
  EXPECT_EQ(pause.next(), absl::Seconds(1));
}

constexpr absl::Duration noPause = absl::ZeroDuration();

Wait pauseOf(int seconds) { return {.pause = absl::Seconds(seconds)}; }

TEST(ReloadSchedule, WaitsForTheReloadDate) {
  ReloadSchedule schedule;
  const Wait expected{.until = now + absl::Minutes(15)};
  EXPECT_EQ(schedule.loaded(now, now + absl::Minutes(15)), expected);
}

TEST(ReloadSchedule, FollowsDatesThatHavePassedWithGrowingPauses) {
  ReloadSchedule schedule;
  EXPECT_EQ(schedule.loaded(now, now - absl::Hours(1)), pauseOf(1));
  EXPECT_EQ(schedule.loaded(now, now + absl::Milliseconds(5)), pauseOf(2));
  EXPECT_EQ(schedule.loaded(now, now), pauseOf(4));
  schedule.loaded(now, now + absl::Minutes(15));
  EXPECT_EQ(schedule.loaded(now, now), pauseOf(1));
}

TEST(ReloadSchedule, RestartsWithGrowingPausesUntilAnAnswerComes) {
  ReloadSchedule schedule;
  EXPECT_EQ(schedule.failed(), pauseOf(1));
  EXPECT_EQ(schedule.failed(), pauseOf(2));
  schedule.loaded(now, now + absl::Minutes(15));
  EXPECT_EQ(schedule.failed(), pauseOf(1));
}

TEST(ReloadSchedule, KeepsTheDateWhenTheClockGoesForward) {
  ReloadSchedule schedule;
  const Wait expected{.until = now + absl::Minutes(15)};
  schedule.loaded(now, now + absl::Minutes(15));
  EXPECT_EQ(schedule.clockChanged(now + absl::Minutes(5), noPause), expected);
  EXPECT_EQ(schedule.clockChanged(now + absl::Hours(5), noPause), expected);  // due: a timer for it fires at once
}

TEST(ReloadSchedule, AsksAtOnceWhenTheClockWasSetBack) {
  ReloadSchedule schedule;
  const Wait atOnce{.pause = absl::ZeroDuration()};
  schedule.loaded(now, now + absl::Minutes(15));
  EXPECT_EQ(schedule.clockChanged(now - absl::Hours(24 * 365), noPause), atOnce);
}

TEST(ReloadSchedule, GoesOnWithThePauseWhenTheClockIsSet) {
  ReloadSchedule schedule;
  schedule.failed();
  schedule.failed();
  EXPECT_EQ(schedule.clockChanged(now + absl::Hours(5), absl::Seconds(1)), pauseOf(1));
  EXPECT_EQ(schedule.failed(), pauseOf(4));
}

}  // namespace
}  // namespace host
