#include "widzety/view/wiersze.hpp"

#include <gtest/gtest.h>

#include "support/fixed_clock.hpp"
#include "support/records.hpp"
#include "support/tree_text.hpp"

namespace widzety {
namespace {

using protocol::WidgetFamily;
using support::asText;
using support::at;

class Wiersze : public testing::Test {
 protected:
  const absl::TimeZone warszawa_ = support::zone("Europe/Warsaw");

  absl::Time chwila(const std::string& civil) const { return at(civil, warszawa_); }
  ChwilaRysowania rysowanie(WidgetFamily rozmiar = WidgetFamily::systemMedium, Jezyk jezyk = Jezyk::pl) const {
    return {rozmiar, chwila("2025-03-14 08:00"), platform::Calendar(warszawa_), jezyk};
  }
  std::string tekst(const SpotkaniePlanowane& spotkanie, const ChwilaRysowania& chwila) const {
    return asText(wierszSpotkania(spotkanie, chwila));
  }
  std::string tekst(const ZadanieMoje& zadanie, const ChwilaRysowania& chwila) const {
    return asText(wierszZadania(zadanie, chwila));
  }
};

TEST_F(Wiersze, MeetingTodayShowsTimeTitleAndProject) {
  EXPECT_EQ(tekst(support::spotkanie("Narada", chwila("2025-03-14 09:05")), rysowanie()),
            "hstack baseline 6\n"
            "  '09:05' caption2 semibold digits tint\n"
            "  vstack leading\n"
            "    'Narada' caption limit 1\n"
            "    'Pracownia' caption2 tertiary limit 1\n");
}

TEST_F(Wiersze, MeetingAfterMidnightIsMarkedTomorrow) {
  EXPECT_EQ(tekst(support::spotkanie("Narada", chwila("2025-03-15 00:30")), rysowanie()),
            "hstack baseline 6\n"
            "  '00:30' caption2 semibold digits tint\n"
            "  vstack leading\n"
            "    'Narada' caption limit 1\n"
            "    'Pracownia' caption2 tertiary limit 1\n"
            "    'jutro' caption2 secondary\n");
}

TEST_F(Wiersze, EveryMeetingThatIsNotTodayIsMarkedTomorrow) {
  for (const char* kiedy : {"2025-03-13 23:59", "2025-03-20 09:00"}) {
    EXPECT_NE(tekst(support::spotkanie("Narada", chwila(kiedy)), rysowanie()).find("'jutro'"), std::string::npos);
  }
}

TEST_F(Wiersze, MeetingWithoutAProjectHasNoProjectLine) {
  auto bezProjektu = support::spotkanie("Narada", chwila("2025-03-14 09:05"));
  bezProjektu.projektNazwa.reset();
  EXPECT_EQ(tekst(bezProjektu, rysowanie()),
            "hstack baseline 6\n"
            "  '09:05' caption2 semibold digits tint\n"
            "  vstack leading\n"
            "    'Narada' caption limit 1\n");
}

TEST_F(Wiersze, SmallSizeHidesTheProjectOfBothRows) {
  const auto maly = rysowanie(WidgetFamily::systemSmall);
  EXPECT_EQ(tekst(support::spotkanie("Narada", chwila("2025-03-14 09:05")), maly).find("Pracownia"), std::string::npos);
  EXPECT_EQ(tekst(support::zadanie(7, chwila("2025-03-14 00:00")), maly).find("Pracownia"), std::string::npos);
}

TEST_F(Wiersze, TaskShowsItsNumberTitleAndProject) {
  EXPECT_EQ(tekst(support::zadanie(7, std::nullopt), rysowanie(WidgetFamily::systemLarge)),
            "hstack baseline 6\n"
            "  key '#%lld' 7 caption2 digits secondary\n"
            "  vstack leading\n"
            "    'Zadanie 7' caption limit 1\n"
            "    'Pracownia' caption2 tertiary limit 1\n");
}

TEST_F(Wiersze, TaskIsOverdueByDaysNotByHours) {
  const auto zaległe = [&](std::optional<absl::Time> termin) {
    return tekst(support::zadanie(7, termin), rysowanie()).find("'zaległe' caption2 semibold red") != std::string::npos;
  };
  EXPECT_TRUE(zaległe(chwila("2025-03-13 23:59")));
  EXPECT_FALSE(zaległe(chwila("2025-03-14 00:00")));
  EXPECT_FALSE(zaległe(chwila("2025-03-20 00:00")));
  EXPECT_FALSE(zaległe(std::nullopt));
}

TEST_F(Wiersze, MarksAreTranslated) {
  const auto jutro = support::spotkanie("Narada", chwila("2025-03-15 00:30"));
  EXPECT_NE(tekst(jutro, rysowanie(WidgetFamily::systemMedium, Jezyk::en)).find("'tomorrow'"), std::string::npos);
  EXPECT_NE(tekst(jutro, rysowanie(WidgetFamily::systemMedium, Jezyk::lt)).find("'rytoj'"), std::string::npos);
  const auto dawno = support::zadanie(7, chwila("2025-03-01 00:00"));
  EXPECT_NE(tekst(dawno, rysowanie(WidgetFamily::systemMedium, Jezyk::lt)).find("'pradelsta'"), std::string::npos);
}

TEST_F(Wiersze, TimeIsOfTheDevicesZoneAlsoInTheHourThatComesTwice) {
  // 26 October 2025 in Warsaw: 02:30 comes first in summer time, then in winter time.
  ChwilaRysowania noc{WidgetFamily::systemMedium, chwila("2025-10-26 00:10"), platform::Calendar(warszawa_), Jezyk::pl};
  const absl::Time pierwsza = absl::FromCivil(absl::CivilMinute(2025, 10, 26, 0, 30), absl::UTCTimeZone());
  for (const auto kiedy : {pierwsza, pierwsza + absl::Hours(1)}) {
    EXPECT_NE(tekst(support::spotkanie("Dyżur", kiedy), noc).find("'02:30'"), std::string::npos);
  }
}

}  // namespace
}  // namespace widzety
