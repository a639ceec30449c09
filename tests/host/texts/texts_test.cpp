#include "host/texts/texts.hpp"

#include <array>
#include <vector>

#include <gtest/gtest.h>

#include "protocol/view_tree/builders.hpp"
#include "support/environment.hpp"

namespace host {
namespace {

using protocol::key;
using protocol::LocalizedKey;
using protocol::Node;

TEST(Language, IsThatOfTheFirstPreferredLanguageElsePolish) {
  struct Case {
    std::vector<std::string> preferred;
    Language language;
  };
  const Case cases[] = {
      {{}, Language::polish},
      {{"pl-PL", "en-US"}, Language::polish},
      {{"en-US", "pl-PL"}, Language::english},
      {{"EN_gb"}, Language::english},
      {{"-en"}, Language::english},
      {{"LT"}, Language::lithuanian},
      {{"lt_LT"}, Language::lithuanian},
      {{"de-DE", "en-US"}, Language::polish},
      {{"eng"}, Language::polish},
      {{"", "en"}, Language::polish},
  };
  for (const auto& [preferred, language] : cases) {
    EXPECT_EQ(languageOf(preferred), language) << (preferred.empty() ? "none" : preferred.front());
  }
}

TEST(Worded, AKeyThatIsNotKnownShowsTheSendersTextElseItself) {
  EXPECT_EQ(worded(LocalizedKey{"%lld do decyzji", {3}, "3 kim bilir"}, Language::english), "3 to decide");
  EXPECT_EQ(worded(LocalizedKey{"%lld nowych", {3}, "3 new"}, Language::english), "3 new");
  EXPECT_EQ(worded(LocalizedKey{"%lld nowych", {3}, std::nullopt}, Language::english), "3 nowych");
}

TEST(Language, OfTheUserFollowsTheEnvironmentWithoutAnyLocaleInstalled) {
  support::ScopedEnvironment environment;
  environment.unset("LANGUAGE");
  environment.set("LC_ALL", "lt_LT.UTF-8");
  EXPECT_EQ(userLanguage(), Language::lithuanian);
  environment.set("LANGUAGE", "en_GB:pl");
  EXPECT_EQ(userLanguage(), Language::english);
}

TEST(Texts, WordEveryKeyInEveryLanguage) {
  struct Case {
    LocalizedKey key;
    std::array<std::string, 3> wordings;
  };
  const Case cases[] = {
      {key("Vamba"), {"Vamba", "Vamba", "Vamba"}},
      {key("#%lld", 7), {"#7", "#7", "#7"}},
      {key("%lld do decyzji", 1), {"1 do decyzji", "1 to decide", "Spręsti: 1"}},
      {key("%lld do decyzji", 12345), {"12345 do decyzji", "12345 to decide", "Spręsti: 12345"}},
      {key("i %lld więcej", 2), {"i 2 więcej", "and 2 more", "ir dar 2"}},
      {{"%lld nieznanych z %lld", {1}}, {"1 nieznanych z %lld", "1 nieznanych z %lld", "1 nieznanych z %lld"}},
      {{"%lld do decyzji", {}}, {"%lld do decyzji", "%lld to decide", "Spręsti: %lld"}},
  };
  for (const auto& [localizedKey, wordings] : cases) {
    EXPECT_EQ(worded(localizedKey, Language::polish), wordings[0]);
    EXPECT_EQ(worded(localizedKey, Language::english), wordings[1]);
    EXPECT_EQ(worded(localizedKey, Language::lithuanian), wordings[2]);
  }
}

TEST(Texts, ReplaceKeysAtEveryDepthAndNothingElse) {
  using namespace protocol;
  const auto tree = [](View inner) -> Node {
    return VStack({.spacing = 6},
                  {
                      HStack({}, {std::move(inner), Spacer(), Text("i %lld więcej").lineLimit(2)}),
                      Divider().padding(1),
                  })
        .padding(12);
  };
  const Node keyed = tree(Text(key("i %lld więcej", 4)).font(TextStyle::headline).id("a"));
  EXPECT_EQ(localised(keyed, Language::english), tree(Text("and 4 more").font(TextStyle::headline).id("a")));
}

}  // namespace
}  // namespace host
