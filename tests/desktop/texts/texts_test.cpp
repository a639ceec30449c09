#include "desktop/texts/texts.hpp"

#include <set>
#include <string>
#include <vector>

#include <gmock/gmock.h>

#include "support/environment.hpp"

namespace desktop {
namespace {

constexpr host::Language languages[] = {host::Language::polish, host::Language::english, host::Language::lithuanian};

/// The letter after the underscore, in lower case. It has more than one byte if it is not an ASCII letter.
std::string mnemonic(const std::string& label) {
  const auto at = label.find('_');
  if (at == std::string::npos || at + 1 == label.size()) return {};
  std::string letter(1, static_cast<char>(std::tolower(static_cast<unsigned char>(label[at + 1]))));
  for (std::size_t i = at + 2; i < label.size() && (static_cast<unsigned char>(label[i]) & 0xc0) == 0x80; ++i) {
    letter += label[i];
  }
  return letter;
}

void expectOwnMnemonics(const std::vector<const char*>& menu) {
  std::set<std::string> taken;
  for (const char* label : menu) {
    const auto letter = mnemonic(label);
    EXPECT_NE(letter, "") << label;
    EXPECT_TRUE(taken.insert(letter).second) << label;
  }
}

TEST(DesktopTexts, EveryItemOfAMenuHasAMnemonicOfItsOwn) {
  for (const auto language : languages) {
    const Texts& texts = textsFor(language);
    expectOwnMnemonics({texts.open, texts.reloadNow, texts.size, texts.zoom, texts.appearance, texts.lock,
                        texts.startAtLogin, texts.add, texts.remove, texts.undoRemoval, texts.quit});
    expectOwnMnemonics(
        {texts.systemScheme, texts.light, texts.dark, texts.solid, texts.translucent, texts.noBackground});
    expectOwnMnemonics({texts.small, texts.medium, texts.large});
  }
}

TEST(DesktopTexts, NameTheActionsOfABoardInEachLanguage) {
  const auto names = [](host::Language language) {
    const Texts& texts = textsFor(language);
    return std::vector<std::string>{texts.openAction, texts.menuAction};
  };
  using testing::ElementsAre;
  EXPECT_THAT(names(host::Language::polish), ElementsAre("Otwórz Vambę", "Pokaż menu"));
  EXPECT_THAT(names(host::Language::english), ElementsAre("Open Vamba", "Show the menu"));
  EXPECT_THAT(names(host::Language::lithuanian), ElementsAre("Atidaryti Vamba", "Rodyti meniu"));
}

TEST(DesktopTexts, TellTheLastAndTheNextReloadByTheDevicesClock) {
  support::ScopedEnvironment environment;
  environment.set("TZ", "Europe/Warsaw");
  const absl::Time last = absl::FromUnixSeconds(1772353800);  // 2026-03-01 08:30 UTC
  const ReloadTimes times{.last = last, .next = last + absl::Minutes(15)};
  const auto lines = [&](host::Language language) { return reloadLines(textsFor(language), times, last); };
  using testing::ElementsAre;
  EXPECT_THAT(lines(host::Language::polish), ElementsAre("Ostatnie odświeżenie: 09:30", "Następne odświeżenie: 09:45"));
  EXPECT_THAT(lines(host::Language::english), ElementsAre("Last refresh: 09:30", "Next refresh: 09:45"));
  EXPECT_THAT(lines(host::Language::lithuanian),
              ElementsAre("Paskutinis atnaujinimas: 09:30", "Kitas atnaujinimas: 09:45"));
}

TEST(DesktopTexts, TellTheDateOfAReloadOfAnotherDayAndNothingOfOneThatIsNotKnown) {
  support::ScopedEnvironment environment;
  environment.set("TZ", "Europe/Warsaw");
  const absl::Time last = absl::FromUnixSeconds(1772353800);
  const Texts& texts = textsFor(host::Language::english);
  EXPECT_THAT(reloadLines(texts, {.last = last, .next = std::nullopt}, last + absl::Hours(24)),
              testing::ElementsAre("Last refresh: 2026-03-01 09:30"));
  EXPECT_TRUE(reloadLines(texts, {}, last).empty());
}

TEST(DesktopTexts, TooltipTellsWhetherARefreshIsUnderWay) {
  support::ScopedEnvironment environment;
  environment.set("TZ", "Europe/Warsaw");
  const absl::Time last = absl::FromUnixSeconds(1772353800);
  const Texts& texts = textsFor(host::Language::english);
  EXPECT_EQ(reloadTooltip(texts, {}, last), "Refreshing…");
  EXPECT_EQ(reloadTooltip(texts, {.last = last, .next = std::nullopt}, last), "Last refresh: 09:30\nRefreshing…");
  EXPECT_EQ(reloadTooltip(texts, {.last = last, .next = last + absl::Minutes(15)}, last),
            "Last refresh: 09:30\nNext refresh: 09:45");
}

}  // namespace
}  // namespace desktop
