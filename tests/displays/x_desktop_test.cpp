#include "support/displays/x_desktop.hpp"

#include <algorithm>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "displays/sample_window.hpp"
#include "support/waiting.hpp"

using support::eventually;
using support::red;
using support::ScreenArea;
using support::XDesktop;
using ::testing::Contains;
using ::testing::ElementsAre;

namespace {

constexpr support::Pixel blue{0, 0, 255, 255};

TEST(XDesktop, ShowsAWindowWhereItIs) {
  XDesktop desktop;
  const auto program = sampleWindow(desktop.environment(), {"Red", "#ff0000"});
  const auto windows = desktop.windows().windowsOf(program.id());
  ASSERT_EQ(windows.size(), 1U);
  EXPECT_EQ(desktop.windows().title(windows[0]), "Red");
  EXPECT_THAT(desktop.windows().atoms(windows[0], "_NET_WM_WINDOW_TYPE"), ElementsAre("_NET_WM_WINDOW_TYPE_NORMAL"));
  const auto area = desktop.windows().areaOf(windows[0]);
  ASSERT_TRUE(area);
  EXPECT_EQ(area->width, 300);
  EXPECT_EQ(area->height, 200);
  const support::Bitmap expected{300, 200, std::vector<support::Pixel>(300 * 200, red)};
  EXPECT_TRUE(eventually([&] { return support::crop(desktop.screenshot(), area->x, area->y, 300, 200) == expected; }))
      << desktop.log();
  EXPECT_EQ(desktop.windows().pictureOf(windows[0]), expected);
}

TEST(XDesktop, ListsALowerWindowBeforeAHigherOne) {
  XDesktop desktop;
  const auto above = sampleWindow(desktop.environment(), {"Above", "#0000ff"});
  const auto below = sampleWindow(desktop.environment(), {"Below", "#ff0000", "below"});
  ASSERT_TRUE(eventually([&] { return desktop.windows().stacking().size() == 2; })) << desktop.log();
  const auto lowest = desktop.windows().stacking()[0];
  EXPECT_EQ(desktop.windows().title(lowest), "Below");
  EXPECT_THAT(desktop.windows().atoms(lowest, "_NET_WM_STATE"), Contains("_NET_WM_STATE_BELOW"));
}

TEST(XDesktop, MouseAndKeysReachTheWindow) {
  XDesktop desktop;
  auto program = sampleWindow(desktop.environment(), {"Red", "#ff0000"});
  const auto area = desktop.windows().areaOf(desktop.windows().windowsOf(program.id()).at(0)).value();
  desktop.input().click({area.x + 30, area.y + 40}, support::MouseButton::right);
  EXPECT_EQ(program.firstLine(), "press 3 30 40");
  EXPECT_EQ(program.firstLine(), "release 3 30 40");
  desktop.input().drag({area.x + 10, area.y + 10}, {area.x + 110, area.y + 60});
  EXPECT_EQ(program.firstLine(), "press 1 10 10");
  EXPECT_EQ(program.firstLine(), "release 1 110 60");
  desktop.input().key(0xff0d);
  EXPECT_EQ(program.firstLine(), "key Return");
  desktop.input().key('q', {0xffe3});
  EXPECT_EQ(program.firstLine(), "key Control_L");
  EXPECT_EQ(program.firstLine(), "key Control+q");
}

TEST(XDesktop, MonitorsComeAndGoAndGtkFollows) {
  XDesktop desktop(XDesktop::Settings{.width = 1200, .monitors = XDesktop::MonitorKind::unpluggable});
  auto program = sampleWindow(desktop.environment(), {"Red", "#ff0000"});
  const support::XMonitor first{"DUMMY0", {0, 0, 1200, 800}, true};
  const support::XMonitor second{"DUMMY1", {1200, 0, 800, 600}};
  EXPECT_THAT(desktop.monitors().all(), ElementsAre(first));
  desktop.monitors().add(second);
  EXPECT_THAT(desktop.monitors().all(), ElementsAre(first, second));
  EXPECT_EQ(program.firstLine(), "monitors 2");
  EXPECT_EQ(desktop.screenshot().width, 2000U);
  desktop.monitors().remove("DUMMY1");
  EXPECT_THAT(desktop.monitors().all(), ElementsAre(first));
  EXPECT_EQ(program.firstLine(), "monitors 1");
  desktop.monitors().add(second);
  EXPECT_EQ(program.firstLine(), "monitors 2");
  const auto area = desktop.windows().areaOf(desktop.windows().windowsOf(program.id()).at(0)).value();
  desktop.input().click({area.x + 30, area.y + 40});
  EXPECT_EQ(program.firstLine(), "press 1 30 40");
}

TEST(XDesktop, FixedMonitorsStay) {
  XDesktop desktop;
  EXPECT_THAT(desktop.monitors().all(), ElementsAre(support::XMonitor{"screen", {0, 0, 1280, 800}}));
  EXPECT_THROW(desktop.monitors().add({"DUMMY1", {1200, 0, 800, 600}}), std::runtime_error);
}

TEST(XDesktop, CompositingCanBeSwitchedAtRunTime) {
  XDesktop desktop;
  EXPECT_FALSE(desktop.windows().hasCompositor());
  desktop.startCompositing();
  const auto program = sampleWindow(desktop.environment(), {"Blue", "#0000ff"});
  const auto area = desktop.windows().areaOf(desktop.windows().windowsOf(program.id()).at(0)).value();
  const auto middle = area.centre();
  EXPECT_TRUE(eventually([&] {
    return desktop.screenshot().at(static_cast<unsigned>(middle.x), static_cast<unsigned>(middle.y)) == blue;
  })) << desktop.log();
  desktop.endCompositing();
  EXPECT_FALSE(desktop.windows().hasCompositor());
}

TEST(XDesktop, TwoStandBesideEachOther) {
  XDesktop one;
  XDesktop other;
  EXPECT_NE(one.environment().at("DISPLAY"), other.environment().at("DISPLAY"));
  EXPECT_NE(one.environment().at("DBUS_SESSION_BUS_ADDRESS"), other.environment().at("DBUS_SESSION_BUS_ADDRESS"));
  const auto program = sampleWindow(one.environment(), {"Red", "#ff0000"});
  EXPECT_EQ(one.windows().windowsOf(program.id()).size(), 1U);
  EXPECT_TRUE(other.windows().windowsOf(program.id()).empty());
}

}  // namespace
