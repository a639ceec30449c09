// The fixture of the tests on X11: a desktop, an extension, a host, and its windows by purpose.
#pragma once

#include <algorithm>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include <gmock/gmock.h>

#include "desktop/end_to_end/desktop_fixture.hpp"
#include "desktop/end_to_end/sizes_and_keys.hpp"
#include "support/displays/x_desktop.hpp"
#include "support/tool.hpp"

namespace end_to_end {

using support::eventually;
using support::ScreenArea;

class OnX11 : public testing::Test {
 protected:
  using Desktop = support::XDesktop;

  void startDesktop(const Desktop::Settings& settings = {}) { desktop_.emplace(settings); }
  Desktop& desktop() {
    if (!desktop_) startDesktop();
    return *desktop_;
  }
  support::SessionBus::Environment display() { return desktop().environment(); }

  /// Starts a host; one that is running is ended first.
  DesktopHost& start() {
    host_.reset();
    host_ = std::make_unique<DesktopHost>(display(), settings_);
    return *host_;
  }
  DesktopHost& host() { return *host_; }
  void end() { host_.reset(); }

  std::vector<support::XWindow> windows() { return desktop().windows().windowsOf(host().id()); }
  bool isBoard(support::XWindow window) {
    const auto types = desktop().windows().atoms(window, "_NET_WM_WINDOW_TYPE");
    return std::ranges::find(types, "_NET_WM_WINDOW_TYPE_DOCK") != types.end();
  }
  /// Whether the window has the button that brings back a removed board, in its place.
  bool isUndo(support::XWindow window) { return desktop().windows().title(window) == "Cofnij usunięcie"; }
  std::vector<support::XWindow> boards() {
    auto found = windows();
    std::erase_if(found, [this](support::XWindow window) { return !isBoard(window) || isUndo(window); });
    return found;
  }
  /// The areas of the boards, ordered from left to right and then from top to bottom.
  std::vector<ScreenArea> areas() {
    std::vector<ScreenArea> areas;
    for (const auto window : boards()) {
      if (const auto area = desktop().windows().areaOf(window)) areas.push_back(*area);
    }
    std::ranges::sort(areas, {}, [](const ScreenArea& area) { return std::pair(area.x, area.y); });
    return areas;
  }
  /// Whether the boards come to have exactly these areas.
  testing::AssertionResult boardsAre(const std::vector<ScreenArea>& wanted) {
    if (eventually([&] { return areas() == wanted; })) return testing::AssertionSuccess();
    auto failure = testing::AssertionFailure() << "boards are at";
    for (const auto& area : areas()) {
      failure << " " << area.width << "x" << area.height << "+" << area.x << "+" << area.y;
    }
    return failure << "\n" << host().said();
  }
  std::optional<support::XWindow> windowTitled(const std::string& title) {
    for (const auto window : windows()) {
      if (desktop().windows().title(window) == title) return window;
    }
    return std::nullopt;
  }
  bool isFocused(const ScreenArea& board) {
    const auto active = desktop().windows().numbers(desktop().windows().root(), "_NET_ACTIVE_WINDOW");
    return active.size() == 1 && isBoard(active[0]) && desktop().windows().areaOf(active[0]) == board;
  }
  /// Focuses the board by a click, and by another one if the window manager was not ready for the first.
  void focus(const ScreenArea& board) { focus(board, board.centre()); }
  void focus(const ScreenArea& board, support::ScreenPoint click) {
    EXPECT_TRUE(eventually([&] {
      desktop().input().click(click);
      return eventually([&] { return isFocused(board); }, std::chrono::milliseconds(500));
    })) << desktop().log();
  }
  /// Whether the board comes to have the focus.
  testing::AssertionResult focusComesTo(const ScreenArea& board) {
    if (eventually([&] { return isFocused(board); })) return testing::AssertionSuccess();
    return testing::AssertionFailure() << "another window is active\n" << desktop().log();
  }
  /// The number of menus, submenus and tooltips that are shown: windows that no window manager lists. The toolkit has
  /// a tiny one of that kind beside them.
  std::ptrdiff_t openMenus() {
    const auto managed = desktop().windows().stacking();
    return std::ranges::count_if(windows(), [&](support::XWindow window) {
      constexpr int tiny = 20;
      const auto area = desktop().windows().areaOf(window);
      return area && area->width > tiny && std::ranges::find(managed, window) == managed.end();
    });
  }
  bool menusAre(std::ptrdiff_t count) {
    return eventually([&] { return openMenus() == count; });
  }
  /// Opens the menu of the focused board by a key, and by another stroke if the window manager still dealt with the
  /// click that focused the board.
  void openMenu(std::uint32_t key = keys::menu, const std::vector<std::uint32_t>& modifiers = {}) {
    ASSERT_TRUE(eventually([&] {
      desktop().input().key(key, modifiers);
      return eventually([&] { return openMenus() == 1; }, std::chrono::seconds(5));
    })) << host().said();
  }
  bool galleryIsOpen() { return windowTitled("Galeria widżetów").has_value(); }

  support::Bitmap shown(const ScreenArea& area) {
    return support::crop(desktop().screenshot(), area.x, area.y, static_cast<std::uint32_t>(area.width),
                         static_cast<std::uint32_t>(area.height));
  }
  /// Whether the screen comes to show this picture there.
  testing::AssertionResult comesToShow(const ScreenArea& area, const support::Bitmap& expected, const std::string& name,
                                       const support::Tolerance& tolerance = {}) {
    eventually([&] {
      return support::differingPixels(shown(area), expected, tolerance.channel) * tolerance.oneMayDiffer <=
             expected.pixels.size();
    });
    return support::showsTheSame(shown(area), expected, name, tolerance);
  }

  /// The same for the picture of a whole board, without its corners and its focus ring.
  testing::AssertionResult comesToShowInside(const ScreenArea& area, const support::Bitmap& board,
                                             const std::string& name, const support::Tolerance& tolerance = {}) {
    constexpr int edge = 20;
    const ScreenArea inner{area.x + edge, area.y + edge, area.width - 2 * edge, area.height - 2 * edge};
    return comesToShow(inner,
                       support::crop(board, edge, edge, static_cast<std::uint32_t>(inner.width),
                                     static_cast<std::uint32_t>(inner.height)),
                       name, tolerance);
  }

  /// Paints a background in a colour that no board has, which is seen through the corners.
  void paintBackground() {
    support::runTool("xsetroot", "x11-xserver-utils", {"-display", display().at("DISPLAY"), "-solid", "#2060a0"},
                     desktop().bus().path("xsetroot.log"));
  }
  /// Keeps a screenshot of the screen without boards.
  void keepBackground() { background_ = desktop().screenshot(); }
  support::Bitmap expectedAt(const ScreenArea& area, const support::Bitmap& picture) const {
    return over(support::crop(background_, area.x, area.y, picture.width, picture.height), picture);
  }
  support::Bitmap exported(std::vector<std::string> options = {}) {
    return exportedPicture(display(), settings_, std::move(options));
  }

  /// Where the first widget is placed on a fresh desktop.
  ScreenArea firstPlace(int screenWidth = 1280) const {
    return {screenWidth - gap - mediumWidth, gap, mediumWidth, mediumHeight};
  }

  ChangingExtension extension_;
  HostSettings settings_{.extension = extension_.program()};
  support::Bitmap background_;

 private:
  std::optional<Desktop> desktop_;
  std::unique_ptr<DesktopHost> host_;
};

}  // namespace end_to_end
