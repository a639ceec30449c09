// A feed is walked through a year in zones with all kinds of clock changes: in steps of a quarter of an hour, and of a
// minute around the changes. What it shows at each step is compared with a slow model: today as the C library tells it,
// and a timeline that is never older than its reload date.
#include <csignal>
#include <cstdlib>
#include <ctime>
#include <map>
#include <string>

#include <gtest/gtest.h>

#include "host/feed/feed.hpp"
#include "platform/calendar/calendar.hpp"
#include "support/environment.hpp"
#include "support/fixed_clock.hpp"
#include "support/manual_recovery.hpp"
#include "support/manual_timekeeper.hpp"

namespace host {
namespace {

constexpr absl::Duration seldom = absl::Hours(47);
constexpr absl::Duration often = absl::Minutes(15);

/// "2025-03-30", by the C library.
std::string todayOf(absl::Time now) {
  const std::time_t seconds = absl::ToTimeT(now);
  std::tm fields{};
  localtime_r(&seconds, &fields);
  char text[16];
  std::strftime(text, sizeof text, "%Y-%m-%d", &fields);
  return text;
}

int offsetOf(absl::Time now) {
  const std::time_t seconds = absl::ToTimeT(now);
  std::tm fields{};
  localtime_r(&seconds, &fields);
  return static_cast<int>(fields.tm_gmtoff);
}

class YearWalk : public testing::TestWithParam<const char*> {
 protected:
  YearWalk() {
    std::signal(SIGPIPE, SIG_IGN);
    environment_.set("TZ", GetParam());
    tzset();
    environment_.unset("FAKE_EXTENSION");
    // The fake extension is started hundreds of times; to look for its leaks each time takes a third of the test's
    // time.
    environment_.set("LSAN_OPTIONS", "detect_leaks=0");
  }
  ~YearWalk() override {
    environment_.unset("TZ");
    tzset();
  }

  void hear(const FeedNews& news) {
    if (const auto* boards = std::get_if<FeedBoards>(&news)) {
      if (boards->origin == BoardOrigin::placeholder) return;
      for (const auto& [family, view] : boards->views) {
        shown_[std::string(protocol::nameOf(family))] =
            std::get<protocol::Verbatim>(std::get<protocol::TextNode>(view.kind).content).text;
      }
      ++(boards->origin == BoardOrigin::load ? loads_ : redraws_);
    }
    if (const auto* failure = std::get_if<ExtensionFailure>(&news)) ADD_FAILURE() << failure->message;
  }

  /// What the extension sees when it is started next.
  void tellExtension(absl::Duration reload) {
    environment_.set("FAKE_EXTENSION_NOW", std::to_string(absl::ToUnixSeconds(time_.now())));
    environment_.set("FAKE_EXTENSION_TITLE", "loaded " + std::to_string(loads_));
    environment_.set("FAKE_EXTENSION_TODAY", todayOf(time_.now()));
    environment_.set("FAKE_EXTENSION_RELOAD_SECONDS", std::to_string(absl::ToInt64Seconds(reload)));
  }

  support::ScopedEnvironment environment_;
  support::ManualTimekeeper time_{absl::FromUnixSeconds(1735689600 - 86400)};  // 31 December 2024
  support::ManualRecovery recovery_;
  std::map<std::string, std::string> shown_;
  int loads_ = 0;
  int redraws_ = 0;
};

TEST_P(YearWalk, ShowsTodayAndAFreshTimelineAtEachStep) {
  const platform::Calendar calendar(support::zone(GetParam()));
  const auto listener = [this](const FeedNews& news) { hear(news); };
  Feed feed({.program = VAMBA_FAKE_EXTENSION, .diagnostics = -1}, listener, time_, recovery_,
            Feed::Placeholders::untilLoaded);

  // The model: when the timeline was loaded and by when it has to be loaded again.
  int expectedLoads = 0;
  absl::Time reload = time_.now();
  absl::Time midnight = absl::InfinitePast();
  int clockChanges = 0;
  int offset = offsetOf(time_.now());
  int days = 0;
  std::string today;

  const absl::Time end = time_.now() + absl::Hours(24 * 367);
  for (int step = 0; time_.now() < end; ++step) {
    if (time_.now() >= midnight) {
      midnight = calendar.startOfDayAfter(time_.now(), 1).value();
      time_.setMidnight(midnight);
    }
    const std::string now = todayOf(time_.now());
    days += now == today ? 0 : 1;
    today = now;
    clockChanges += offsetOf(time_.now()) == offset ? 0 : 1;
    offset = offsetOf(time_.now());
    // Around a clock change the extension asks to be loaded often.
    const bool changes = offsetOf(time_.now() + absl::Hours(2)) != offsetOf(time_.now() - absl::Hours(2));
    tellExtension(changes ? often : seldom);

    if (step == 0) feed.show({protocol::WidgetFamily::systemMedium, protocol::WidgetFamily::systemSmall});
    feed.handleWakeUps();

    if (time_.now() >= reload) {
      reload = time_.now() + (changes ? often : seldom);
      ++expectedLoads;
    }
    for (const char* const family : {"systemMedium", "systemSmall"}) {
      ASSERT_EQ(shown_[family], "loaded " + std::to_string(expectedLoads - 1) + " " + family + " on " + today)
          << GetParam() << " at " << time_.now();
    }
    ASSERT_EQ(loads_, expectedLoads) << GetParam() << " at " << time_.now();
    // Every third week the machine sleeps for some hours: nothing happens, then everything is due at once.
    const absl::Duration awake = changes ? absl::Minutes(1) : absl::Minutes(15);
    time_.pass(step % 2001 == 2000 ? absl::Hours(7) + absl::Minutes(13) : awake);
  }
  EXPECT_EQ(clockChanges, 2);
  EXPECT_EQ(days, 368);
  EXPECT_LE(redraws_, days) << "nothing is drawn without a reason";
}

INSTANTIATE_TEST_SUITE_P(, YearWalk,
                         testing::Values("Europe/Warsaw", "America/Santiago", "Asia/Beirut", "Australia/Lord_Howe",
                                         "Africa/Cairo"));

}  // namespace
}  // namespace host
