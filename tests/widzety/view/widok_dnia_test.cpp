#include "widzety/view/widok_dnia.hpp"

#include <gtest/gtest.h>

#include "support/fixed_clock.hpp"
#include "support/records.hpp"
#include "support/tree_text.hpp"

namespace widzety {
namespace {

using protocol::WidgetFamily;
using support::asText;
using support::spotkanie;
using support::zadanie;

class TablicaDnia : public testing::Test {
 protected:
  const absl::TimeZone warszawa_ = support::zone("Europe/Warsaw");
  const support::FixedClock zegar_{"2025-03-14 08:00", warszawa_};

  Wpis wpis(int spotkan, int zadan, std::int64_t doDecyzji = 0) const {
    Wpis wynik{.date = zegar_.now(), .doDecyzji = doDecyzji};
    for (int i = 1; i <= spotkan; ++i) {
      wynik.spotkania.push_back(spotkanie("S" + std::to_string(i), zegar_.now() + absl::Hours(i)));
    }
    for (int i = 1; i <= zadan; ++i) wynik.zadania.push_back(zadanie(i, zegar_.now()));
    return wynik;
  }

  protocol::Node drzewo(Wpis wpis, WidgetFamily rozmiar, Jezyk jezyk = Jezyk::pl) const {
    return WidokDnia{.wpis = std::move(wpis), .rozmiar = [rozmiar] { return rozmiar; }}.body(zegar_, jezyk);
  }

