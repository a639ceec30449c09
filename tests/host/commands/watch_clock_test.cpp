// `vamba-host watch` when time does more than pass: midnight, travel, sleep, and a clock that is put right.
#include <gmock/gmock.h>
#include <nlohmann/json.hpp>

#include "end_to_end/extension_fixture.hpp"
#include "host/commands/host_process.hpp"
#include "support/shifted_clock/shifted_clock.hpp"
#include "support/waiting.hpp"

namespace host {
namespace {

using nlohmann::json;
using testing::AllOf;
using testing::HasSubstr;
using testing::Not;

absl::Time utc(int day, int hour, int minute) {
  return absl::FromCivil(absl::CivilMinute(2025, 3, day, hour, minute), absl::UTCTimeZone());
}

/// Ten minutes before midnight in Warsaw.
class WatchByAShiftedClock : public testing::Test {
 protected:
  WatchByAShiftedClock() {
    for (const auto& [name, value] : clock_.environment()) environment_.set(name, value);
    environment_.unset("TZ");
    environment_.set("LANGUAGE", "pl");
  }
  void set(absl::Duration by) { clock_.set(clock_.now() + by); }

  support::ShiftedClock clock_{utc(14, 22, 50), "Europe/Warsaw"};
  support::ScopedEnvironment environment_;
  support::TemporaryFolder folder_;
};

class WatchOfTheFake : public WatchByAShiftedClock {
 protected:
  WatchOfTheFake() { environment_.set("FAKE_EXTENSION_REQUESTS", folder_.path("requests")); }

  std::ptrdiff_t requests(const std::string& method) const {
    std::ifstream file(folder_.path("requests"));
    std::ptrdiff_t count = 0;
    for (std::string line; std::getline(file, line);) count += line == method ? 1 : 0;
    return count;
  }
};

TEST_F(WatchOfTheFake, AsksAtOnceWhenTheReloadDateHasPassedOrGoneFarAway) {
  environment_.set("FAKE_EXTENSION_TITLE", "board");
  HostProcess host({"watch", "--format", "json"});
  EXPECT_EQ(json::parse(host.line())["text"], "board systemMedium");
  // A line is printed for each load, and for no other reason as long as the view is the same.
  for (const auto by : {absl::Minutes(16), absl::Hours(24 * 400), -absl::Hours(3)}) {
    set(by);
    EXPECT_EQ(json::parse(host.line())["text"], "board systemMedium") << by;
  }
  clock_.sleep(absl::Hours(8));
  EXPECT_EQ(json::parse(host.line())["text"], "board systemMedium");
  EXPECT_EQ(requests("timeline"), 5);
}

TEST_F(WatchOfTheFake, AsksNothingWhenTheReloadDateIsStillAhead) {
  HostProcess host({"watch", "--format", "json"});
  host.line();
  // A load that one of them planned would come before the view that the next one asks for.
  std::ptrdiff_t renders = 1;
  for (const auto by : {absl::Minutes(10), -absl::Minutes(5), absl::Minutes(5)}) {
    set(by);
    ++renders;
    ASSERT_TRUE(support::eventually([&] { return requests("render") == renders; })) << by;
    EXPECT_EQ(requests("timeline"), 1) << by;
  }
  clock_.sleep(absl::Minutes(6));
  host.line();
  EXPECT_EQ(requests("timeline"), 2);
}

TEST_F(WatchOfTheFake, MissesNoSettingWhileABoardIsDrawn) {
  environment_.set("FAKE_EXTENSION_HELD", folder_.path("held"));
  for (const auto by : {absl::Minutes(10), -absl::Hours(3)}) {
    std::filesystem::remove(folder_.path("requests"));
    folder_.write("held", "");
    HostProcess host({"watch", "--format", "json"});
    ASSERT_TRUE(support::eventually([&] { return requests("render") == 1; }));
    set(by);
    std::filesystem::remove(folder_.path("held"));
    host.line();
    // It is drawn anew, and where the date is far away now, by a load that follows.
    EXPECT_TRUE(support::eventually([&] { return requests("render") >= 2; })) << by;
    if (by < absl::ZeroDuration()) host.line();
    EXPECT_EQ(requests("timeline"), by < absl::ZeroDuration() ? 2 : 1) << by;
  }
}

TEST_F(WatchOfTheFake, PauseAfterAFailurePassesWhileTheMachineSleeps) {
  environment_.set("FAKE_EXTENSION", "exit 3");
  environment_.set("FAKE_EXTENSION_STARTS", folder_.path("starts"));
  const auto starts = [this] {
    std::ifstream file(folder_.path("starts"));
    return std::count(std::istreambuf_iterator<char>(file), {}, '\n');
  };
  HostProcess host({"watch", "--format", "waybar"});
  // Its pauses double: seven of them would be of two minutes.
  EXPECT_TRUE(support::eventually([&] {
    clock_.sleep(absl::Minutes(6));
    return starts() >= 8;
  })) << host.errors();
}

/// A task is due that day, and a meeting is tomorrow at half past nine.
class WatchOfADay : public WatchByAShiftedClock {
 protected:
  WatchOfADay() {
    items_.store("token-urzadzenia", "tajne-7");
    items_.store("adres-api", service_.url("/api"));
    const json task = end_to_end::serverTask(41, "Oddać rozliczenie", "2025-03-14");
    const json meeting = end_to_end::serverMeeting(7, "Narada", "2025-03-15T08:30:00Z");
    service_.answer(end_to_end::tasksTarget, {.body = json::array({task}).dump()});
    service_.answer(end_to_end::meetingsTarget, {.body = json::array({meeting}).dump()});
    service_.answer(end_to_end::inboxTarget, {.body = R"({"zadania": []})"});
    environment_.set("VAMBA_KEYCHAIN_DIR", folder_.path("keychain"));
  }
  static std::string board(HostProcess& host) { return host.readUntil("╯\n"); }

