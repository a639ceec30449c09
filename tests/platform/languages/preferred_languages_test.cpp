#include "platform/languages/preferred_languages.hpp"

#include <gmock/gmock.h>

#include "support/environment.hpp"

namespace platform {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class PreferredLanguages : public testing::Test {
 protected:
  PreferredLanguages() {
    for (const char* name : {"LANGUAGE", "LC_ALL", "LC_MESSAGES", "LANG"}) environment_.unset(name);
  }
  support::ScopedEnvironment environment_;
};

TEST_F(PreferredLanguages, AreNoneInAnEmptyEnvironment) { EXPECT_THAT(preferredLanguages(), IsEmpty()); }

TEST_F(PreferredLanguages, AreTheListOfLanguageInItsOrder) {
  environment_.set("LANGUAGE", "lt_LT:en_GB.UTF-8:sr@latin:pl");
  environment_.set("LANG", "de_DE.UTF-8");
  EXPECT_THAT(preferredLanguages(), ElementsAre("lt_LT", "en_GB", "sr", "pl"));
}

TEST_F(PreferredLanguages, SkipEmptyPiecesAndTheNamesOfNoLanguage) {
  environment_.set("LANGUAGE", ":C:en::C.UTF-8:POSIX:");
  EXPECT_THAT(preferredLanguages(), ElementsAre("en"));
}

TEST_F(PreferredLanguages, FallFromOneLocaleVariableToTheNext) {
  environment_.set("LANG", "lt_LT.UTF-8");
  EXPECT_THAT(preferredLanguages(), ElementsAre("lt_LT"));
  environment_.set("LC_MESSAGES", "en_US.UTF-8");
  EXPECT_THAT(preferredLanguages(), ElementsAre("en_US"));
  environment_.set("LC_ALL", "pl_PL@euro");
  EXPECT_THAT(preferredLanguages(), ElementsAre("pl_PL"));
  environment_.set("LC_ALL", "");
  EXPECT_THAT(preferredLanguages(), ElementsAre("en_US"));
  environment_.set("LANGUAGE", "");
  EXPECT_THAT(preferredLanguages(), ElementsAre("en_US"));
}

TEST_F(PreferredLanguages, AreAListInLanguageOnly) {
  environment_.set("LANG", "en:lt");
  EXPECT_THAT(preferredLanguages(), ElementsAre("en:lt"));
}

TEST_F(PreferredLanguages, AreNoneWhereTheLocaleInForceIsC) {
  environment_.set("LANG", "pl_PL.UTF-8");
  environment_.set("LC_ALL", "C.UTF-8");
  EXPECT_THAT(preferredLanguages(), IsEmpty());
}

TEST(PrimarySubtag, IsTheFirstPieceInLowerCase) {
  const std::pair<const char*, const char*> cases[] = {{"en-GB", "en"}, {"lt_LT", "lt"},     {"LT", "lt"},
                                                       {"-en", "en"},   {"_-_pl-", "pl"},    {"", ""},
                                                       {"-_-", ""},     {"zh-Hant-TW", "zh"}};
  for (const auto& [tag, subtag] : cases) EXPECT_EQ(primarySubtag(tag), subtag) << tag;
}

}  // namespace
}  // namespace platform
