// Boards in the shells of GNOME and KDE: above icons, below every window, kept when the desktop is shown, with the
// keyboard after a click, in front when asked for. On Wayland no protocol lists another client's windows, so all of it
// is judged by what the screen shows.
#include "desktop/end_to_end/desktop_fixture.hpp"
#include "desktop/end_to_end/sizes_and_keys.hpp"
#include "displays/sample_window.hpp"
#include "support/displays/shell_desktop.hpp"
#include "support/tool.hpp"

namespace end_to_end {
namespace {

using support::eventually;
using support::ScreenArea;
using support::Shell;

std::string nameOf(const testing::TestParamInfo<Shell>& given) {
  constexpr const char* names[] = {"GnomeShellOnX11", "GnomeShellOnWayland", "KwinOnX11", "KwinOnWayland"};
  return names[static_cast<int>(given.param)];
}

class Shells : public testing::TestWithParam<Shell> {
 protected:
  void SetUp() override {
    const auto program = support::programOf(GetParam());
    if (!support::pathOf(program)) GTEST_SKIP() << program << " is not installed: ./test --shells installs it";
    desktop_.emplace(GetParam());
    board_ = exportedPicture(desktop_->environment(), settings_, {});
    const auto area = desktop_->workArea();
    place_ = {area.x + area.width - gap - mediumWidth, area.y + gap, mediumWidth, mediumHeight};
    host_ = std::make_unique<DesktopHost>(desktop_->environment(), settings_);
  }

  /// A file manager's desktop window, as an X client.
  support::ChildProcess openIcons() {
    auto variables = desktop_->environment();
    variables["GDK_BACKEND"] = "x11";
    auto icons = sampleWindow(variables, {"Icons", "#008000", "icons"});
    constexpr support::Pixel green{0, 128, 0, 255};
    EXPECT_TRUE(eventually([&] { return desktop_->screenshot().at(100, 700) == green; })) << desktop_->log();
    return icons;
  }
  /// A window that is maximized over the board, on the shell's own kind of display.
  support::ChildProcess openWindow() {
    return sampleWindow(desktop_->environment(), {"Window", "#ff0000", "maximized"});
  }

  static bool areAlike(const support::Bitmap& shown, const support::Bitmap& expected) {
    return support::differingPixels(shown, expected, tolerance.channel) * tolerance.oneMayDiffer <=
           expected.pixels.size();
  }
  support::Bitmap shown() const {
    return support::crop(desktop_->screenshot(), place_.x, place_.y, mediumWidth, mediumHeight);
  }
  /// Whether the screen comes to show this in the board's place.
  testing::AssertionResult comesToShow(const support::Bitmap& expected, const std::string& name) {
    eventually([&] { return areAlike(shown(), expected); });
    return support::showsTheSame(shown(), expected, "shell-" + nameOf({GetParam(), 0}) + "-" + name, tolerance)
           << host_->said() << desktop_->log();
  }
  testing::AssertionResult boardIsSeen(const std::string& name) { return comesToShow(board_, name); }
  testing::AssertionResult boardIsCovered(const std::string& name) {
    auto covered = board_;
    std::ranges::fill(covered.pixels, red);
    return comesToShow(covered, name);
  }
  /// Whether the board has the keyboard: it moves left by the arrow key, which is struck again while a shell may still
  /// be giving it the keyboard. Its place is then the new one.
  testing::AssertionResult movesByKey() {
    const auto isLeft = [&] {
      const auto screen = desktop_->screenshot();
      for (int x = place_.x - gap; x > 0; x -= gap) {
        if (!areAlike(support::crop(screen, x, place_.y, mediumWidth, mediumHeight), board_)) continue;
        place_.x = x;
        return true;
      }
      return false;
    };
    if (eventually([&] {
          desktop_->input().key(keys::left);
          return eventually(isLeft, std::chrono::seconds(1));
        })) {
      return testing::AssertionSuccess();
    }
    return testing::AssertionFailure() << "the board has no keyboard\n" << host_->said() << desktop_->log();
  }

  static constexpr support::Pixel red{255, 0, 0, 255};
  /// A focus ring, the corners and the pointer may differ; a board that is one step off differs in more pixels.
  static constexpr support::Tolerance tolerance{.oneMayDiffer = mediumWidth * mediumHeight /
                                                                (2 * 2 * (mediumWidth + mediumHeight) + 1000)};