  end_to_end::ItemFolder items_{folder_.path("keychain")};
  support::ScriptedHttpServer service_;
};

TEST_F(WatchOfADay, PrintsTheNewDayAtMidnightWithoutALoad) {
  HostProcess host({"watch"}, Onto::pipe, "", VAMBA_EXTENSION);
  EXPECT_THAT(board(host), AllOf(HasSubstr("Narada"), HasSubstr("jutro"), Not(HasSubstr("zaległe"))));
  clock_.set(utc(14, 23, 0) - absl::Milliseconds(800));
  EXPECT_THAT(board(host), AllOf(HasSubstr("Narada"), Not(HasSubstr("jutro")), HasSubstr("zaległe")));
  EXPECT_GE(clock_.now(), utc(14, 23, 0));
  EXPECT_EQ(service_.requests().size(), 3U);
}

TEST_F(WatchOfADay, PrintsTheTimesOfANewZoneWithoutALoad) {
  clock_.set(utc(14, 10, 0));
  HostProcess host({"watch"}, Onto::pipe, "", VAMBA_EXTENSION);
  EXPECT_THAT(board(host), AllOf(HasSubstr("09:30"), HasSubstr("jutro")));
  clock_.setZone("Asia/Tokyo");
  EXPECT_THAT(board(host), AllOf(HasSubstr("17:30"), HasSubstr("jutro")));
  clock_.setZone("America/Santiago");
  EXPECT_THAT(board(host), AllOf(HasSubstr("05:30"), HasSubstr("jutro")));
  EXPECT_EQ(service_.requests().size(), 3U);
}

TEST_F(WatchOfADay, PrintsTheDayOfANewZoneWithoutALoad) {
  HostProcess host({"watch"}, Onto::pipe, "", VAMBA_EXTENSION);
  EXPECT_THAT(board(host), AllOf(HasSubstr("09:30"), HasSubstr("jutro")));
  clock_.setZone("Europe/Vilnius");
  EXPECT_THAT(board(host), AllOf(HasSubstr("10:30"), Not(HasSubstr("jutro")), HasSubstr("zaległe")));
  EXPECT_EQ(service_.requests().size(), 3U);
}

}  // namespace
}  // namespace host
