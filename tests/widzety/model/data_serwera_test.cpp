#include "widzety/model/data_serwera.hpp"

#include <random>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include <gtest/gtest.h>

#include "base/text/instant.hpp"
#include "support/fixed_clock.hpp"

namespace widzety {
namespace {

using platform::DecodingError;
using support::zone;

std::expected<absl::Time, DecodingError> wczytaj(std::string_view tekst) {
  return wczytajDate(tekst, strefaDatySerwera());
}

struct Przypadek {
  std::string_view tekst;
  std::string_view chwila;  ///< RFC 3339 in UTC
};

void sprawdz(std::span<const Przypadek> przypadki) {
  for (const auto& [tekst, chwila] : przypadki) {
    const auto wynik = wczytaj(tekst);
    ASSERT_TRUE(wynik) << tekst;
    EXPECT_EQ(base::formatInstant(*wynik), chwila) << tekst;
  }
}

TEST(DataSerwera, ReadsADateAloneAsMidnightInWarsaw) {
  sprawdz(std::vector<Przypadek>{
      {"2025-03-14", "2025-03-13T23:00:00Z"},
      {"2025-07-01", "2025-06-30T22:00:00Z"},
      // Both nights of a clock change: the day begins before the clocks move.
      {"2025-03-30", "2025-03-29T23:00:00Z"},
      {"2025-03-31", "2025-03-30T22:00:00Z"},
      {"2025-10-26", "2025-10-25T22:00:00Z"},
      {"2025-10-27", "2025-10-26T23:00:00Z"},
      {"2024-02-29", "2024-02-28T23:00:00Z"},
      {"2000-02-29", "2000-02-28T23:00:00Z"},
      {"2024-12-31", "2024-12-30T23:00:00Z"},
      {"9999-12-31", "9999-12-30T23:00:00Z"},
      // The local mean time of before 1915.
      {"1900-01-01", "1899-12-31T22:36:00Z"},
      {"0001-01-01", "0000-12-31T22:36:00Z"},
  });
  EXPECT_EQ(wczytaj("0000-02-29").value(), absl::FromCivil(absl::CivilMinute(0, 2, 28, 22, 36), absl::UTCTimeZone()));
}

TEST(DataSerwera, RefusesWhatLiesOutsideOfTheYearsOfFourDigitsInUtc) {
  for (const std::string_view tekst : {"0000-01-01", "0000-01-01T00:00:00+00:01", "9999-12-31T23:59:59.5-00:01"}) {
    const auto wynik = wczytaj(tekst);
    ASSERT_FALSE(wynik) << tekst;
    EXPECT_EQ(wynik.error().description, "Nie rozpoznaję daty: " + std::string(tekst));
  }
  EXPECT_TRUE(wczytaj("0000-01-02"));
  EXPECT_TRUE(wczytaj("9999-12-31T23:59:59.5-00:00"));
  // West of Greenwich the last day that can be written begins in the year 9999 too.
  EXPECT_TRUE(wczytajDate("9999-12-31", zone("America/Santiago")));
}

TEST(DataSerwera, ADayBeginsAtItsFirstInstant) {
  const Przypadek przypadki[] = {
      {"America/Santiago 2024-09-08", "2024-09-08T04:00:00Z"},  // midnight is skipped
      {"Asia/Beirut 2024-03-31", "2024-03-30T22:00:00Z"},       // midnight is skipped
      {"Africa/Cairo 2024-04-26", "2024-04-25T22:00:00Z"},      // midnight is skipped
      {"America/Havana 2024-11-03", "2024-11-03T04:00:00Z"},    // midnight comes twice
      {"Europe/Vilnius 2025-03-30", "2025-03-29T22:00:00Z"},
      {"Pacific/Apia 2011-12-31", "2011-12-30T10:00:00Z"},  // the day before does not exist
  };
  for (const auto& [tekst, chwila] : przypadki) {
    const auto blank = tekst.find(' ');
    const auto wynik = wczytajDate(tekst.substr(blank + 1), zone(std::string(tekst.substr(0, blank))));
    ASSERT_TRUE(wynik) << tekst;
    EXPECT_EQ(base::formatInstant(*wynik), chwila) << tekst;
  }
}

TEST(DataSerwera, ReadsADateAndTimeWithItsZone) {
  sprawdz(std::vector<Przypadek>{
      {"2025-03-14T09:30:00Z", "2025-03-14T09:30:00Z"},
      {"2025-03-14T09:30:00+01:00", "2025-03-14T08:30:00Z"},
      {"2025-03-14T09:30:00-01:00", "2025-03-14T10:30:00Z"},
      {"2025-03-14T09:30:00+00:00", "2025-03-14T09:30:00Z"},
      {"2025-03-14T09:30:00-00:00", "2025-03-14T09:30:00Z"},
      {"2025-03-14T09:30:00+05:45", "2025-03-14T03:45:00Z"},
      {"2025-03-14T23:59:59+23:59", "2025-03-14T00:00:59Z"},
      {"2025-03-14T00:00:00-23:59", "2025-03-14T23:59:00Z"},
      {"2024-02-29T23:59:59Z", "2024-02-29T23:59:59Z"},
      {"2025-01-01T00:00:00+01:00", "2024-12-31T23:00:00Z"},
      {"0000-01-01T00:00:00Z", "0000-01-01T00:00:00Z"},
      {"9999-12-31T23:59:59Z", "9999-12-31T23:59:59Z"},
  });
}

TEST(DataSerwera, ReadsFractionsOfASecond) {
  sprawdz(std::vector<Przypadek>{
      {"2025-03-14T09:30:00.5Z", "2025-03-14T09:30:00.5Z"},
      {"2025-03-14T09:30:00.250Z", "2025-03-14T09:30:00.25Z"},
      {"2025-03-14T09:30:00.250+01:00", "2025-03-14T08:30:00.25Z"},
      {"2025-03-14T09:30:00.0Z", "2025-03-14T09:30:00Z"},
      {"2025-03-14T09:30:59.999999999Z", "2025-03-14T09:30:59.999999999Z"},
      {"2025-03-14T09:30:00.00000000025Z", "2025-03-14T09:30:00.00000000025Z"},
      {"2025-03-14T09:30:00.0000000002Z", "2025-03-14T09:30:00Z"},
      {"2025-03-14T09:30:00.00000000049999999999Z", "2025-03-14T09:30:00.00000000025Z"},
      {"1969-12-31T23:59:59.9999999999999999Z", "1969-12-31T23:59:59.99999999975Z"},
      {"1900-01-01T00:00:00.123456789-00:30", "1900-01-01T00:30:00.123456789Z"},
  });
  const std::string dlugi = "2025-03-14T09:30:00.75" + std::string(100'000, '0') + "Z";
  EXPECT_EQ(base::formatInstant(wczytaj(dlugi).value()), "2025-03-14T09:30:00.75Z");
}

TEST(DataSerwera, RefusesEverythingElseAndSaysTheTextAsItCame) {
  using namespace std::string_view_literals;
  for (const std::string_view tekst : {
           ""sv,
           " "sv,
           "14.03.2025"sv,
           "2025"sv,
           "2025-03"sv,
           "20250314"sv,
           "2025-3-14"sv,
           "2025-03-1"sv,
           "25-03-14"sv,
           "12025-03-14"sv,
           "+2025-03-14"sv,
           "-2025-03-14"sv,
           " 2025-03-14"sv,
           "2025-03-14 "sv,
           "2025-03-14\n"sv,
           "2025-03-14\0"sv,
           "2025/03/14"sv,
           "2025-00-14"sv,
           "2025-13-14"sv,
           "2025-03-00"sv,
           "2025-03-32"sv,
           "2025-02-29"sv,
           "2100-02-29"sv,
           "1900-02-29"sv,
           "2025-04-31"sv,
           "2024-02-30"sv,
           "2025-074"sv,
           "2025-W11-5"sv,
           "2025-03-14Z"sv,
           "2025-03-14+01:00"sv,
           "2025-03-14T"sv,
           "2025-03-14T09Z"sv,
           "2025-03-14T09:30Z"sv,
           "2025-03-14T09:30:00"sv,
           "2025-03-14T09:30:00.5"sv,
           "2025-03-14 09:30:00Z"sv,
           "2025-03-14t09:30:00Z"sv,
           "2025-03-14T09:30:00z"sv,
           "2025-03-14T9:30:00Z"sv,
           "2025-03-14T093000Z"sv,
           "20250314T093000Z"sv,
           "2025-03-14T24:00:00Z"sv,
           "2025-03-14T09:60:00Z"sv,
           "2025-03-14T09:30:60Z"sv,
           "2016-12-31T23:59:60Z"sv,
           "2025-02-29T09:30:00Z"sv,
           "2025-03-14T09:30:00.Z"sv,
           "2025-03-14T09:30:00.+01:00"sv,
           "2025-03-14T09:30:00,5Z"sv,
           "2025-03-14T09:30:00.5.5Z"sv,
           "2025-03-14T09:30:00.-5Z"sv,
           "2025-03-14T09:30.5Z"sv,
           "2025-03-14T09:30:00+0100"sv,
           "2025-03-14T09:30:00+01"sv,
           "2025-03-14T09:30:00+1:00"sv,
           "2025-03-14T09:30:00+24:00"sv,
           "2025-03-14T09:30:00-24:00"sv,
           "2025-03-14T09:30:00+23:60"sv,
           "2025-03-14T09:30:00+01:00:00"sv,
           "2025-03-14T09:30:00 Z"sv,
           "2025-03-14T09:30:00 +01:00"sv,
           "2025-03-14T09:30:00Z "sv,
           "2025-03-14T09:30:00ZZ"sv,
           "2025-03-14T09:30:00\xE2\x88\x92"
           "01:00"sv,
           "2025-03-14T09:30:00GMT"sv,
           "\xD9\xA2\xD9\xA0\xD9\xA2\xD9\xA5-03-14"sv,
           "null"sv,
           "now"sv,
           "1741944600"sv,
       }) {
    const auto wynik = wczytaj(tekst);
    ASSERT_FALSE(wynik) << tekst;
    EXPECT_EQ(wynik.error(),
              (DecodingError{DecodingError::Kind::dataCorrupted, "", "Nie rozpoznaję daty: " + std::string(tekst)}));
  }
}

TEST(DataSerwera, RefusesAnyOtherByteInAnyPlace) {
  for (const std::string_view dobry : {"2025-03-14T09:30:00.5+01:00", "2025-03-14T09:30:00Z", "2025-03-14"}) {
    for (std::size_t i = 0; i < dobry.size(); ++i) {
      for (int bajt = 0; bajt < 256; ++bajt) {
        std::string tekst(dobry);
        tekst[i] = static_cast<char>(bajt);
        const bool cyfra = dobry[i] >= '0' && dobry[i] <= '9';
        if (cyfra && bajt >= '0' && bajt <= '9') continue;
        const bool inaStrone = (dobry[i] == '+' || dobry[i] == '-') && i > 10 && (bajt == '+' || bajt == '-');
        EXPECT_EQ(wczytaj(tekst).has_value(), tekst == dobry || inaStrone) << tekst;
      }
    }
  }
}

/// Every day of four hundred years, and what lies between the days.
TEST(DataSerwera, KnowsTheRealDays) {
  absl::CivilDay spodziewany(1800, 1, 1);
  const auto dwieCyfry = [](int liczba) { return std::string(liczba < 10 ? "0" : "") + std::to_string(liczba); };
  for (int rok = 1800; rok < 2200; ++rok) {
    for (int miesiac = 0; miesiac <= 13; ++miesiac) {
      for (int dzien = 0; dzien <= 32; ++dzien) {
        const std::string tekst = std::to_string(rok) + "-" + dwieCyfry(miesiac) + "-" + dwieCyfry(dzien);
        const auto wynik = wczytajDate(tekst, absl::UTCTimeZone());
        if (absl::FormatCivilTime(spodziewany) != tekst) {
          ASSERT_FALSE(wynik) << tekst;
          continue;
        }
        ASSERT_EQ(wynik, absl::FromCivil(spodziewany, absl::UTCTimeZone())) << tekst;
        ++spodziewany;
      }
    }
  }
  EXPECT_EQ(spodziewany, absl::CivilDay(2200, 1, 1));
}

TEST(DataSerwera, ReadsBackAnyInstantWrittenInAnyZone) {
  constexpr unsigned ziarno = 99;
  SCOPED_TRACE("seed " + std::to_string(ziarno));
  std::mt19937_64 losowe(ziarno);
  const absl::Time poczatek = absl::FromCivil(absl::CivilDay(1, 1, 1), absl::UTCTimeZone());
  for (int i = 0; i < 20'000; ++i) {
    const absl::Time chwila = poczatek + absl::Seconds(static_cast<std::int64_t>(losowe() % 315'000'000'000ULL)) +
                              absl::Nanoseconds(static_cast<std::int64_t>(losowe() % 1'000'000'000));
    const auto minuty = static_cast<int>(losowe() % 2879) - 1439;
    const std::string tekst = absl::FormatTime("%E4Y-%m-%d%ET%H:%M:%E*S%Ez", chwila, absl::FixedTimeZone(minuty * 60));
    if (tekst.starts_with('-') || tekst.find('T') != 10) continue;
    EXPECT_EQ(wczytaj(tekst), chwila) << tekst;
  }
}

}  // namespace
}  // namespace widzety