  ChangingExtension extension_;
  HostSettings settings_{.extension = extension_.program()};
  std::optional<support::ShellDesktop> desktop_;
  std::unique_ptr<DesktopHost> host_;
  support::Bitmap board_;  // as the exporter draws it
  ScreenArea place_;
};

TEST_P(Shells, BoardIsSeenAboveIconsWhenTheDesktopIsShownAndCoveredByWindowsOtherwise) {
  const auto icons = openIcons();
  EXPECT_TRUE(boardIsSeen("above-icons"));
  const auto window = openWindow();
  EXPECT_TRUE(boardIsCovered("covered"));
  desktop_->showDesktop(true);
  EXPECT_TRUE(boardIsSeen("desktop-shown"));
  desktop_->showDesktop(false);
  EXPECT_TRUE(boardIsCovered("covered-again"));
}

TEST_P(Shells, ClickedBoardHasTheKeyboardAndStaysBelowWindows) {
  ASSERT_TRUE(boardIsSeen("before-click"));
  desktop_->input().click(place_.centre());
  ASSERT_TRUE(movesByKey());
  const auto window = openWindow();
  EXPECT_TRUE(boardIsCovered("covered"));
}

TEST_P(Shells, BoardThatIsStartedOrClickedBesideAWindowStaysBelowIt) {
  ASSERT_TRUE(boardIsSeen("before-window"));
  host_.reset();
  const auto window = sampleWindow(desktop_->environment(), {"Window", "#ff0000", "large"});
  // Wherever the shell puts it, the window covers the first of these points, and the second of the board is seen.
  const auto covered = [&] { return desktop_->screenshot().at(900, 200) == red; };
  const int right = place_.width - 20;
  const auto rightEdgeIsSeen = [&] {
    return desktop_->screenshot().at(static_cast<unsigned>(place_.x + right), 200) ==
           board_.at(static_cast<unsigned>(right), static_cast<unsigned>(200 - place_.y));
  };
  ASSERT_TRUE(eventually(covered)) << desktop_->log();
  host_ = std::make_unique<DesktopHost>(desktop_->environment(), settings_);
  ASSERT_TRUE(eventually(rightEdgeIsSeen)) << host_->said() << desktop_->log();
  EXPECT_TRUE(eventually(covered)) << desktop_->log();
  // The pointer is not to cover the point that is looked at.
  desktop_->input().click({place_.x + right, 250});
  EXPECT_TRUE(eventually([&] {
    desktop_->input().key(keys::left);
    return eventually([&] { return !rightEdgeIsSeen(); }, std::chrono::seconds(1));
  })) << host_->said()
      << desktop_->log();
  EXPECT_TRUE(eventually(covered)) << desktop_->log();
}

TEST_P(Shells, FocusBringsTheBoardInFrontOfWindowsAndEscapeReturnsToTheWindow) {
  ASSERT_TRUE(boardIsSeen("before-focus"));
  ASSERT_TRUE(host_->says("a new timeline is shown")) << host_->said();
  auto window = openWindow();
  ASSERT_TRUE(boardIsCovered("covered"));
  settings_.arguments = {"desktop", "--focus"};
  const DesktopHost second(desktop_->environment(), settings_);
  EXPECT_EQ(second.exitStatus(), 0) << second.said();
  EXPECT_TRUE(boardIsSeen("in-front"));
  EXPECT_TRUE(movesByKey());
  desktop_->input().key(keys::escape);
  EXPECT_TRUE(boardIsCovered("escaped"));
  EXPECT_TRUE(eventually([&] {
    desktop_->input().key(keys::f5);
    for (;;) {
      const auto line = window.firstLine(std::chrono::seconds(1));
      if (line.empty() || line == "key F5") return !line.empty();
    }
  })) << desktop_->log();
}

INSTANTIATE_TEST_SUITE_P(All, Shells,
                         testing::Values(Shell::gnomeOnX11, Shell::gnomeOnWayland, Shell::kwinOnX11,
                                         Shell::kwinOnWayland),
                         nameOf);

}  // namespace
}  // namespace end_to_end
