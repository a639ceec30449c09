#include "support/displays/sway_desktop.hpp"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "displays/sample_window.hpp"
#include "support/waiting.hpp"

using support::Bitmap;
using support::eventually;
using support::filled;
using support::Pixel;
using support::red;
using support::SwayDesktop;
using support::SwayOutput;
using ::testing::ElementsAre;

namespace {

constexpr Pixel background{63, 63, 63, 255};

TEST(SwayDesktop, ShowsAWindowInPlaceOfTheBackground) {
  SwayDesktop desktop;
  ASSERT_TRUE(eventually([&] { return desktop.screenshot() == filled(1280, 800, background); })) << desktop.log();
  const auto program = sampleWindow(desktop.environment(), {"Red", "#ff0000"});
  EXPECT_TRUE(eventually([&] { return desktop.screenshot() == filled(1280, 800, red); })) << desktop.log();
  EXPECT_THAT(desktop.windowsOf(program.id()), ElementsAre(support::ScreenArea{0, 0, 1280, 800}));
}

TEST(SwayDesktop, MouseAndKeysReachTheWindow) {
  SwayDesktop desktop;
  auto program = sampleWindow(desktop.environment(), {"Red", "#ff0000"});
  // It is born small and then given the whole output.
  ASSERT_TRUE(eventually([&] { return desktop.screenshot().at(1000, 700) == red; })) << desktop.log();
  desktop.input().click({30, 40}, support::MouseButton::right);
  EXPECT_EQ(program.firstLine(), "press 3 30 40");
  EXPECT_EQ(program.firstLine(), "release 3 30 40");
  desktop.input().drag({1000, 700}, {1100, 750});
  EXPECT_EQ(program.firstLine(), "press 1 1000 700");
  EXPECT_EQ(program.firstLine(), "release 1 1100 750");
  desktop.input().key(0xff0d);
  EXPECT_EQ(program.firstLine(), "key Return");
  desktop.input().key('q', {0xffe3});
  EXPECT_EQ(program.firstLine(), "key Control_L");
  EXPECT_EQ(program.firstLine(), "key Control+q");
}

TEST(SwayDesktop, OutputsStandSideBySideAndMoreCanCome) {
  SwayDesktop desktop(SwayDesktop::Settings{.width = 800, .height = 600, .outputs = 2});
  const SwayOutput first{"HEADLESS-1", {0, 0, 800, 600}, 1};
  const SwayOutput second{"HEADLESS-2", {800, 0, 800, 600}, 1};
  EXPECT_THAT(desktop.outputs(), ElementsAre(first, second));
  EXPECT_EQ(desktop.addOutput(640, 480), "HEADLESS-3");
  EXPECT_THAT(desktop.outputs(), ElementsAre(first, second, SwayOutput{"HEADLESS-3", {1600, 0, 640, 480}, 1}));
  EXPECT_EQ(desktop.screenshot("HEADLESS-3").width, 640U);
  EXPECT_EQ(desktop.screenshot().width, 2240U);
}

TEST(SwayDesktop, OutputIsUnpluggedAndAnotherPlugged) {
  SwayDesktop desktop(
      SwayDesktop::Settings{.width = 800, .height = 600, .outputs = 2, .kind = SwayDesktop::OutputKind::unpluggable});
  const SwayOutput first{"X11-1", {0, 0, 800, 600}, 1};
  EXPECT_THAT(desktop.outputs(), ElementsAre(first, SwayOutput{"X11-2", {800, 0, 800, 600}, 1}));
  desktop.unplug("X11-2");
  EXPECT_THAT(desktop.outputs(), ElementsAre(first));
  EXPECT_EQ(desktop.screenshot().width, 800U);
  EXPECT_EQ(desktop.addOutput(640, 480), "X11-3");
  EXPECT_THAT(desktop.outputs(), ElementsAre(first, SwayOutput{"X11-3", {800, 0, 640, 480}, 1}));
  auto program = sampleWindow(desktop.environment(), {"Red", "#ff0000"});
  ASSERT_TRUE(eventually([&] { return !desktop.windowsOf(program.id()).empty(); })) << desktop.log();
  desktop.input().key(0xff0d);
  EXPECT_EQ(program.firstLine(), "key Return");
}

TEST(SwayDesktop, ScaledOutputShowsItsOwnPixels) {
  SwayDesktop desktop;
  desktop.setScale("HEADLESS-1", 2);
  EXPECT_THAT(desktop.outputs(), ElementsAre(SwayOutput{"HEADLESS-1", {0, 0, 640, 400}, 2}));
  auto program = sampleWindow(desktop.environment(), {"Red", "#ff0000"});
  EXPECT_TRUE(eventually([&] { return desktop.screenshot("HEADLESS-1") == filled(1280, 800, red); })) << desktop.log();
  desktop.input().click({600, 300});
  EXPECT_EQ(program.firstLine(), "press 1 600 300");
}

}  // namespace
