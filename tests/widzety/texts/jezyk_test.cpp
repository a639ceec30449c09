#include "widzety/texts/jezyk.hpp"

#include <cstdlib>
#include <unordered_set>
#include <vector>

#include <gtest/gtest.h>

namespace widzety {
namespace {

TEST(Jezyk, IsMadeFromItsOwnRawValue) {
  for (const auto jezyk : {Jezyk::pl, Jezyk::en, Jezyk::lt}) EXPECT_EQ(jezykZWartosci(wartoscSurowa(jezyk)), jezyk);
  EXPECT_EQ(wartoscSurowa(Jezyk::pl), "pl");
  EXPECT_EQ(wartoscSurowa(Jezyk::en), "en");
  EXPECT_EQ(wartoscSurowa(Jezyk::lt), "lt");
}

TEST(Jezyk, IsAbsentForAnUnknownRawValue) {
  for (const auto* wartosc : {"", "PL", "En", "de", "en-GB", "lt ", " lt", "p", "pll"}) {
    EXPECT_FALSE(jezykZWartosci(wartosc)) << wartosc;
  }
}

TEST(Jezyk, HashesAsItsRawValue) {
  for (const auto jezyk : {Jezyk::pl, Jezyk::en, Jezyk::lt}) {
    EXPECT_EQ(std::hash<Jezyk>{}(jezyk), std::hash<std::string_view>{}(wartoscSurowa(jezyk)));
  }
  EXPECT_EQ((std::unordered_set{Jezyk::pl, Jezyk::en, Jezyk::lt, Jezyk::en}.size()), 3U);
}

TEST(ChoiceOfLanguage, FollowsTheFirstPreferredTagOnly) {
  const struct {
    std::vector<std::string> preferowane;
    Jezyk jezyk;
  } przypadki[] = {
      {{"en-US", "pl-PL"}, Jezyk::en},
      {{"pl-PL", "en-US"}, Jezyk::pl},
      {{"LT"}, Jezyk::lt},
      {{"lt_LT"}, Jezyk::lt},
      {{"EN-gb"}, Jezyk::en},
      {{"de-DE", "en-US"}, Jezyk::pl},
      {{}, Jezyk::pl},
      {{"-en"}, Jezyk::en},
      {{"_-_lt-LT"}, Jezyk::lt},
      {{""}, Jezyk::pl},
      {{"", "en"}, Jezyk::pl},
      {{"-_-"}, Jezyk::pl},
      {{"eng"}, Jezyk::pl},
      {{"e"}, Jezyk::pl},
      {{"en.UTF-8"}, Jezyk::pl},
      {{" en"}, Jezyk::pl},
      {{"x-en"}, Jezyk::pl},
  };
  for (const auto& [preferowane, jezyk] : przypadki) {
    EXPECT_EQ(wybierzJezyk(preferowane), jezyk) << testing::PrintToString(preferowane);
  }
}

TEST(LanguageInForce, IsReadFromTheEnvironmentOnceAndKept) {
  ASSERT_EQ(setenv("LANGUAGE", "lt:en", 1), 0);
  const auto pierwszy = biezacyJezyk();
  ASSERT_EQ(setenv("LANGUAGE", "en", 1), 0);
  EXPECT_EQ(pierwszy, Jezyk::lt);
  EXPECT_EQ(biezacyJezyk(), Jezyk::lt);
}

}  // namespace
}  // namespace widzety
