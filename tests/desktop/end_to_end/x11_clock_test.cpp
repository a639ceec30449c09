// Boards of a running desktop when time does more than pass: midnight, travel, sleep, and a clock that is put right.

#include "desktop/end_to_end/x11_service_fixture.hpp"
#include "support/shifted_clock/shifted_clock.hpp"

namespace end_to_end {
namespace {

using support::Bitmap;

absl::Time utc(int day, int hour, int minute) {
  return absl::FromCivil(absl::CivilMinute(2025, 3, day, hour, minute), absl::UTCTimeZone());
}

/// The host and whatever it starts live by the test's clock, in the zone of the system's file.
void liveBy(const support::ShiftedClock& clock, HostSettings& settings) {
  settings.variables.merge(clock.environment());
  settings.without = {"TZ"};
}

/// The real widget on the evening of Friday, 14 March 2025, ten minutes before midnight in Warsaw: a task is due that
/// day, and a meeting is tomorrow at half past nine.
class DayOnX11 : public ServiceOnX11 {
 protected:
  DayOnX11() {
    service_.answer(tasksTarget, {.body = json::array({serverTask(41, "Oddać rozliczenie", "2025-03-14")}).dump()});
    service_.answer(meetingsTarget, {.body = json::array({serverMeeting(7, "Narada", "2025-03-15T08:30:00Z")}).dump()});
    folder_.write("entry", entry().dump());
    liveBy(clock_, settings_);
  }

  /// What these answers become.
  static json entry() {
    const json task = serverTask(41, "Oddać rozliczenie", std::nullopt);
    const json meeting = serverMeeting(7, "Narada", "2025-03-15T08:30:00Z");
    return {{"date", "2025-03-14T22:50:00Z"},
            {"zadania",
             {{{"id", task["id"]},
               {"numer", 41},
               {"tytul", task["tytul"]},
               {"termin", "2025-03-13T23:00:00Z"},
               {"status", task["status"]},
               {"projektNazwa", task["projekt_nazwa"]}}}},
            {"spotkania",
             {{{"id", meeting["id"]},
               {"tytul", meeting["tytul"]},
               {"kiedy", meeting["kiedy"]},
               {"czasTrwaniaMin", meeting["czas_trwania_min"]}}}},
            {"doDecyzji", 0}};
  }

  /// The entry as the exporter draws it at this moment and in this zone, which asks the service nothing.
  Bitmap entryNow() { return exported({"--entry", folder_.path("entry")}); }

  /// Shows the first board, which takes three requests.
  void startDay() {
    start();
    ASSERT_TRUE(host().says(loaded)) << host().said();
    ASSERT_EQ(service_.requests().size(), 3U);
    shown_ = entryNow();
    ASSERT_TRUE(boardBecomes(shown_, "x11-clock-before"));
  }

  /// To the last digit of a time.
  testing::AssertionResult boardBecomes(const Bitmap& picture, const std::string& name) {
    return comesToShowInside(firstPlace(), picture, name, strict);
  }
  /// The board turns into this, which is another, and the service is not asked.
  void expectDrawnAnew(const Bitmap& picture, const std::string& name) {
    EXPECT_GT(support::differingPixels(picture, shown_, strict.channel) * strict.oneMayDiffer, picture.pixels.size())
        << "the picture is to tell one from the other";
    EXPECT_TRUE(boardBecomes(picture, name)) << host().said();
    EXPECT_EQ(service_.requests().size(), 3U);
    shown_ = picture;
  }

