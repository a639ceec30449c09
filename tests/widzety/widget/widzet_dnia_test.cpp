#include "widzety/widget/widzet_dnia.hpp"

#include <gmock/gmock.h>

#include "support/fixed_clock.hpp"
#include "support/memory_keychain.hpp"

namespace widzety {
namespace {

using testing::ElementsAre;
using enum protocol::WidgetFamily;

class WidzetDniaTest : public testing::Test {
 protected:
  const support::FixedClock zegar_{"2025-03-14 10:30", support::zone("Europe/Warsaw")};
  support::MemoryKeychain magazyn_;
  base::TaskGroup taski_;
  const PakietWidzetow pakiet_{Otoczenie{zegar_, magazyn_, taski_}};
};

TEST_F(WidzetDniaTest, IsTheBundlesOnlyWidgetInThreeSizes) {
  const auto widzety = pakiet_.body();
  ASSERT_EQ(widzety.size(), 1U);
  const auto konfiguracja = widzety[0]->body();
  EXPECT_EQ(konfiguracja->kind(), "pl.ferol.vamba.widzety.dzien");
  EXPECT_THAT(konfiguracja->supportedFamilies(), ElementsAre(systemSmall, systemMedium, systemLarge));
}

TEST_F(WidzetDniaTest, ShowsOneEntryDifferentlyInTwoSizes) {
  const auto konfiguracja = pakiet_.body()[0]->body();
  const auto wpis = nlohmann::json::parse(konfiguracja->placeholder({.family = systemSmall}));
  const auto maly = konfiguracja->content(wpis, systemSmall);
  const auto sredni = konfiguracja->content(wpis, systemMedium);
  ASSERT_TRUE(maly.has_value());
  ASSERT_TRUE(sredni.has_value());
  EXPECT_NE(*maly, *sredni);
}

TEST_F(WidzetDniaTest, PreviewTouchesNoKeychain) {
  nlohmann::json wpis;
  pakiet_.body()[0]->body()->getSnapshot(
      {.family = systemMedium, .isPreview = true},
      platform::Completion<platform::EntryJson>(
          [&](const platform::EntryJson& text) { wpis = nlohmann::json::parse(text); }));
  EXPECT_EQ(wpis["zadania"].size(), 2U);
  EXPECT_EQ(wpis["spotkania"].size(), 1U);
  EXPECT_EQ(wpis["doDecyzji"], 3);
  EXPECT_EQ(magazyn_.reads(), 0);
}

}  // namespace
}  // namespace widzety
