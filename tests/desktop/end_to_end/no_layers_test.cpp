// The desktop on a Wayland compositor without layer shell: on its X server, or else as a plain window.
#include <gmock/gmock.h>

#include "desktop/end_to_end/desktop_fixture.hpp"
#include "desktop/end_to_end/sizes_and_keys.hpp"
#include "support/displays/accessible_objects.hpp"
#include "support/displays/mutter_desktop.hpp"

namespace end_to_end {
namespace {

using support::eventually;
using support::ScreenArea;
using support::XWindow;

class WithoutLayers : public testing::Test {
 protected:
  support::SessionBus::Environment display() { return desktop_.environment(); }
  std::vector<XWindow> windows(const DesktopHost& host) { return desktop_.windows().windowsOf(host.id()); }

  support::MutterDesktop desktop_;
  ChangingExtension extension_;
  HostSettings settings_{.extension = extension_.program()};
};

TEST_F(WithoutLayers, BoardIsAnXWindowInItsPlaceBelowOthersOnEveryWorkspace) {
  const DesktopHost host(display(), settings_);
  EXPECT_TRUE(host.says("the display: X11, below other windows")) << host.said();
  const ScreenArea first{1280 - gap - mediumWidth, gap, mediumWidth, mediumHeight};
  ASSERT_TRUE(eventually([&] { return windows(host).size() == 1; })) << host.said();
  const auto board = windows(host).at(0);
  EXPECT_TRUE(eventually([&] { return desktop_.windows().areaOf(board) == first; })) << host.said();
  const auto states = [&] { return desktop_.windows().atoms(board, "_NET_WM_STATE"); };
  EXPECT_TRUE(eventually([&] {
    const auto now = states();
    return std::ranges::count(now, "_NET_WM_STATE_BELOW") + std::ranges::count(now, "_NET_WM_STATE_STICKY") == 2;
  })) << testing::PrintToString(states());

  const DesktopHost second(display(), settings_);
  EXPECT_EQ(second.exitStatus(), 0) << second.said();
  ASSERT_TRUE(eventually([&] { return desktop_.windows().stacking().size() == 2; })) << host.said();
  // The gallery may cover the middle of the board, and may take the focus only after the first click. A key that
  // reaches the board is handled after the click that gave it the focus.
  ASSERT_TRUE(eventually([&] {
    desktop_.input().click({first.x + mediumWidth - 30, first.centre().y});
    desktop_.input().key(keys::f5);
    return eventually([&] { return extension_.requests("timeline") > 1; }, std::chrono::seconds(2));
  })) << host.said();
  EXPECT_EQ(desktop_.windows().stacking().front(), board);
}

TEST_F(WithoutLayers, BoardIsDrawnAsTheExporterDrawsIt) {
  const DesktopHost host(display(), settings_);
  ASSERT_TRUE(eventually([&] { return windows(host).size() == 1; })) << host.said();
  const auto board = windows(host).at(0);
  // The pixels of X windows have premultiplied opacity.
  auto expected = exportedPicture(display(), settings_, {});
  constexpr int full = 255;
  for (auto& pixel : expected.pixels) {
    for (auto* const channel : {&pixel.red, &pixel.green, &pixel.blue}) {
      *channel = static_cast<std::uint8_t>(*channel * pixel.opacity / full);
    }
  }
  const auto same = [&](const support::Bitmap& shown) { return support::differingPixels(shown, expected, 4) < 20; };
  EXPECT_TRUE(eventually([&] { return same(desktop_.windows().pictureOf(board)); }))
      << support::showsTheSame(desktop_.windows().pictureOf(board), expected, "no-layers", {0, expected.pixels.size()})
             .message();
}

TEST_F(WithoutLayers, DraggedBoardSnapsToTheGridAndIsKeptThere) {
  const DesktopHost host(display(), settings_);
  ASSERT_TRUE(host.says("a new timeline is shown")) << host.said();
  ASSERT_TRUE(eventually([&] { return windows(host).size() == 1; })) << host.said();
  const auto board = windows(host).at(0);
  const ScreenArea first{1280 - gap - mediumWidth, gap, mediumWidth, mediumHeight};
  ASSERT_TRUE(eventually([&] { return desktop_.windows().areaOf(board) == first; }));
  const auto from = first.centre();
  desktop_.input().drag(from, {from.x - 302, from.y + 197});
  const ScreenArea there{480, 220, mediumWidth, mediumHeight};
  EXPECT_TRUE(eventually([&] { return desktop_.windows().areaOf(board) == there; })) << host.said();
  EXPECT_TRUE(eventually([&] { return placedWidget(display(), 0)["x"] == 320; }));
}

TEST_F(WithoutLayers, BoardIsAPlainWindowWhereThereIsNoXServerEither) {
  support::AccessibleObjects objects(desktop_.bus());
  auto variables = display();
  variables.erase("DISPLAY");
  variables.erase("XAUTHORITY");
  const DesktopHost host(variables, settings_);
  EXPECT_TRUE(host.says("the display: Wayland without layers: place and stacking are the compositor's")) << host.said();
  const auto isRead = [&] {
    const auto all = objects.of(host.id());
    return all.size() == 3 && all[1].name == "Fake" && all[1].description == "timeline systemMedium";
  };
  EXPECT_TRUE(eventually(isRead)) << host.said();
  EXPECT_TRUE(windows(host).empty());
}

}  // namespace
}  // namespace end_to_end
