// Boards beside other windows in several window managers: above a file manager's icons, below every window, kept when
// the desktop is shown, with the keyboard after a click.
#include "desktop/end_to_end/x11_fixture.hpp"
#include "displays/sample_window.hpp"

namespace end_to_end {
namespace {

using WindowManager = support::XDesktop::WindowManager;

class ManagersOnX11 : public OnX11, public testing::WithParamInterface<WindowManager> {
 protected:
  ManagersOnX11() { startDesktop({.windowManager = GetParam()}); }

  testing::AssertionResult boardIsSeen(const std::string& name) {
    if (board_.pixels.empty()) board_ = exported();
    return comesToShowInside(firstPlace(), board_, "x11-manager-" + name);
  }
  testing::AssertionResult boardIsCovered() {
    const auto centre = firstPlace().centre();
    const auto isRed = [&] {
      return desktop().screenshot().at(static_cast<unsigned>(centre.x), static_cast<unsigned>(centre.y)) == red;
    };
    if (eventually(isRed)) return testing::AssertionSuccess();
    return testing::AssertionFailure() << "the board is seen";
  }

  static constexpr support::Pixel red{255, 0, 0, 255};
  support::Bitmap board_;
};

TEST_P(ManagersOnX11, BoardIsSeenWhenTheDesktopIsShownAndCoveredByWindowsOtherwise) {
  const auto icons = sampleWindow(display(), {"Icons", "#008000", "icons"});
  start();
  ASSERT_TRUE(boardsAre({firstPlace()}));
  EXPECT_TRUE(boardIsSeen("above-icons")) << desktop().log();

  const auto window = sampleWindow(display(), {"Window", "#ff0000", "maximized"});
  EXPECT_TRUE(boardIsCovered());
  desktop().windows().showDesktop(true);
  EXPECT_TRUE(boardIsSeen("desktop-shown")) << desktop().log();
  desktop().windows().showDesktop(false);
  EXPECT_TRUE(boardIsCovered());
}

TEST_P(ManagersOnX11, ClickedBoardHasTheKeyboardAndStaysBelowWindows) {
  start();
  ASSERT_TRUE(boardsAre({firstPlace()}));
  // Some window managers never report a dock as the active window, so the test presses a key.
  const auto hasMoved = [&] { return areas().size() == 1 && areas()[0].x < firstPlace().x; };
  EXPECT_TRUE(eventually([&] {
    desktop().input().click(firstPlace().centre());
    desktop().input().key(keys::left);
    return eventually(hasMoved, std::chrono::milliseconds(500));
  })) << desktop().log();

  const auto window = sampleWindow(display(), {"Window", "#ff0000", "maximized"});
  EXPECT_TRUE(boardIsCovered());
}

TEST_P(ManagersOnX11, FocusBringsTheBoardInFrontOfWindowsAndEscapeReturnsToTheWindow) {
  start();
  ASSERT_TRUE(boardsAre({firstPlace()}));
  ASSERT_TRUE(host().says("a new timeline is shown")) << host().said();
  auto window = sampleWindow(display(), {"Window", "#ff0000", "maximized"});
  ASSERT_TRUE(boardIsCovered());
  settings_.arguments = {"desktop", "--focus"};
  const DesktopHost second(display(), settings_);
  EXPECT_EQ(second.exitStatus(), 0) << second.said();
  EXPECT_TRUE(boardIsSeen("in-front")) << desktop().log();
  // Not every manager reports a dock as the active window, so the keyboard is tried until the board has it.
  const auto hasMoved = [&] { return areas().size() == 1 && areas()[0].x < firstPlace().x; };
  EXPECT_TRUE(eventually([&] {
    desktop().input().key(keys::left);
    return eventually(hasMoved, std::chrono::milliseconds(500));
  })) << desktop().log();
  desktop().input().key(keys::escape);
  EXPECT_TRUE(boardIsCovered()) << desktop().log();
  const auto moved = areas();
  EXPECT_TRUE(eventually([&] {
    desktop().input().key(keys::f5);
    for (;;) {
      const auto line = window.firstLine(std::chrono::milliseconds(500));
      if (line.empty() || line == "key F5") return !line.empty();
    }
  })) << desktop().log();
  EXPECT_EQ(areas(), moved);
}

std::string nameOf(const testing::TestParamInfo<WindowManager>& given) {
  constexpr const char* names[] = {"None", "Openbox", "Metacity", "Marco", "Xfwm4"};
  return names[static_cast<int>(given.param)];
}

INSTANTIATE_TEST_SUITE_P(Managers, ManagersOnX11,
                         testing::Values(WindowManager::openbox, WindowManager::metacity, WindowManager::marco,
                                         WindowManager::xfwm4),
                         nameOf);

}  // namespace
}  // namespace end_to_end
