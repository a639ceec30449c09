// The device's time zone as the built extension sees it: every way to name one, and the days on which clocks change.
#include <string>

#include "base/text/instant.hpp"
#include "end_to_end/extension_fixture.hpp"
#include "support/shifted_clock/shifted_clock.hpp"

namespace end_to_end {
namespace {

using testing::ElementsAre;

json entryWith(const json& tasks, const json& meetings) {
  return {{"date", "2025-03-14T09:30:00Z"}, {"zadania", tasks}, {"spotkania", meetings}, {"doDecyzji", 0}};
}

json meetingAt(const std::string& start) {
  return {{"id", "00000000-0000-4000-8000-000000000001"}, {"tytul", "N"}, {"kiedy", start}, {"czasTrwaniaMin", 5}};
}

using ExtensionTimeZoneTest = ServiceTest;

TEST_F(ExtensionTimeZoneTest, HoursAreThoseOfTheZoneHoweverItIsNamed) {
  const std::string winter = "2025-01-15T09:30:00Z";
  const std::string summer = "2025-07-15T09:30:00Z";
  const std::vector<std::tuple<std::string, std::string, std::string>> cases{
      {"Europe/Warsaw", "10:30", "11:30"},
      {":Europe/Warsaw", "10:30", "11:30"},
      {"CET-1CEST,M3.5.0,M10.5.0/3", "10:30", "11:30"},
      {":CET-1CEST,M3.5.0,M10.5.0/3", "10:30", "11:30"},
      {"<+0530>-5:30", "15:00", "15:00"},
      {"EST5EDT", "04:30", "05:30"},
      {"America/St_Johns", "06:00", "07:00"},
      {"Asia/Kathmandu", "15:15", "15:15"},
      {"America/Santiago", "06:30", "05:30"},
      {"Pacific/Kiritimati", "23:30", "23:30"},
      {"UTC", "09:30", "09:30"},
      {"", "09:30", "09:30"},
      {"Nowhere/At_All", "09:30", "09:30"},
  };
  for (const auto& [zone, inWinter, inSummer] : cases) {
    environment["TZ"] = zone;
    restart();
    const json view = render(entryWith(json::array(), json::array({meetingAt(winter), meetingAt(summer)})));
    EXPECT_THAT(textsOf(view), ElementsAre("Vamba", inWinter, "N", "jutro", inSummer, "N", "jutro")) << zone;
  }
}

/// One moment on or near a day on which clocks change. The borders are instants, so that no code of the extension's
/// decides what is expected of it.
struct ClockChange {
  const char* zone;
  const char* now;
  const char* dayBegins;
  const char* nextDayBegins;
  const char* dayAfterBegins;
};

const std::vector<ClockChange> clockChanges{
    // An hour before the clocks go forward, and in the hour that comes twice.
    {"Europe/Warsaw", "2025-03-30T00:30:00Z", "2025-03-29T23:00:00Z", "2025-03-30T22:00:00Z", "2025-03-31T22:00:00Z"},
    {"Europe/Warsaw", "2025-10-26T01:30:00Z", "2025-10-25T22:00:00Z", "2025-10-26T23:00:00Z", "2025-10-27T23:00:00Z"},
    // A rule in place of the name.
    {"CET-1CEST,M3.5.0,M10.5.0/3", "2025-10-26T01:30:00Z", "2025-10-25T22:00:00Z", "2025-10-26T23:00:00Z",
     "2025-10-27T23:00:00Z"},
    // The day begins at one: seen on that day, on its eve and on the day before its eve.
    {"America/Santiago", "2025-09-07T04:30:00Z", "2025-09-07T04:00:00Z", "2025-09-08T03:00:00Z",
     "2025-09-09T03:00:00Z"},
    {"America/Santiago", "2025-09-06T15:00:00Z", "2025-09-06T04:00:00Z", "2025-09-07T04:00:00Z",
     "2025-09-08T03:00:00Z"},
    {"America/Santiago", "2025-09-05T15:00:00Z", "2025-09-05T04:00:00Z", "2025-09-06T04:00:00Z",
     "2025-09-07T04:00:00Z"},
    // The day's last hour comes twice.
    {"America/Santiago", "2025-04-06T03:30:00Z", "2025-04-05T03:00:00Z", "2025-04-06T04:00:00Z",
     "2025-04-07T04:00:00Z"},
    {"Asia/Beirut", "2025-03-29T22:30:00Z", "2025-03-29T22:00:00Z", "2025-03-30T21:00:00Z", "2025-03-31T21:00:00Z"},
    {"Asia/Beirut", "2025-10-25T21:30:00Z", "2025-10-24T21:00:00Z", "2025-10-25T22:00:00Z", "2025-10-26T22:00:00Z"},
};

class ExtensionClockChangeTest : public ServiceTest {
 protected:
  std::vector<std::string> marksOf(const json& tasks, const json& meetings) {
    std::vector<std::string> marks;
    for (const auto& text : textsOf(render(entryWith(tasks, meetings)))) {
      if (text == "jutro" || text == "zaległe") marks.push_back(text);
    }
    return marks;
  }
};

TEST_F(ExtensionClockChangeTest, RowsAreChosenAndMarkedByTheDaysOfTheirZone) {
  for (const auto& change : clockChanges) {
    SCOPED_TRACE(std::string(change.zone) + " at " + change.now);
    const auto instant = [](const char* text) { return base::parseInstant(text).value(); };
    const auto before = [&](const char* text) { return base::formatInstant(instant(text) - absl::Seconds(1)); };
    // The shifted clock runs on, so the first meeting is far enough away for the slowest machine.
    const auto soon = base::formatInstant(instant(change.now) + absl::Minutes(20));
    service.answer(tasksTarget, {.body = json{serverTask(1, "dziś na końcu", before(change.nextDayBegins)),
                                              serverTask(2, "dziś na początku", change.dayBegins),
                                              serverTask(3, "wczoraj", before(change.dayBegins)),
                                              serverTask(4, "od jutra", change.nextDayBegins)}
                                             .dump()});
    service.answer(meetingsTarget,
                   {.body = json{serverMeeting(5, "pojutrze", change.dayAfterBegins),
                                 serverMeeting(6, "jutro na końcu", before(change.dayAfterBegins)),
                                 serverMeeting(7, "jutro na początku", change.nextDayBegins),
                                 serverMeeting(8, "dziś na końcu", before(change.nextDayBegins)),
                                 serverMeeting(9, "zaraz", soon), serverMeeting(10, "minęło", before(change.now))}
                                .dump()});
    const support::ShiftedClock clock(instant(change.now), change.zone);
    for (const auto& [name, value] : clock.environment()) environment[name] = value;
    environment["TZ"] = change.zone;
    restart();

    const json entry = loadEntry();
    ASSERT_FALSE(entry.contains("blad")) << entry << extension().diagnostics();
    EXPECT_LT(instant(entry["date"].get<std::string>().c_str()) - instant(change.now), absl::Minutes(20));
    EXPECT_THAT(fieldOf(entry["zadania"], "tytul"), ElementsAre("wczoraj", "dziś na końcu", "dziś na początku"));
    EXPECT_THAT(fieldOf(entry["spotkania"], "tytul"),
                ElementsAre("zaraz", "dziś na końcu", "jutro na początku", "jutro na końcu"));

    EXPECT_THAT(marksOf(entry["zadania"], json::array()), ElementsAre("zaległe"));
    std::vector<std::size_t> marks;
    for (const auto& meeting : entry["spotkania"])
      marks.push_back(marksOf(json::array(), json::array({meeting})).size());
    EXPECT_THAT(marks, ElementsAre(0, 0, 1, 1));
  }
}

}  // namespace
}  // namespace end_to_end
