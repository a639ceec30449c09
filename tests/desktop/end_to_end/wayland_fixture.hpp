// What the tests on a compositor with layer shell share: a desktop, an extension, a host, and the screen as it has to
// be. Layers are in no list of windows: where boards are is seen.
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

  /// Replaces the host that runs, which ends first.
  DesktopHost& start() {
    host_.reset();
    host_ = std::make_unique<DesktopHost>(display(), settings_);
    return *host_;
  }
  DesktopHost& host() { return *host_; }

  /// A host that starts while the first one runs.
  void startAgain() {
    const DesktopHost second(display(), settings_);
    EXPECT_EQ(second.exitStatus(), 0) << second.said();
  }
  void press(std::uint32_t key) { desktop().input().key(key); }

  /// A drawing of the extension's board; `options` are those of `vamba-host show`.
  const support::Bitmap& exported(const std::string& family, const std::vector<std::string>& options = {});
  /// An output of these many pixels with these boards on it and nothing else, each drawn with the options.
  support::Bitmap screenWith(const std::vector<ShownBoard>& boards, const std::vector<std::string>& options = {},
                             std::uint32_t width = 1280, std::uint32_t height = 800);

  /// Whether the output comes to show this, and all of this.
  testing::AssertionResult comesToShow(const support::Bitmap& expected, const std::string& name,
                                       const std::string& output = "HEADLESS-1") {
    // A whole screen is compared: a board by one pixel aside is more than this.
    return comesToShow(expected, name, output, 100);
  }
  testing::AssertionResult comesToShowBesideTheCursor(const support::Bitmap& expected, const std::string& name) {
    return comesToShow(expected, name, "HEADLESS-1", 100 + 300);
  }
  /// The same for boards of which one may have the outline of the keyboard's focus.
  testing::AssertionResult boardsAre(const std::vector<ShownBoard>& boards, const std::string& name,
                                     const std::string& output = "HEADLESS-1") {
    return comesToShow(screenWith(boards), name, output, 100 + 2 * 2 * (mediumWidth + largeHeight));
  }

  /// What is kept of a widget, the first having number 0; null where there is none.
  nlohmann::json kept(std::size_t widget = 0);
  /// Whether this comes to be kept.
  testing::AssertionResult comesToBeKept(const std::vector<nlohmann::json>& widgets);

  /// Where the first widget of a person comes to be.
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

/// Puts the picture over the screen there, in pixels.
void paint(support::Bitmap& screen, const support::Bitmap& picture, ScreenPoint place);

/// The picture as opaque as that.
support::Bitmap faded(support::Bitmap picture, double opacity);

/// A widget as its owner left it on a headless output.
nlohmann::json placedOn(const std::string& output, int id, const std::string& family, const std::string& corner, int x,
                        int y);

}  // namespace end_to_end
