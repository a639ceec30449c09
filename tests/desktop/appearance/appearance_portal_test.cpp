#include "desktop/appearance/appearance_portal.hpp"

#include <vector>

#include <gio/gio.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "support/displays/stand_in_portal.hpp"

namespace desktop {
namespace {

using render::Appearance;
using render::Colour;
using support::AccentColour;
using support::ColourScheme;
using support::StandInPortal;
using testing::ElementsAre;
using testing::IsEmpty;

const DesktopAppearance darkWithAccent{Appearance::dark, Colour{255, 0, 51}};

/// Records the reported appearances.
class Listener {
 public:
  explicit Listener(const std::string& address)
      : portal_(address, [this](const DesktopAppearance& now) { told.push_back(now); }) {}

  /// Runs the main context until so many appearances were reported, or a timeout passes.
  void listenUntil(std::size_t count) {
    bool late = false;
    const guint timer = g_timeout_add(30'000, &Listener::expire, &late);
    while (told.size() < count && !late) g_main_context_iteration(nullptr, TRUE);
    if (!late) g_source_remove(timer);
  }

  std::vector<DesktopAppearance> told;

 private:
  static gboolean expire(gpointer late) {
    *static_cast<bool*>(late) = true;
    return G_SOURCE_REMOVE;
  }

  AppearancePortal portal_;
};

TEST(AppearancePortal, TellsSchemeAndAccentAtOnceHoweverThePortalAnswers) {
  using ReadOne = StandInPortal::ReadOneMethod;
  using Form = StandInPortal::ReadForm;
  for (const auto& [readOne, form] : {std::pair{ReadOne::present, Form::plain},
                                      {ReadOne::missing, Form::plain},
                                      {ReadOne::missing, Form::wrappedTwice}}) {
    const support::SessionBus bus;
    const StandInPortal portal(
        bus, {.appearance = {ColourScheme::dark, AccentColour{1, 0, 0.2}}, .read = form, .readOne = readOne});
    Listener listener(bus.address());
    EXPECT_THAT(listener.told, IsEmpty()) << "told from within the constructor";
    listener.listenUntil(1);
    EXPECT_THAT(listener.told, ElementsAre(darkWithAccent));
  }
}

TEST(AppearancePortal, FollowsChangesAndTellsNothingTwice) {
  const support::SessionBus bus;
  StandInPortal portal(bus, {.appearance = {ColourScheme::light, {}}});
  Listener listener(bus.address());
  listener.listenUntil(1);
  portal.change({ColourScheme::dark, AccentColour{-1, -1, -1}});  // out of range: no accent
  listener.listenUntil(2);
  portal.change({ColourScheme::dark, AccentColour{1, 0, 0.2}});
  listener.listenUntil(3);
  portal.change({ColourScheme::none, AccentColour{1, 0, 0.2}});
  listener.listenUntil(4);
  EXPECT_THAT(listener.told,
              ElementsAre(DesktopAppearance{Appearance::light, {}}, DesktopAppearance{Appearance::dark, {}},
                          darkWithAccent, DesktopAppearance{{}, Colour{255, 0, 51}}));
}

TEST(AppearancePortal, HearsAPortalThatComesLater) {
  const support::SessionBus bus;
  Listener listener(bus.address());
  const support::SessionBus elsewhere;
  const StandInPortal other(elsewhere, {.appearance = {ColourScheme::light, {}}});
  Listener second(elsewhere.address());
  second.listenUntil(1);  // the first has been told by now that there is no portal
  EXPECT_THAT(listener.told, IsEmpty());
  const StandInPortal portal(bus, {.appearance = {ColourScheme::dark, AccentColour{1, 0, 0.2}}});
  listener.listenUntil(1);
  EXPECT_THAT(listener.told, ElementsAre(darkWithAccent));
}

TEST(AppearancePortal, TellsWhatIsKnownWhileTheRestStaysUnanswered) {
  const support::SessionBus bus;
  StandInPortal portal(bus,
                       {.appearance = {ColourScheme::dark, AccentColour{1, 0, 0.2}}, .silentAbout = {"accent-color"}});
  Listener listener(bus.address());
  listener.listenUntil(1);
  EXPECT_THAT(listener.told, ElementsAre(DesktopAppearance{Appearance::dark, {}}));
  portal.speak();
  listener.listenUntil(2);
  EXPECT_EQ(listener.told.back(), darkWithAccent);
}

TEST(AppearancePortal, TellsWhatASilentPortalSaysInTheEnd) {
  const support::SessionBus bus;
  StandInPortal portal(bus, {.appearance = {ColourScheme::dark, AccentColour{1, 0, 0.2}},
                             .silentAbout = {"accent-color", "color-scheme"}});
  Listener listener(bus.address());
  while (portal.reads() < 2) g_main_context_iteration(nullptr, FALSE);
  EXPECT_THAT(listener.told, IsEmpty());
  portal.speak();
  listener.listenUntil(1);
  EXPECT_THAT(listener.told, ElementsAre(darkWithAccent));
}

TEST(AppearancePortal, TakesNoAnswerForNewsThatIsOlderThanAChange) {
  const support::SessionBus bus;
  StandInPortal portal(bus, {.appearance = {ColourScheme::light, {}}, .silentAbout = {"accent-color", "color-scheme"}});
  Listener listener(bus.address());
  while (portal.reads() < 2) g_main_context_iteration(nullptr, FALSE);
  portal.change({ColourScheme::dark, {}});
  portal.speakOf({ColourScheme::light, AccentColour{1, 0, 0.2}});
  listener.listenUntil(2);
  EXPECT_THAT(listener.told, ElementsAre(DesktopAppearance{Appearance::dark, {}}, darkWithAccent));
}

TEST(AppearancePortal, EndsWhileItsQuestionsAreOpen) {
  const support::SessionBus bus;
  StandInPortal portal(bus, {.appearance = {ColourScheme::dark, {}}});
  for (int steps = 0; steps < 12; ++steps) {
    Listener ended(bus.address());
    for (int i = 0; i < steps; ++i) g_main_context_iteration(nullptr, FALSE);
  }
  {
    // One report went out while the other question was open, and one was due.
    const support::SessionBus quiet;
    const StandInPortal half(quiet, {.appearance = {ColourScheme::dark, {}}, .silentAbout = {"accent-color"}});
    for (const std::size_t told : {0U, 1U}) Listener(quiet.address()).listenUntil(told);
  }
  Listener listener(bus.address());
  portal.change({ColourScheme::light, {}});
  listener.listenUntil(1);
  EXPECT_EQ(listener.told.back().scheme, Appearance::light);
}

TEST(AppearancePortal, IsSilentWhereNobodyListensAtTheAddress) {
  const support::SessionBus bus;
  const StandInPortal portal(bus, {.appearance = {ColourScheme::dark, {}}});
  Listener nowhere("unix:path=" + bus.path("no-such-bus"));
  Listener nonsense("no address at all");
  Listener listener(bus.address());
  listener.listenUntil(1);
  EXPECT_THAT(nowhere.told, IsEmpty());
  EXPECT_THAT(nonsense.told, IsEmpty());
}

}  // namespace
}  // namespace desktop
