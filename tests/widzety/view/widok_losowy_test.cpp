// The board against a slow model of it on random entries: the list of texts to expect, made rule by rule, in the zones
// with the most unusual days.
#include <random>

#include <gtest/gtest.h>

#include "support/clock_change_days.hpp"
#include "support/fixed_clock.hpp"
#include "support/records.hpp"
#include "widzety/view/widok_dnia.hpp"

namespace widzety {
namespace {

using protocol::WidgetFamily;

using Linie = std::vector<std::string>;

/// Every text of the tree in reading order, keys with their argument; a divider is "--".
void zbierz(const protocol::Node& wezel, Linie& linie) {
  if (std::holds_alternative<protocol::DividerNode>(wezel.kind)) linie.push_back("--");
  if (const auto* tekst = std::get_if<protocol::TextNode>(&wezel.kind)) {
    if (const auto* klucz = std::get_if<protocol::LocalizedKey>(&tekst->content)) {
      linie.push_back(klucz->key + (klucz->arguments.empty() ? "" : "|" + std::to_string(klucz->arguments[0])));
    } else {
      linie.push_back(std::get<protocol::Verbatim>(tekst->content).text);
    }
  }
  if (const auto* stos = std::get_if<protocol::VStackNode>(&wezel.kind)) {
    for (const auto& dziecko : stos->children) zbierz(dziecko, linie);
  }
  if (const auto* stos = std::get_if<protocol::HStackNode>(&wezel.kind)) {
    for (const auto& dziecko : stos->children) zbierz(dziecko, linie);
  }
}

std::string dzien(absl::Time chwila, absl::TimeZone strefa) { return absl::FormatTime("%E4Y-%m-%d", chwila, strefa); }

Linie model(const Wpis& wpis, bool maly, absl::Time teraz, absl::TimeZone strefa) {
  Linie linie{"Vamba"};
  if (wpis.doDecyzji >= 1) linie.push_back("%lld do decyzji|" + std::to_string(wpis.doDecyzji));
  if (wpis.blad) {
    linie.push_back(*wpis.blad);
    return linie;
  }
  if (wpis.spotkania.empty() && wpis.zadania.empty()) {
    linie.push_back("Nic na dziś.");
    return linie;
  }
  const int limitSpotkan = maly ? 1 : 2;
  int limitZadan = maly ? 2 : 5;
  if (wpis.spotkania.empty()) {
    limitZadan -= 1;
  } else {
    limitZadan -= maly ? 1 : 2;
  }
  if (limitZadan < 1) limitZadan = 1;

  int ukryte = 0;
  int pokazane = 0;
  if (wpis.spotkania.empty()) linie.push_back("Brak umówionych spotkań");
  for (const auto& spotkanie : wpis.spotkania) {
    if (++pokazane > limitSpotkan) {
      ++ukryte;
      continue;
    }
    linie.push_back(absl::FormatTime("%H:%M", spotkanie.kiedy, strefa));
    linie.push_back(spotkanie.tytul);
    if (!maly && spotkanie.projektNazwa) linie.push_back(*spotkanie.projektNazwa);
    if (dzien(spotkanie.kiedy, strefa) != dzien(teraz, strefa)) linie.push_back("jutro");
  }
  if (!wpis.zadania.empty()) linie.push_back("--");
  pokazane = 0;
  for (const auto& zadanie : wpis.zadania) {
    if (++pokazane > limitZadan) {
      ++ukryte;
      continue;
    }
    linie.push_back("#%lld|" + std::to_string(zadanie.numer));
    linie.push_back(zadanie.tytul);
    if (!maly) linie.push_back(zadanie.projektNazwa);
    if (zadanie.termin && dzien(*zadanie.termin, strefa) < dzien(teraz, strefa)) linie.push_back("zaległe");
  }
  if (ukryte >= 1) linie.push_back("i %lld więcej|" + std::to_string(ukryte));
  return linie;
}

class WidokNaLosowychDanych : public testing::TestWithParam<support::ClockChangeDay> {};

TEST_P(WidokNaLosowychDanych, AgreesWithTheSlowModel) {
  const auto& [nazwa, zmiana] = GetParam();
  const auto strefa = support::zone(nazwa);
  const auto seed = std::random_device{}();
  SCOPED_TRACE(testing::Message() << "seed " << seed);
  std::mt19937 random(seed);
  const auto liczba = [&](int od, int po) { return std::uniform_int_distribution(od, po)(random); };

  for (int runda = 0; runda < 300; ++runda) {
    const support::FixedClock zegar(support::at(zmiana, strefa) + absl::Minutes(liczba(-2880, 2880)), strefa);
    const auto chwila = [&] { return zegar.now() + absl::Minutes(liczba(-3000, 3000)); };
    Wpis wpis{.date = zegar.now(), .doDecyzji = liczba(-1, 3)};
    for (int i = liczba(0, 4); i > 0; --i) {
      wpis.spotkania.push_back(support::spotkanie("S" + std::to_string(i), chwila()));
      if (liczba(0, 2) == 0) wpis.spotkania.back().projektNazwa.reset();
    }
    for (int i = liczba(0, 7); i > 0; --i) {
      wpis.zadania.push_back(support::zadanie(i, liczba(0, 4) == 0 ? std::nullopt : std::optional(chwila())));
    }
    if (liczba(0, 9) == 0) wpis.blad = "Nie udało się odświeżyć.";
    const auto rozmiar = static_cast<WidgetFamily>(liczba(0, 2));

    Linie linie;
    zbierz(WidokDnia{.wpis = wpis, .rozmiar = [&] { return rozmiar; }}.body(zegar, Jezyk::pl), linie);
    ASSERT_EQ(linie, model(wpis, rozmiar == WidgetFamily::systemSmall, zegar.now(), strefa)) << zegar.now();
  }
}

INSTANTIATE_TEST_SUITE_P(Miejsca, WidokNaLosowychDanych, testing::ValuesIn(support::clockChangeDays));

}  // namespace
}  // namespace widzety