  /// The texts of the board, one a line, without their style.
  std::string tresc(const Wpis& wpis, WidgetFamily rozmiar) const {
    std::istringstream linie(asText(drzewo(wpis, rozmiar)));
    std::string wynik;
    for (std::string linia; std::getline(linie, linia);) {
      const auto tekst = linia.find('\'');
      if (linia.find("divider") != std::string::npos) wynik += "--\n";
      if (tekst == std::string::npos || linia.find("Pracownia") != std::string::npos) continue;
      const auto koniec = linia.find('\'', tekst + 1);
      wynik += linia.substr(tekst + 1, koniec - tekst - 1);
      if (linia.find("key '") != std::string::npos && koniec + 2 < linia.size() && std::isdigit(linia[koniec + 2])) {
        wynik += linia.substr(koniec + 1, linia.find(' ', koniec + 2) - koniec - 1);
      }
      wynik += "\n";
    }
    return wynik;
  }
};

TEST_F(TablicaDnia, IsAPaddedStackOnTheContainersBackground) {
  EXPECT_EQ(asText(drzewo(wpis(1, 1, 3), WidgetFamily::systemMedium)),
            "vstack leading 6 padding 12 12 12 12 background\n"
            "  hstack center 6\n"
            "    key 'Vamba' headline\n"
            "    spacer 0\n"
            "    key '%lld do decyzji' 3 caption2 medium padding 2 6 2 6 capsule tint 0.15\n"
            "  hstack baseline 6\n"
            "    '09:00' caption2 semibold digits tint\n"
            "    vstack leading\n"
            "      'S1' caption limit 1\n"
            "      'Pracownia' caption2 tertiary limit 1\n"
            "  divider padding 1 0 1 0\n"
            "  hstack baseline 6\n"
            "    key '#%lld' 1 caption2 digits secondary\n"
            "    vstack leading\n"
            "      'Zadanie 1' caption limit 1\n"
            "      'Pracownia' caption2 tertiary limit 1\n");
}

TEST_F(TablicaDnia, HasABadgeOnlyFromOneDecisionOn) {
  for (const std::int64_t brak : {std::int64_t{0}, std::int64_t{-5}}) {
    EXPECT_EQ(tresc(wpis(0, 0, brak), WidgetFamily::systemMedium), "Vamba\nNic na dziś.\n");
  }
  EXPECT_EQ(tresc(wpis(0, 0, 1), WidgetFamily::systemMedium), "Vamba\n%lld do decyzji 1\nNic na dziś.\n");
}

TEST_F(TablicaDnia, SmallShowsOneMeetingAndOneTask) {
  EXPECT_EQ(tresc(wpis(3, 4), WidgetFamily::systemSmall),
            "Vamba\n09:00\nS1\n--\n#%lld 1\nZadanie 1\ni %lld więcej 5\n");
  EXPECT_EQ(tresc(wpis(0, 2), WidgetFamily::systemSmall),
            "Vamba\nBrak umówionych spotkań\n--\n#%lld 1\nZadanie 1\ni %lld więcej 1\n");
}

TEST_F(TablicaDnia, MediumWithoutMeetingsGivesTheirPlaceToTasks) {
  EXPECT_EQ(tresc(wpis(0, 6), WidgetFamily::systemMedium),
            "Vamba\nBrak umówionych spotkań\n--\n#%lld 1\nZadanie 1\n#%lld 2\nZadanie 2\n#%lld 3\nZadanie 3\n"
            "#%lld 4\nZadanie 4\ni %lld więcej 2\n");
}

TEST_F(TablicaDnia, LargeHasTheLimitsOfMedium) {
  EXPECT_EQ(tresc(wpis(2, 3), WidgetFamily::systemLarge),
            "Vamba\n09:00\nS1\n10:00\nS2\n--\n#%lld 1\nZadanie 1\n#%lld 2\nZadanie 2\n#%lld 3\nZadanie 3\n");
  EXPECT_EQ(tresc(wpis(3, 3), WidgetFamily::systemLarge),
            "Vamba\n09:00\nS1\n10:00\nS2\n--\n#%lld 1\nZadanie 1\n#%lld 2\nZadanie 2\n#%lld 3\nZadanie 3\n"
            "i %lld więcej 1\n");
  auto duzy = wpis(3, 7, 2);
  EXPECT_EQ(drzewo(duzy, WidgetFamily::systemLarge), drzewo(duzy, WidgetFamily::systemMedium));
}

TEST_F(TablicaDnia, WithoutTasksHasNoDividerAndCountsMeetingsOnly) {
  EXPECT_EQ(tresc(wpis(4, 0), WidgetFamily::systemMedium), "Vamba\n09:00\nS1\n10:00\nS2\ni %lld więcej 2\n");
}

TEST_F(TablicaDnia, ErrorStandsAloneUnderTheHeaderEvenBesideLists) {
  auto zBledem = wpis(2, 2, 4);
  zBledem.blad = "Brak połączenia z Vambą.";
  EXPECT_EQ(tresc(zBledem, WidgetFamily::systemMedium), "Vamba\n%lld do decyzji 4\nBrak połączenia z Vambą.\n");
  zBledem.blad = "";
  EXPECT_EQ(tresc(zBledem, WidgetFamily::systemMedium), "Vamba\n%lld do decyzji 4\n\n");
}

TEST_F(TablicaDnia, SentenceIsACaptionInTheSecondaryStyle) {
  EXPECT_EQ(asText(drzewo(wpis(0, 0), WidgetFamily::systemSmall)),
            "vstack leading 6 padding 12 12 12 12 background\n"
            "  hstack center 6\n"
            "    key 'Vamba' headline\n"
            "    spacer 0\n"
            "  'Nic na dziś.' caption secondary\n");
}

TEST_F(TablicaDnia, SmallPrintIsCaption2InTheTertiaryStyle) {
  const auto tekst = asText(drzewo(wpis(0, 9), WidgetFamily::systemMedium));
  EXPECT_NE(tekst.find("  'Brak umówionych spotkań' caption2 tertiary\n"), std::string::npos);
  EXPECT_NE(tekst.find("  key 'i %lld więcej' 5 caption2 tertiary\n"), std::string::npos);
}

TEST_F(TablicaDnia, TranslatesItsSentencesAndHandsKeysToTheHost) {
  EXPECT_NE(asText(drzewo(wpis(0, 0, 2), WidgetFamily::systemMedium, Jezyk::lt)).find("'Šiandienai nieko.'"),
            std::string::npos);
  const auto tekst = asText(drzewo(wpis(0, 9, 2), WidgetFamily::systemMedium, Jezyk::en));
  EXPECT_NE(tekst.find("'No meetings arranged'"), std::string::npos);
  EXPECT_NE(tekst.find("key '%lld do decyzji' 2"), std::string::npos);
  EXPECT_NE(tekst.find("key 'i %lld więcej' 5"), std::string::npos);
}

TEST_F(TablicaDnia, KeysItsRowsByTheRecordsIdentity) {
  const auto wszystko = wpis(1, 1);
  const auto korzen = drzewo(wszystko, WidgetFamily::systemMedium);
  const auto& dzieci = std::get<protocol::VStackNode>(korzen.kind).children;
  ASSERT_EQ(dzieci.size(), 4U);
  EXPECT_EQ(dzieci[1].identity, wszystko.spotkania[0].id.text());
  EXPECT_EQ(dzieci[3].identity, wszystko.zadania[0].id.text());
}

TEST_F(TablicaDnia, ReadsItsSizeWhenItIsRendered) {
  WidgetFamily rozmiar = WidgetFamily::systemSmall;
  const WidokDnia widok{.wpis = wpis(3, 3), .rozmiar = [&] { return rozmiar; }};
  const auto maly = widok.body(zegar_, Jezyk::pl);
  rozmiar = WidgetFamily::systemLarge;
  EXPECT_NE(widok.body(zegar_, Jezyk::pl), maly);
}

}  // namespace
}  // namespace widzety
