#include "desktop/texts/texts.hpp"

#include <set>

#include <gtest/gtest.h>

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
    expectOwnMnemonics({texts.size, texts.add, texts.remove, texts.reloadNow, texts.quit});
    expectOwnMnemonics({texts.small, texts.medium, texts.large});
  }
}

TEST(DesktopTexts, TellTheNextReloadByTheDevicesClock) {
  support::ScopedEnvironment environment;
  environment.set("TZ", "Europe/Warsaw");
  const absl::Time reload = absl::FromUnixSeconds(1772353800);  // 2026-03-01 08:30 UTC
  EXPECT_EQ(nextReloadLine(textsFor(host::Language::polish), reload), "Następne odświeżenie: 09:30");
  EXPECT_EQ(nextReloadLine(textsFor(host::Language::english), reload), "Next refresh: 09:30");
  EXPECT_EQ(nextReloadLine(textsFor(host::Language::lithuanian), reload), "Kitas atnaujinimas: 09:30");
  EXPECT_EQ(nextReloadLine(textsFor(host::Language::english), std::nullopt), "Refreshing");
}

}  // namespace
}  // namespace desktop
