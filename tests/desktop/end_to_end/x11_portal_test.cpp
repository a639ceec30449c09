// Boards follow the desktop's portal: one that is slow to answer, and Debian's own.
#include <map>

#include "desktop/end_to_end/x11_fixture.hpp"
#include "support/displays/desktop_portal.hpp"
#include "support/displays/stand_in_portal.hpp"

namespace end_to_end {
namespace {

using support::ColourScheme;
using support::DesktopPortal;
using support::StandInPortal;

class PortalOnX11 : public OnX11 {
 protected:
  testing::AssertionResult isLight() { return shows("light"); }
  testing::AssertionResult isDark() { return shows("dark"); }

 private:
  testing::AssertionResult shows(const std::string& appearance) {
    auto& picture = pictures_[appearance];
    if (picture.pixels.empty()) picture = expectedAt(firstPlace(), exported({"--appearance", appearance}));
    return comesToShow(firstPlace(), picture, "x11-portal-" + appearance);
  }

  std::map<std::string, support::Bitmap> pictures_;
};

TEST_F(PortalOnX11, BoardOfASilentPortalIsThereAtOnceAndTakesItsWordInTheEnd) {
  paintBackground();
  keepBackground();
  StandInPortal portal(desktop().bus(), {.appearance = {.colourScheme = ColourScheme::dark},
                                         .silentAbout = {"color-scheme", "accent-color"}});
  start();
  EXPECT_TRUE(isLight()) << host().said();
  ASSERT_TRUE(eventually([&] { return portal.reads() == 2; }));
  // The board can be used and loads meanwhile.
  EXPECT_TRUE(host().says("a new timeline is shown")) << host().said();
  focus(firstPlace());
  desktop().input().key(keys::left);
  auto moved = firstPlace();
  moved.x -= gap;
  ASSERT_TRUE(boardsAre({moved}));
  desktop().input().key(keys::right);
  ASSERT_TRUE(boardsAre({firstPlace()}));
  EXPECT_EQ(portal.reads(), 2);

  portal.speak();
  EXPECT_TRUE(comesToShowInside(firstPlace(), exported({"--appearance", "dark"}), "x11-portal-late")) << host().said();
}

TEST_F(PortalOnX11, HostOfASilentPortalEndsWhenItIsAskedTo) {
  const StandInPortal portal(desktop().bus(), {.silentAbout = {"color-scheme", "accent-color"}});
  start();
  ASSERT_TRUE(eventually([&] { return portal.reads() == 2; }));
  EXPECT_EQ(host().end(), 0) << host().said();
}

TEST_F(PortalOnX11, DarkOfTheDesktopsOwnSettingsIsFollowedAtRunTime) {
  startDesktop({.services = DesktopPortal::services()});
  paintBackground();
  keepBackground();
  const DesktopPortal portal(desktop().bus(), display());
  start();
  EXPECT_TRUE(isLight()) << host().said();
  ASSERT_TRUE(eventually([&] { return portal.runs(); })) << "the host asks it to start";
  portal.set("color-scheme", "prefer-dark");
  EXPECT_TRUE(isDark()) << host().said();
  portal.set("color-scheme", "prefer-light");
  EXPECT_TRUE(isLight()) << host().said();
  portal.set("color-scheme", "prefer-dark");
  EXPECT_TRUE(isDark()) << host().said();
  portal.set("color-scheme", "default");
  EXPECT_TRUE(isLight()) << host().said();
}

TEST_F(PortalOnX11, DarkThatWasChosenBeforeIsAskedOfAPortalThatHasToBeStarted) {
  startDesktop({.services = DesktopPortal::services()});
  paintBackground();
  keepBackground();
  const DesktopPortal portal(desktop().bus(), display());
  portal.set("color-scheme", "prefer-dark");
  EXPECT_FALSE(portal.runs());
  start();
  EXPECT_TRUE(isDark()) << host().said();
}

}  // namespace
}  // namespace end_to_end
