#include "support/displays/mutter_desktop.hpp"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "displays/sample_window.hpp"
#include "support/waiting.hpp"

using support::eventually;
using support::MutterDesktop;
using support::red;

namespace {

support::SessionBus::Environment throughX(const MutterDesktop& desktop) {
  auto environment = desktop.environment();
  environment["GDK_BACKEND"] = "x11";
  return environment;
}

TEST(MutterDesktop, ShowsAnXWindowsPixels) {
  MutterDesktop desktop;
  const auto program = sampleWindow(throughX(desktop), {"Red", "#ff0000"});
  const auto windows = desktop.windows().windowsOf(program.id());
  ASSERT_EQ(windows.size(), 1U);
  const support::Bitmap expected{300, 200, std::vector<support::Pixel>(300 * 200, red)};
  EXPECT_TRUE(eventually([&] { return desktop.windows().pictureOf(windows[0]) == expected; })) << desktop.log();
  EXPECT_TRUE(eventually([&] { return desktop.windows().stacking() == windows; })) << desktop.log();
}

TEST(MutterDesktop, ServesAWaylandClient) {
  MutterDesktop desktop;
  auto environment = desktop.environment();
  environment["GDK_BACKEND"] = "wayland";
  const auto program = sampleWindow(environment, {"Red", "#ff0000"});
  EXPECT_TRUE(desktop.windows().windowsOf(program.id()).empty());
}

TEST(MutterDesktop, MouseAndKeysReachAnXWindow) {
  MutterDesktop desktop;
  auto program = sampleWindow(throughX(desktop), {"Red", "#ff0000"});
  const auto window = desktop.windows().windowsOf(program.id()).at(0);
  ASSERT_TRUE(eventually([&] { return !desktop.windows().stacking().empty(); })) << desktop.log();
  const auto area = desktop.windows().areaOf(window).value();
  desktop.input().click({area.x + 30, area.y + 40}, support::MouseButton::right);
  EXPECT_EQ(program.firstLine(), "press 3 30 40");
  EXPECT_EQ(program.firstLine(), "release 3 30 40");
  desktop.input().drag({area.x + 10, area.y + 10}, {area.x + 110, area.y + 60});
  EXPECT_EQ(program.firstLine(), "press 1 10 10");
  EXPECT_EQ(program.firstLine(), "release 1 110 60");
  desktop.input().key('q', {0xffe3});
  EXPECT_EQ(program.firstLine(), "key Control_L");
  EXPECT_EQ(program.firstLine(), "key Control+q");
}

}  // namespace