  static constexpr support::Tolerance strict{.oneMayDiffer = 10'000};

  support::ShiftedClock clock_{utc(14, 22, 50), "Europe/Warsaw"};
  Bitmap shown_;
};

TEST_F(DayOnX11, NewDayIsDrawnWhenMidnightComesWithoutALoad) {
  startDay();
  const auto midnight = utc(14, 23, 0);
  clock_.set(midnight - absl::Milliseconds(800));
  ASSERT_TRUE(eventually([&] { return clock_.now() >= midnight; }));
  expectDrawnAnew(entryNow(), "x11-midnight");
}

TEST_F(DayOnX11, NewDayIsDrawnWhenTheClockIsSetPastMidnightWithoutALoad) {
  startDay();
  clock_.set(utc(14, 23, 2));
  expectDrawnAnew(entryNow(), "x11-past-midnight");
  clock_.set(utc(14, 22, 52));
  expectDrawnAnew(entryNow(), "x11-before-midnight-again");
}

TEST_F(DayOnX11, TimesAreThoseOfANewZoneWithoutALoad) {
  clock_.set(utc(14, 10, 0));
  startDay();
  for (const std::string zone : {"Asia/Tokyo", "Europe/Vilnius", "Europe/Warsaw"}) {
    clock_.setZone(zone);
    expectDrawnAnew(entryNow(), "x11-zone");
  }
}

TEST_F(DayOnX11, DayIsThatOfANewZoneWithoutALoad) {
  startDay();
  // An hour east it is the fifteenth already.
  clock_.setZone("Europe/Vilnius");
  expectDrawnAnew(entryNow(), "x11-zone-day");
}

TEST_F(DayOnX11, MidnightIsThatOfANewZone) {
  clock_.set(utc(14, 21, 50));
  startDay();
  clock_.setZone("Europe/Vilnius");
  expectDrawnAnew(entryNow(), "x11-zone-before-midnight");
  const auto midnight = utc(14, 22, 0);
  clock_.set(midnight - absl::Milliseconds(800));
  ASSERT_TRUE(eventually([&] { return clock_.now() >= midnight; }));
  expectDrawnAnew(entryNow(), "x11-zone-midnight");
}

TEST_F(DayOnX11, TimelineIsAskedForAtOnceWhenTheMachineWakesAfterItsReloadDate) {
  startDay();
  service_.answer(tasksTarget, {.body = json::array({serverTask(42, "Sprawdzić korektę", "2025-03-14")}).dump()});
  clock_.sleep(absl::Hours(8));
  EXPECT_TRUE(host().says(loaded, 2)) << host().said();
  EXPECT_EQ(service_.requests().size(), 6U);
  EXPECT_TRUE(boardBecomes(exported(), "x11-awake"));
}

/// What is asked of an extension that says how often.
class JumpOnX11 : public OnX11 {
 protected:
  JumpOnX11() { liveBy(clock_, settings_); }

  /// Two views are rendered by then, the first of a placeholder.
  void startBoard() {
    start();
    ASSERT_TRUE(host().says(loaded)) << host().said();
    EXPECT_EQ(extension_.requests("timeline"), 1U);
  }
  void set(absl::Duration by) { clock_.set(clock_.now() + by); }
  testing::AssertionResult comesToBeAsked(const std::string& method, std::size_t times) {
    if (eventually([&] { return extension_.requests(method) == times; })) return testing::AssertionSuccess();
    return testing::AssertionFailure() << extension_.requests(method) << " times\n" << host().said();
  }

  support::ShiftedClock clock_{utc(14, 9, 0), "Europe/Warsaw"};
};

TEST_F(JumpOnX11, ClockThatIsSetPastTheReloadDateAsksAtOnce) {
  startBoard();
  set(absl::Minutes(16));
  EXPECT_TRUE(comesToBeAsked("timeline", 2));
  EXPECT_TRUE(host().says(loaded, 2));
  set(absl::Hours(24 * 400));
  EXPECT_TRUE(comesToBeAsked("timeline", 3));
}

TEST_F(JumpOnX11, ClockThatIsSetShortOfTheReloadDateOnlyDrawsAnew) {
  startBoard();
  // A load that one of them planned would come before the view that the next one asks for.
  std::size_t renders = 2;
  for (const auto by : {absl::Minutes(10), -absl::Minutes(5), absl::Minutes(5), -absl::Minutes(9)}) {
    set(by);
    ASSERT_TRUE(comesToBeAsked("render", ++renders)) << by;
    EXPECT_EQ(extension_.requests("timeline"), 1U) << by;
  }
  set(absl::Minutes(9));
  EXPECT_TRUE(comesToBeAsked("render", ++renders));
  // And it is the same date still.
  set(absl::Minutes(6));
  EXPECT_TRUE(comesToBeAsked("timeline", 2));
}

TEST_F(JumpOnX11, ClockThatIsSetBackAsksAtOnceInsteadOfWaitingLongerThanEver) {
  startBoard();
  set(-absl::Hours(3));
  EXPECT_TRUE(comesToBeAsked("timeline", 2));
  EXPECT_TRUE(host().says(loaded, 2));
  // The date that came then is by the new clock.
  set(absl::Minutes(16));
  EXPECT_TRUE(comesToBeAsked("timeline", 3));
}

TEST_F(JumpOnX11, ReloadDateThatComesByItselfIsKept) {
  startBoard();
  set(absl::Minutes(15) - absl::Milliseconds(500));
  EXPECT_TRUE(comesToBeAsked("timeline", 2));
}

}  // namespace
}  // namespace end_to_end
