#include "platform/calendar/device_time_zone.hpp"

#include <array>
#include <cstring>
#include <ctime>
#include <string>

#include <gtest/gtest.h>
#include <sys/stat.h>

#include "platform/calendar/calendar.hpp"
#include "support/environment.hpp"
#include "support/temporary_folder.hpp"

namespace platform {
namespace {

std::string inDeviceZone(absl::Time instant) {
  return absl::FormatTime("%Y-%m-%d %H:%M %Ez", instant, deviceTimeZone());
}

/// What the C library shows for the instant under the same `TZ`.
std::string inCLibrary(absl::Time instant) {
  const std::time_t seconds = absl::ToTimeT(instant);
  std::tm broken{};
  tzset();
  localtime_r(&seconds, &broken);
  std::array<char, 64> text{};
  std::strftime(text.data(), text.size(), "%Y-%m-%d %H:%M %z", &broken);
  return std::string(text.data()).insert(std::strlen(text.data()) - 2, ":");
}

class DeviceTimeZone : public testing::TestWithParam<const char*> {};

TEST_P(DeviceTimeZone, ReadsTheVariableAsTheCLibraryDoes) {
  support::ScopedEnvironment environment;
  environment.set("TZ", GetParam());
  for (int month = 1; month <= 12; ++month) {
    const absl::Time instant = absl::FromCivil(absl::CivilHour(2025, month, 15, 12), absl::UTCTimeZone());
    EXPECT_EQ(inDeviceZone(instant), inCLibrary(instant)) << GetParam() << " in month " << month;
  }
}

INSTANTIATE_TEST_SUITE_P(Values, DeviceTimeZone,
                         testing::Values("Europe/Warsaw", ":Europe/Vilnius", "America/Santiago", "UTC", "", ":",
                                         "CET-1CEST,M3.5.0,M10.5.0/3", "EST5EDT", "EST5", "<+0330>-3:30",
                                         "NZST-12NZDT,M9.5.0,M4.1.0/3", "No/Such/Zone", "localtime",
                                         "Fixed/UTC+05:00:00", "libc:localtime", "/usr/share/zoneinfo/Asia/Beirut",
                                         ":/usr/share/zoneinfo/Asia/Beirut", "../zoneinfo/Europe/Warsaw"));

// Opening the pipe would block.
TEST(DeviceTimeZoneFile, OfAPipeOrADeviceIsUtcAndIsNotWaitedFor) {
  const support::TemporaryFolder folder;
  ASSERT_EQ(mkfifo(folder.path("pipe").c_str(), 0600), 0);
  support::ScopedEnvironment environment;
  for (const std::string& file : {folder.path("pipe"), ":" + folder.path("pipe"), std::string("/dev/zero")}) {
    environment.set("TZ", file);
    EXPECT_EQ(deviceTimeZone(), absl::UTCTimeZone()) << file;
  }
  environment.set("TZDIR", folder.path(""));
  environment.set("TZ", "pipe");
  EXPECT_EQ(deviceTimeZone(), absl::UTCTimeZone());
}

struct RuleOfAZone {
  const char* rule;
  const char* name;
};

class StartOfDayByRule : public testing::TestWithParam<RuleOfAZone> {};

TEST_P(StartOfDayByRule, IsThatOfTheZoneWithThisRule) {
  support::ScopedEnvironment environment;
  environment.set("TZ", GetParam().rule);
  const Calendar byRule(deviceTimeZone());
  absl::TimeZone named;
  ASSERT_TRUE(absl::LoadTimeZone(GetParam().name, &named));
  for (absl::CivilDay day(2025, 1, 1); day < absl::CivilDay(2026, 1, 1); ++day) {
    EXPECT_EQ(byRule.startOfDay(day), Calendar(named).startOfDay(day)) << GetParam().rule << " on " << day;
  }
}

INSTANTIATE_TEST_SUITE_P(Rules, StartOfDayByRule,
                         testing::Values(RuleOfAZone{"CET-1CEST,M3.5.0,M10.5.0/3", "Europe/Warsaw"},
                                         RuleOfAZone{"EST5", "Etc/GMT+5"}, RuleOfAZone{"<+0530>-5:30", "Asia/Kolkata"},
                                         RuleOfAZone{"NZST-12NZDT,M9.5.0,M4.1.0/3", "Pacific/Auckland"},
                                         RuleOfAZone{"<-04>4<-03>,M9.1.6/24,M4.1.6/24", "America/Santiago"},
                                         RuleOfAZone{"EET-2EEST,M3.5.0/0,M10.5.0/0", "Asia/Beirut"}));

TEST(DeviceTimeZone, FollowsAChangeInARunningProcess) {
  support::ScopedEnvironment environment;
  const absl::Time instant = absl::FromCivil(absl::CivilHour(2025, 7, 1, 12), absl::UTCTimeZone());
  environment.set("TZ", "CET-1CEST,M3.5.0,M10.5.0/3");
  EXPECT_EQ(inDeviceZone(instant), "2025-07-01 14:00 +02:00");
  environment.set("TZ", "EST5EDT,M3.2.0,M11.1.0");
  EXPECT_EQ(inDeviceZone(instant), "2025-07-01 08:00 -04:00");
  environment.set("TZ", "Asia/Beirut");
  EXPECT_EQ(inDeviceZone(instant), "2025-07-01 15:00 +03:00");
}

TEST(DeviceTimeZone, ReadsTheSystemsZoneWithoutTheVariable) {
  support::ScopedEnvironment environment;
  environment.unset("TZ");
  const absl::Time instant = absl::FromCivil(absl::CivilHour(2025, 7, 1, 12), absl::UTCTimeZone());
  EXPECT_EQ(inDeviceZone(instant), inCLibrary(instant));
}

}  // namespace
}  // namespace platform
