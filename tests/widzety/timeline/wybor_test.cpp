#include "widzety/timeline/wybor.hpp"

#include <random>

#include <gmock/gmock.h>

#include "support/clock_change_days.hpp"
#include "support/fixed_clock.hpp"
#include "support/records.hpp"

namespace widzety {
namespace {

using support::at;
using support::spotkanie;
using support::zadanie;
using support::zone;
using testing::ElementsAre;
using testing::IsEmpty;

std::vector<std::int64_t> numery(const std::vector<ZadanieMoje>& zadania) {
  std::vector<std::int64_t> result;
  for (const auto& jedno : zadania) result.push_back(jedno.numer);
  return result;
}

std::vector<std::string> tytuly(const std::vector<SpotkaniePlanowane>& spotkania) {
  std::vector<std::string> result;
  for (const auto& jedno : spotkania) result.push_back(jedno.tytul);
  return result;
}

class Wybor : public testing::Test {
 protected:
  const absl::TimeZone warszawa_ = zone("Europe/Warsaw");
  const platform::Calendar kalendarz_{warszawa_};
  const absl::Time teraz_ = at("2025-03-14 10:30", warszawa_);

  absl::Time chwila(const std::string& civil) const { return at(civil, warszawa_); }
};

TEST_F(Wybor, DropsFinishedAndRejectedTasksEvenWhenOverdue) {
  const auto wczoraj = chwila("2025-03-13 09:00");
  EXPECT_THAT(numery(wybierzZadania(
                  {zadanie(1, wczoraj, "zrobione"), zadanie(2, wczoraj, "odrzucone"), zadanie(3, wczoraj, "w_toku"),
                   zadanie(4, wczoraj, "Zrobione"), zadanie(5, wczoraj, "cokolwiek"), zadanie(6, wczoraj, "")},
                  teraz_, kalendarz_)),
              ElementsAre(3, 4, 5, 6));
}

TEST_F(Wybor, PutsOverdueTasksBeforeTodaysInTheOrderOfTheirDays) {
  EXPECT_THAT(numery(wybierzZadania({zadanie(1, chwila("2025-03-14 08:00")), zadanie(2, chwila("2025-03-13 23:59")),
                                     zadanie(3, chwila("2024-12-31 12:00"))},
                                    teraz_, kalendarz_)),
              ElementsAre(3, 2, 1));
}

TEST_F(Wybor, KeepsTheServicesOrderWithinADayWhateverTheHour) {
  EXPECT_THAT(numery(wybierzZadania({zadanie(1, chwila("2025-03-14 18:00")), zadanie(2, chwila("2025-03-14 08:00")),
                                     zadanie(3, chwila("2025-03-14 00:00"))},
                                    teraz_, kalendarz_)),
              ElementsAre(1, 2, 3));
}

TEST_F(Wybor, DropsTasksWithoutADeadlineAndThoseDueLater) {
  EXPECT_THAT(numery(wybierzZadania({zadanie(1, std::nullopt), zadanie(2, chwila("2025-03-15 00:00")),
                                     zadanie(3, chwila("2025-03-14 23:59"))},
                                    teraz_, kalendarz_)),
              ElementsAre(3));
}

TEST_F(Wybor, DropsMeetingThatStartedAMinuteAgo) {
  EXPECT_THAT(tytuly(wybierzSpotkania({spotkanie("trwa", teraz_ - absl::Minutes(1)), spotkanie("teraz", teraz_)},
                                      teraz_, kalendarz_)),
              ElementsAre("teraz"));
}

TEST_F(Wybor, KeepsMeetingsUntilTheEndOfTomorrow) {
  EXPECT_THAT(tytuly(wybierzSpotkania(
                  {spotkanie("pojutrze", chwila("2025-03-16 00:00")), spotkanie("jutro", chwila("2025-03-15 23:59")),
                   spotkanie("dzis", chwila("2025-03-14 12:00"))},
                  teraz_, kalendarz_)),
              ElementsAre("dzis", "jutro"));
}

TEST_F(Wybor, KeepsTheServicesOrderOfMeetingsAtOneInstant) {
  const auto kiedy = chwila("2025-03-14 12:00");
  EXPECT_THAT(
      tytuly(wybierzSpotkania({spotkanie("b", kiedy), spotkanie("a", kiedy), spotkanie("c", kiedy - absl::Minutes(1))},
                              teraz_, kalendarz_)),
      ElementsAre("c", "b", "a"));
}

TEST_F(Wybor, LetsNoMeetingPassWhereTheCalendarHasNoDayAfterTomorrow) {
  EXPECT_THAT(wybierzSpotkania({spotkanie("nigdy", absl::InfiniteFuture())}, absl::InfiniteFuture(), kalendarz_),
              IsEmpty());
}

TEST(WyborOverAClockChange, CountsTheShortAndTheLongDayAsDays) {
  const auto beirut = zone("Asia/Beirut");
  const platform::Calendar kalendarz(beirut);
  // Midnight of 31 March 2024 does not exist there: the day begins at one o'clock.
  const auto teraz = at("2024-03-30 22:00", beirut);
  EXPECT_THAT(tytuly(wybierzSpotkania({spotkanie("w noc zmiany", at("2024-03-31 01:00", beirut)),
                                       spotkanie("ostatnie", at("2024-03-31 23:59", beirut)),
                                       spotkanie("za daleko", at("2024-04-01 00:00", beirut))},
                                      teraz, kalendarz)),
              ElementsAre("w noc zmiany", "ostatnie"));
  EXPECT_THAT(
      numery(wybierzZadania({zadanie(1, at("2024-03-31 01:00", beirut)), zadanie(2, at("2024-03-30 00:00", beirut))},
                            teraz, kalendarz)),
      ElementsAre(2));
}

// The slow models: every rule by itself, on days written as text, found by walking through the calendar minute by
// minute.

std::string dzien(absl::Time chwila, absl::TimeZone strefa) { return absl::FormatTime("%E4Y-%m-%d", chwila, strefa); }

/// The first instant, to the minute, whose date is `ile` days later or, where the calendar leaps over that day, more.
absl::Time poczatekDniaPo(absl::Time od, int ile, absl::TimeZone strefa) {
  const std::string szukany = absl::FormatCivilTime(absl::ToCivilDay(od, strefa) + ile);
  absl::Time chwila = absl::UnixEpoch() + absl::Floor(od - absl::UnixEpoch(), absl::Minutes(1));
  while (dzien(chwila, strefa) < szukany) chwila += absl::Minutes(1);
  return chwila;
}

std::vector<ZadanieMoje> modelZadan(const std::vector<ZadanieMoje>& zadania, absl::Time teraz, absl::TimeZone strefa) {
  std::vector<ZadanieMoje> wynik;
  for (const auto& jedno : zadania) {
    if (jedno.status == "zrobione" || jedno.status == "odrzucone" || !jedno.termin) continue;
    if (dzien(*jedno.termin, strefa) > dzien(teraz, strefa)) continue;
    auto miejsce = wynik.begin();
    while (miejsce != wynik.end() && dzien(*miejsce->termin, strefa) <= dzien(*jedno.termin, strefa)) ++miejsce;
    wynik.insert(miejsce, jedno);
  }
  return wynik;
}

std::vector<SpotkaniePlanowane> modelSpotkan(const std::vector<SpotkaniePlanowane>& spotkania, absl::Time teraz,
                                             absl::TimeZone strefa) {
  const absl::Time koniec = poczatekDniaPo(teraz, 2, strefa);
  std::vector<SpotkaniePlanowane> wynik;
  for (const auto& jedno : spotkania) {
    if (jedno.kiedy < teraz || jedno.kiedy >= koniec) continue;
    auto miejsce = wynik.begin();
    while (miejsce != wynik.end() && miejsce->kiedy <= jedno.kiedy) ++miejsce;
    wynik.insert(miejsce, jedno);
  }
  return wynik;
}

class WyborNaLosowychDanych : public testing::TestWithParam<support::ClockChangeDay> {};

TEST_P(WyborNaLosowychDanych, AgreesWithTheSlowModel) {
  const auto& [nazwa, zmiana] = GetParam();
  const auto strefa = zone(nazwa);
  const platform::Calendar kalendarz(strefa);
  const auto seed = std::random_device{}();
  SCOPED_TRACE(testing::Message() << "seed " << seed);
  std::mt19937 random(seed);
  const auto minuty = [&](int span) { return absl::Minutes(std::uniform_int_distribution(-span, span)(random)); };
  const std::array statusy{"otwarte", "w_toku", "zrobione", "odrzucone", "nowe"};

  for (int runda = 0; runda < 40; ++runda) {
    const absl::Time teraz = at(zmiana, strefa) + minuty(2 * 24 * 60) + absl::Seconds(runda);
    std::vector<ZadanieMoje> zadania;
    std::vector<SpotkaniePlanowane> spotkania;
    for (int i = 0; i < 30; ++i) {
      // Hours in whole quarters, so that many fall on the same instant and on midnights.
      const auto kwadrans = absl::Minutes(15);
      const auto termin = absl::UnixEpoch() + absl::Floor(teraz + minuty(4 * 24 * 60) - absl::UnixEpoch(), kwadrans);
      const auto kiedy = absl::UnixEpoch() + absl::Floor(teraz + minuty(3 * 24 * 60) - absl::UnixEpoch(), kwadrans);
      zadania.push_back(zadanie(i, i % 7 == 0 ? std::nullopt : std::optional(termin),
                                statusy[std::uniform_int_distribution<std::size_t>(0, statusy.size() - 1)(random)]));
      spotkania.push_back(spotkanie(std::to_string(i), i == 5 ? teraz : kiedy));
    }
    ASSERT_EQ(numery(wybierzZadania(zadania, teraz, kalendarz)), numery(modelZadan(zadania, teraz, strefa))) << teraz;
    ASSERT_EQ(tytuly(wybierzSpotkania(spotkania, teraz, kalendarz)), tytuly(modelSpotkan(spotkania, teraz, strefa)))
        << teraz;
  }
}

INSTANTIATE_TEST_SUITE_P(Miejsca, WyborNaLosowychDanych, testing::ValuesIn(support::clockChangeDays));

}  // namespace
}  // namespace widzety
