#include <cstdlib>
#include <latch>
#include <thread>
#include <vector>

#include <gtest/gtest.h>

#include "widzety/texts/tlumaczenia.hpp"

namespace widzety {
namespace {

TEST(Lookup, AnswersRightOnManyThreadsWhoseLookupsAreTheFirst) {
  constexpr std::size_t liczbaWatkow = 16;
  std::latch start(liczbaWatkow);
  std::vector<std::size_t> trafienia(liczbaWatkow, 0);
  {
    std::vector<std::jthread> watki;
    for (std::size_t i = 0; i < liczbaWatkow; ++i) {
      watki.emplace_back([&start, &wynik = trafienia[i], i] {
        const auto jezyk = i % 2 == 0 ? Jezyk::en : Jezyk::lt;
        const auto& wiersze = i % 2 == 0 ? wierszeAngielskie : wierszeLitewskie;
        start.arrive_and_wait();
        for (const auto& [klucz, tekst] : wiersze) {
          if (tlumacz(klucz, jezyk) == tekst) ++wynik;
        }
      });
    }
  }
  for (const auto trafione : trafienia) EXPECT_EQ(trafione, liczbaWierszy);
}

TEST(LanguageInForce, IsTheSameOnManyThreadsThatReadItFirst) {
  constexpr std::size_t liczbaWatkow = 16;
  ASSERT_EQ(setenv("LANGUAGE", "en", 1), 0);
  std::latch start(liczbaWatkow);
  std::vector<Jezyk> jezyki(liczbaWatkow, Jezyk::pl);
  {
    std::vector<std::jthread> watki;
    for (auto& jezyk : jezyki) {
      watki.emplace_back([&start, &jezyk] {
        start.arrive_and_wait();
        jezyk = biezacyJezyk();
      });
    }
  }
  EXPECT_EQ(jezyki, std::vector<Jezyk>(liczbaWatkow, Jezyk::en));
}

}  // namespace
}  // namespace widzety
