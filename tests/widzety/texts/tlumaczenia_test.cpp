#include "widzety/texts/tlumaczenia.hpp"

#include <csignal>
#include <string>

#include <gtest/gtest.h>

namespace widzety {
namespace {

using namespace std::string_literals;

TEST(Lookup, GivesTheWidgetsTexts) {
  const struct {
    std::string_view polski;
    std::string_view litewski;
    std::string_view angielski;
  } wiersze[] = {
      {"Vamba — spotkania i zadania", "Vamba — susitikimai ir užduotys", "Vamba — meetings and tasks"},
      {"Najbliższe spotkania oraz zadania: zaległe, na dziś i bez terminu.",
       "Artimiausi susitikimai ir užduotys: pradelstos, šiandienai ir be termino.",
       "The nearest meetings and the tasks: overdue, for today and with no deadline."},
      {"Brak umówionych spotkań", "Sutartų susitikimų nėra", "No meetings arranged"},
      {"Nic na dziś.", "Šiandienai nieko.", "Nothing for today."},
      {"jutro", "rytoj", "tomorrow"},
      {"zaległe", "pradelsta", "overdue"},
      {"otwarte", "atvira", "open"},
      {"zrobione", "atlikta", "done"},
      {"odrzucone", "atmesta", "rejected"},
      {"Nie udało się odświeżyć.", "Nepavyko atnaujinti.", "Could not refresh."},
      {"Zaloguj się w aplikacji Vamba.", "Prisijunkite Vamba programoje.", "Sign in to the Vamba app."},
      {"Brak połączenia z Vambą.", "Nėra ryšio su Vamba.", "No connection to Vamba."},
      {"Poświadczenie wygasło — zaloguj się ponownie.",
       "Prisijungimo duomenys nustojo galioti — prisijunkite iš naujo.",
       "The credentials have expired — sign in again."},
      {"Narada zespołu", "Komandos pasitarimas", "Team meeting"},
      {"Pracownia", "Dirbtuvė", "Workshop"},
      {"Przejrzeć transkrypt narady", "Peržiūrėti pasitarimo transkriptą", "Review the meeting transcript"},
      {"Wdrożenie", "Diegimas", "Rollout"},
      {"Wysłać wniosek grantowy", "Išsiųsti paraišką dotacijai", "Send the grant application"},
  };
  for (const auto& [polski, litewski, angielski] : wiersze) {
    EXPECT_EQ(tlumacz(polski, Jezyk::lt), litewski);
    EXPECT_EQ(tlumacz(polski, Jezyk::en), angielski);
    EXPECT_EQ(tlumacz(polski, Jezyk::pl), polski);
  }
}

TEST(Lookup, FindsEveryRowInItsOwnLanguage) {
  for (std::size_t i = 0; i < liczbaWierszy; ++i) {
    EXPECT_EQ(tlumacz(wierszeAngielskie[i].klucz, Jezyk::en), wierszeAngielskie[i].tekst);
    EXPECT_EQ(tlumacz(wierszeLitewskie[i].klucz, Jezyk::lt), wierszeLitewskie[i].tekst);
    EXPECT_EQ(tlumacz(wierszeLitewskie[i].klucz, Jezyk::pl), wierszeLitewskie[i].klucz);
  }
}

TEST(Lookup, TakesTheLineBreakOfAKeyAsALineBreak) {
  EXPECT_EQ(tlumacz("Nie masz jeszcze żadnego projektu.\nZałóż pierwszy plusem u góry.", Jezyk::en),
            "You do not have any projects yet.\nCreate the first one with the plus at the top.");
  const auto dwaZnaki = "Nie masz jeszcze żadnego projektu.\\nZałóż pierwszy plusem u góry.";
  EXPECT_EQ(tlumacz(dwaZnaki, Jezyk::en), dwaZnaki);
}

TEST(Lookup, ReturnsATextThatIsNotInTheTableByteForByte) {
  const std::string teksty[] = {
      "",
      "Kup mleko",
      "jutro ",
      " jutro",
      "jutro\n",
      "Jutro",
      "JUTRO",
      "zalegle",
      "Nic na dziś",
      "Nic na dziś. ",
      "Nic na\u00A0dziś.",
      "NIC NA DZIŚ.",
      "dziś\0"s,
      "Spotkanie z Ame\u0301lie",  // decomposed, and must stay so
      "\u212A",
      "会議 \U0001F600",
  };
  for (const auto& tekst : teksty) {
    for (const auto jezyk : {Jezyk::pl, Jezyk::en, Jezyk::lt}) EXPECT_EQ(tlumacz(tekst, jezyk), tekst);
  }
}

TEST(Lookup, FindsACanonicallyEquivalentSpellingOfAKey) {
  const struct {
    std::string_view tekst;
    std::string_view angielski;
  } przypadki[] = {
      {"dzis\u0301", "today"},
      {"Nic na dzis\u0301.", "Nothing for today."},
      {"Brak poła\u0328czenia z Vamba\u0328.", "No connection to Vamba."},
      {"Brak połączenia z Vamba\u0328.", "No connection to Vamba."},
      {"Nie udało sie\u0328 ods\u0301wiez\u0307yc\u0301.", "Could not refresh."},
      {"\u212Aiedy", "When"},  // the kelvin sign is a K
  };
  for (const auto& [tekst, angielski] : przypadki) EXPECT_EQ(tlumacz(tekst, Jezyk::en), angielski) << tekst;
  EXPECT_EQ(tlumacz("dzis\u0301", Jezyk::lt), "šiandien");
  EXPECT_EQ(tlumacz("dzis\u0301", Jezyk::pl), "dzis\u0301");
}

TEST(Lookup, DoesNotTakeACompatibleCharacterForAnEqualOne) {
  for (const std::string_view tekst : {"\uFF4Autro", "Loguję...", "Wdroz\u0307enie\u200B"}) {
    EXPECT_EQ(tlumacz(tekst, Jezyk::en), tekst);
  }
}

TEST(Lookup, ReturnsATextThatIsNotUtf8Unchanged) {
  const std::string teksty[] = {"dzi\xB6", "\xFF", "dzi\xC5", "dzis\xCC", "\xED\xA0\x80", "\xC1\xAAutro", "jutro\x80"};
  for (const auto& tekst : teksty) {
    for (const auto jezyk : {Jezyk::pl, Jezyk::en, Jezyk::lt}) EXPECT_EQ(tlumacz(tekst, jezyk), tekst);
  }
}

TEST(Lookup, ReturnsTheTextForALanguageWithoutAMap) { EXPECT_EQ(tlumacz("jutro", static_cast<Jezyk>(17)), "jutro"); }

TEST(Lookup, OutlivesItsArgument) {
  const auto wynik = [] {
    const std::string chwilowy = "Przygotować plan wdrożenia na kwartał";
    return tlumacz(chwilowy, Jezyk::en);
  }();
  EXPECT_EQ(wynik, "Przygotować plan wdrożenia na kwartał");
}

TEST(TranslationMap, HoldsEachRowOfItsList) {
  const Tlumaczenie wiersze[] = {{"dziś", "today"}, {"jutro", "tomorrow"}};
  const auto mapa = zbudujMape(wiersze);
  EXPECT_EQ(mapa.size(), 2U);
  EXPECT_EQ(mapa.at("jutro"), "tomorrow");
}

TEST(TranslationMapDeathTest, StopsTheProgramOverAKeyThatStandsTwice) {
  GTEST_FLAG_SET(death_test_style, "threadsafe");
  const Tlumaczenie wiersze[] = {{"jutro", "tomorrow"}, {"dziś", "today"}, {"jutro", "tomorrow"}};
  EXPECT_EXIT(zbudujMape(wiersze), testing::KilledBySignal(SIGABRT), "");
}

}  // namespace
}  // namespace widzety
