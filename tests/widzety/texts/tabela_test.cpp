#include "widzety/texts/tabela.hpp"

#include <algorithm>
#include <cstdlib>
#include <memory>
#include <string>
#include <vector>

#include <gtest/gtest.h>
#include <utf8proc.h>

namespace widzety {
namespace {

using Punkty = std::vector<utf8proc_int32_t>;

Punkty punkty(std::string_view tekst) {
  Punkty wynik;
  while (!tekst.empty()) {
    utf8proc_int32_t punkt = -1;
    const auto ile = utf8proc_iterate(reinterpret_cast<const utf8proc_uint8_t*>(tekst.data()),
                                      static_cast<utf8proc_ssize_t>(tekst.size()), &punkt);
    if (ile <= 0) {
      ADD_FAILURE() << "not UTF-8: " << tekst;
      break;
    }
    wynik.push_back(punkt);
    tekst.remove_prefix(static_cast<std::size_t>(ile));
  }
  return wynik;
}

std::size_t ile(std::string_view tekst, std::string_view szukany) {
  std::size_t liczba = 0;
  for (auto od = tekst.find(szukany); od != std::string_view::npos; od = tekst.find(szukany, od + szukany.size())) {
    ++liczba;
  }
  return liczba;
}

/// The punctuation a text ends with; empty where it ends with a letter or a digit.
std::string koniec(std::string_view tekst) {
  for (const std::string_view znak : {".", "…", "?", "!", ":", ")", "”", "“", ",", ";", "—"}) {
    if (tekst.ends_with(znak)) return std::string(znak);
  }
  return {};
}

bool bezMalychLiter(std::string_view tekst) {
  return std::ranges::none_of(punkty(tekst), [](auto punkt) { return utf8proc_toupper(punkt) != punkt; });
}

bool zaczynaSieMalaLitera(std::string_view tekst) {
  const auto pierwszy = punkty(tekst).at(0);
  return utf8proc_toupper(pierwszy) != pierwszy;
}

/// Each row of both lists: the key with one translation.
std::vector<Tlumaczenie> wszystkie() {
  std::vector<Tlumaczenie> wiersze(wierszeAngielskie.begin(), wierszeAngielskie.end());
  wiersze.insert(wiersze.end(), wierszeLitewskie.begin(), wierszeLitewskie.end());
  return wiersze;
}

/// What stands between quotation marks.
std::vector<std::string_view> cytaty(std::string_view tekst, std::string_view od, std::string_view po) {
  std::vector<std::string_view> wynik;
  for (auto poczatek = tekst.find(od); poczatek != std::string_view::npos; poczatek = tekst.find(od, poczatek)) {
    poczatek += od.size();
    wynik.push_back(tekst.substr(poczatek, tekst.find(po, poczatek) - poczatek));
  }
  return wynik;
}

TEST(Table, Holds308RowsOfTheSameKeysInBothLists) {
  EXPECT_EQ(wierszeAngielskie.size(), 308U);
  ASSERT_EQ(wierszeLitewskie.size(), wierszeAngielskie.size());
  for (std::size_t i = 0; i < wierszeAngielskie.size(); ++i) {
    EXPECT_EQ(wierszeAngielskie[i].klucz, wierszeLitewskie[i].klucz);
  }
}

TEST(Table, AscendsStrictlyByCodePoint) {
  EXPECT_EQ(wierszeAngielskie.front().klucz, "(bez nazwy)");
  EXPECT_EQ(wierszeAngielskie.back().klucz, "zrobione");
  for (std::size_t i = 1; i < wierszeAngielskie.size(); ++i) {
    EXPECT_LT(punkty(wierszeAngielskie[i - 1].klucz), punkty(wierszeAngielskie[i].klucz)) << wierszeAngielskie[i].klucz;
  }
}

TEST(Table, IsInNormalisationFormC) {
  for (const auto& wiersz : wszystkie()) {
    for (const auto& tekst : {std::string(wiersz.klucz), std::string(wiersz.tekst)}) {
      const std::unique_ptr<utf8proc_uint8_t, decltype(&std::free)> nfc(
          utf8proc_NFC(reinterpret_cast<const utf8proc_uint8_t*>(tekst.c_str())), &std::free);
      ASSERT_NE(nfc, nullptr) << tekst;
      EXPECT_EQ(tekst, reinterpret_cast<const char*>(nfc.get()));
    }
  }
}

TEST(Table, HoldsNoEmptyTextAndNoBlankAtAnEdgeOrTwice) {
  for (const auto& wiersz : wszystkie()) {
    for (const auto tekst : {wiersz.klucz, wiersz.tekst}) {
      ASSERT_FALSE(tekst.empty()) << wiersz.klucz;
      EXPECT_EQ(tekst.find_first_not_of(" \n"), 0U) << tekst;
      EXPECT_EQ(tekst.find_last_not_of(" \n"), tekst.size() - 1) << tekst;
      for (const std::string_view podwojny : {"  ", " \n", "\n ", "\n\n", " .", " ,"}) {
        EXPECT_EQ(ile(tekst, podwojny), 0U) << tekst;
      }
    }
  }
}

TEST(Table, KeepsTheFinalPunctuationLineBreaksPathsAndFigures) {
  for (const auto& [klucz, tekst] : wszystkie()) {
    EXPECT_EQ(koniec(tekst), koniec(klucz)) << klucz << " / " << tekst;
    for (const std::string_view znak : {"\n", "→", "…", "?", "(", ")", "0", "60 s"}) {
      EXPECT_EQ(ile(tekst, znak), ile(klucz, znak)) << znak << " in: " << tekst;
    }
    EXPECT_EQ(ile(tekst, "..."), 0U) << tekst;
  }
}

TEST(Table, KeepsCapitalLabelsAndTheCaseOfTheFirstLetter) {
  for (const auto& [klucz, tekst] : wszystkie()) {
    EXPECT_EQ(bezMalychLiter(tekst), bezMalychLiter(klucz)) << klucz << " / " << tekst;
    EXPECT_EQ(zaczynaSieMalaLitera(tekst), zaczynaSieMalaLitera(klucz)) << klucz << " / " << tekst;
  }
}

TEST(Table, QuotesAsEachLanguageDoes) {
  for (std::size_t i = 0; i < liczbaWierszy; ++i) {
    const auto klucz = wierszeAngielskie[i].klucz;
    const auto angielski = wierszeAngielskie[i].tekst;
    const auto litewski = wierszeLitewskie[i].tekst;
    const auto cytatow = ile(klucz, "„");
    EXPECT_EQ(cytaty(klucz, "„", "”").size(), cytatow);
    EXPECT_EQ(ile(klucz, "”"), cytatow) << klucz;
    EXPECT_EQ(ile(angielski, "“"), cytatow) << angielski;
    EXPECT_EQ(ile(angielski, "”"), cytatow) << angielski;
    EXPECT_EQ(ile(angielski, "„"), 0U) << angielski;
    EXPECT_EQ(ile(litewski, "„"), cytatow) << litewski;
    EXPECT_EQ(ile(litewski, "“"), cytatow) << litewski;
    EXPECT_EQ(ile(litewski, "”"), 0U) << litewski;
    for (const auto tekst : {klucz, angielski, litewski}) {
      EXPECT_EQ(tekst.find_first_of("\"'`"), std::string_view::npos) << tekst;
    }
  }
}

TEST(Table, NamesAButtonInsideASentenceByThatButtonsText) {
  std::size_t sprawdzone = 0;
  const auto sprawdz = [&](const ListaWierszy& lista, std::string_view od, std::string_view po) {
    for (const auto& [klucz, tekst] : lista) {
      const auto polskie = cytaty(klucz, "„", "”");
      const auto obce = cytaty(tekst, od, po);
      ASSERT_EQ(polskie.size(), obce.size()) << tekst;
      for (std::size_t i = 0; i < polskie.size(); ++i) {
        const auto przycisk = std::ranges::find(lista, polskie[i], &Tlumaczenie::klucz);
        if (przycisk == lista.end()) continue;
        EXPECT_EQ(obce[i], przycisk->tekst) << tekst;
        ++sprawdzone;
      }
    }
  };
  sprawdz(wierszeAngielskie, "“", "”");
  sprawdz(wierszeLitewskie, "„", "“");
  EXPECT_EQ(sprawdzone, 6U);  // „Dodaj”, „Wyślij resztę” and „Zadania”, in two languages
}

TEST(Table, KeepsTheNamesOfTheProductAndOfTheSystem) {
  for (const auto& [klucz, tekst] : wszystkie()) {
    const struct {
      std::string_view polska;
      std::string_view wTlumaczeniu;
    } nazwy[] = {{"Vamb", "Vamba"},    {"VAMB", "VAMBA"}, {"Mac", "Mac"},
                 {"Finder", "Finder"}, {"PNG", "PNG"},    {"Esc", "Esc"}};
    for (const auto& [polska, wTlumaczeniu] : nazwy) {
      EXPECT_EQ(ile(klucz, polska) > 0, ile(tekst, wTlumaczeniu) > 0) << wTlumaczeniu << " in: " << tekst;
    }
  }
}

}  // namespace
}  // namespace widzety
