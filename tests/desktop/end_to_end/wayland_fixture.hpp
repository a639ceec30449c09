// The fixture of the tests on a compositor with layer shell: a desktop, an extension, a host and the expected screen.
// No protocol lists layers, so tests find boards by screenshots.
#pragma once

#include <map>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include <gmock/gmock.h>

#include "desktop/end_to_end/desktop_fixture.hpp"
#include "desktop/end_to_end/sizes_and_keys.hpp"
#include "support/displays/sway_desktop.hpp"

namespace end_to_end {

using support::eventually;
using support::ScreenPoint;

/// A board at a place of its output, in points.
struct ShownBoard {
  std::string family;  // as the exporter names it: "medium"
  ScreenPoint place;
};

class OnSway : public testing::Test {
 protected:
  using Desktop = support::SwayDesktop;

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

  /// Starts a second host while the first one runs.
  void startAgain() {
    const DesktopHost second(display(), settings_);
    EXPECT_EQ(second.exitStatus(), 0) << second.said();
  }
  void press(std::uint32_t key) { desktop().input().key(key); }

  /// The extension's board as `vamba-host show` draws it with these options.
  const support::Bitmap& exported(const std::string& family, const std::vector<std::string>& options = {});
  /// The expected screen: an output of this size with these boards and nothing else, each drawn with the options.
  support::Bitmap screenWith(const std::vector<ShownBoard>& boards, const std::vector<std::string>& options = {},
                             std::uint32_t width = 1280, std::uint32_t height = 800);

  /// Whether the whole output comes to look like this.
  testing::AssertionResult comesToShow(const support::Bitmap& expected, const std::string& name,
                                       const std::string& output = "HEADLESS-1") {
    // A board that is one pixel off differs in more pixels than this.
    return comesToShow(expected, name, output, 100);
  }
  /// The same during a drag: the cursor and the outline of a medium board are not expected.
  testing::AssertionResult comesToShowBesideAnOutline(const support::Bitmap& expected, const std::string& name) {
    constexpr std::size_t outline = 4 * 2 * (mediumWidth + mediumHeight);
    return comesToShow(expected, name, "HEADLESS-1", 100 + 300 + outline);
  }
  /// The same, but one of the boards may have a focus ring.
  testing::AssertionResult boardsAre(const std::vector<ShownBoard>& boards, const std::string& name,
                                     const std::string& output = "HEADLESS-1") {
    return comesToShowWithAFocusRing(screenWith(boards), name, output);
  }
  testing::AssertionResult comesToShowWithAFocusRing(const support::Bitmap& expected, const std::string& name,
                                                     const std::string& output = "HEADLESS-1") {
    return comesToShow(expected, name, output, 100 + 2 * 2 * (mediumWidth + largeHeight));
  }

  /// The saved placement of a widget, counted from 0; null if there is none.
  nlohmann::json kept(std::size_t widget = 0);
  /// Whether these placements come to be saved.
  testing::AssertionResult comesToBeKept(const std::vector<nlohmann::json>& widgets);

  /// Where the first widget is placed on a fresh desktop.
  static constexpr ScreenPoint firstPlace{1280 - gap - mediumWidth, gap};
  static constexpr ScreenPoint middleOfFirst{firstPlace.x + mediumWidth / 2, firstPlace.y + mediumHeight / 2};

  ChangingExtension extension_;
  HostSettings settings_{.extension = extension_.program()};

 private:
  testing::AssertionResult comesToShow(const support::Bitmap& expected, const std::string& name,
                                       const std::string& output, std::size_t mayDiffer);

  std::optional<Desktop> desktop_;
  std::unique_ptr<DesktopHost> host_;
  std::map<std::vector<std::string>, support::Bitmap> pictures_;
};

/// Paints the picture over the screen at a place in pixels.
void paint(support::Bitmap& screen, const support::Bitmap& picture, ScreenPoint place);

/// The picture with its opacity multiplied.
support::Bitmap faded(support::Bitmap picture, double opacity);

/// A saved placement on a headless output.
nlohmann::json placedOn(const std::string& output, int id, const std::string& family, const std::string& corner, int x,
                        int y);

}  // namespace end_to_end
