// `vamba-host watch` with the real extension at midnight and in another zone. The rest of what time does is tested at
// the feed (tests/host/feed).
#include <gmock/gmock.h>
#include <nlohmann/json.hpp>

#include "end_to_end/extension_fixture.hpp"
#include "host/commands/host_process.hpp"
#include "support/file_content.hpp"
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

  support::ShiftedClock clock_{utc(14, 22, 50), "Europe/Warsaw"};
  support::ScopedEnvironment environment_;
  support::TemporaryFolder folder_;
};

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

TEST_F(WatchOfADay, PrintsTheDayOfANewZoneWithoutALoad) {
  HostProcess host({"watch"}, Onto::pipe, "", VAMBA_EXTENSION);
  EXPECT_THAT(board(host), AllOf(HasSubstr("09:30"), HasSubstr("jutro")));
  clock_.setZone("Europe/Vilnius");
  EXPECT_THAT(board(host), AllOf(HasSubstr("10:30"), Not(HasSubstr("jutro")), HasSubstr("zaległe")));
  EXPECT_EQ(service_.requests().size(), 3U);
}

TEST_F(WatchByAShiftedClock, PrintsNoBoardThatIsTheSameInANewZone) {
  environment_.set("FAKE_EXTENSION_REQUESTS", folder_.path("requests"));
  const auto asked = [this] { return support::contentOf(folder_.path("requests")); };
  HostProcess host({"watch"});
  host.readUntil("╯\n");
  for (const char* zone : {"Europe/Berlin", "Europe/Vilnius", "Asia/Tokyo"}) {
    const auto before = asked();
    clock_.setZone(zone);
    // The board is drawn anew, so that of the zone before has been judged.
    EXPECT_TRUE(support::eventually([&] { return asked() != before; })) << zone;
  }
  host.signal(SIGTERM);
  EXPECT_EQ(host.rest(), "");
}

}  // namespace
}  // namespace host
