#include "host/schedule/reload_schedule.hpp"

#include <gtest/gtest.h>

namespace host {
namespace {

const absl::Time now = absl::FromUnixSeconds(1741944600);

TEST(GrowingPause, DoublesUpToTheLongestAndStaysWithinAFifth) {
  GrowingPause pause(absl::Seconds(1), absl::Minutes(5), 7);
  absl::Duration expected = absl::Seconds(1);
  for (int i = 0; i < 20; ++i) {
    const auto next = pause.next();
    EXPECT_GE(next, expected * 0.79);
    EXPECT_LE(next, std::min(expected * 1.21, absl::Minutes(5)));
    expected = std::min(expected * 2, absl::Minutes(5));
  }
  pause.reset();
  EXPECT_LE(pause.next(), absl::Milliseconds(1210));
}

TEST(ReloadSchedule, WaitsForTheReloadDate) {
  ReloadSchedule schedule(1);
  const Wait expected{.until = now + absl::Minutes(15)};
  EXPECT_EQ(schedule.loaded(now, now + absl::Minutes(15)), expected);
}

TEST(ReloadSchedule, FollowsDatesThatHavePassedWithGrowingPauses) {
  ReloadSchedule schedule(1);
  absl::Duration total;
  for (int i = 0; i < 10; ++i) {
    const Wait wait = schedule.loaded(now, i % 2 == 0 ? now - absl::Hours(1) : now + absl::Milliseconds(5));
    ASSERT_TRUE(wait.pause.has_value());
    total += *wait.pause;
  }
  EXPECT_GE(total, absl::Seconds(0.8 * 1023 / 4));
  schedule.loaded(now, now + absl::Minutes(15));
  EXPECT_LE(*schedule.loaded(now, now).pause, absl::Milliseconds(1210));
}

TEST(ReloadSchedule, RestartsWithGrowingPausesUntilAnAnswerComes) {
  ReloadSchedule schedule(1);
  EXPECT_LE(*schedule.failed().pause, absl::Milliseconds(1210));
  for (int i = 0; i < 12; ++i) schedule.failed();
  EXPECT_GE(*schedule.failed().pause, absl::Minutes(3.9));
  EXPECT_LE(*schedule.failed().pause, absl::Minutes(5));
  schedule.loaded(now, now + absl::Minutes(15));
  EXPECT_LE(*schedule.failed().pause, absl::Milliseconds(1210));
}

TEST(ReloadSchedule, KeepsTheDateWhenTheClockGoesForward) {
  ReloadSchedule schedule(1);
  const Wait expected{.until = now + absl::Minutes(15)};
  schedule.loaded(now, now + absl::Minutes(15));
  EXPECT_EQ(schedule.clockChanged(now + absl::Minutes(5)), expected);
  EXPECT_EQ(schedule.clockChanged(now + absl::Hours(5)), expected);  // due: a timer for it fires at once
}

TEST(ReloadSchedule, AsksAtOnceWhenTheClockWasSetBack) {
  ReloadSchedule schedule(1);
  const Wait atOnce{.pause = absl::ZeroDuration()};
  schedule.loaded(now, now + absl::Minutes(15));
  EXPECT_EQ(schedule.clockChanged(now - absl::Hours(24 * 365)), atOnce);
}

}  // namespace
}  // namespace host
