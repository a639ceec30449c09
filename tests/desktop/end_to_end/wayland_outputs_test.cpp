// Outputs that are unplugged and plugged in on a compositor with layer shell, and a compositor that ends.

#include "desktop/end_to_end/wayland_fixture.hpp"
#include "support/displays/steps.hpp"

namespace end_to_end {
namespace {

class OutputsOnWayland : public OnSway {
 protected:
  /// Starts with a widget placed on that output. There are two outputs of 800x600 side by side.
  void startOn(const std::string& output) {
    startDesktop({.width = 800, .height = 600, .outputs = 2, .kind = Desktop::OutputKind::unpluggable});
    // The first start tells which make and model the X server's outputs have.
    start();
    ASSERT_TRUE(eventually([this] { return !kept().is_null(); })) << host().said();
    auto widget = placed(1, "systemMedium", "", "topLeft", spot.x, spot.y);
    widget["monitor"] = kept()["monitor"];
    widget["monitor"]["connector"] = output;
    place(display(), nlohmann::json::array({widget}));
    start();
  }
  support::Bitmap board() { return screenWith({{"medium", spot}}, {}, 800, 600); }
  support::Bitmap bare() { return screenWith({}, {}, 800, 600); }

  static constexpr ScreenPoint spot{37, 143};
};

TEST_F(OutputsOnWayland, WidgetComesToItsOutputWhenThatIsPluggedAndLeavesItWhenUnplugged) {
  startOn("X11-3");
  const auto before = placements(display());
  ASSERT_TRUE(comesToShow(board(), "no-own-output", "X11-1"));
  desktop().unplug("X11-1");
  EXPECT_TRUE(comesToShow(board(), "first-unplugged", "X11-2"));
  ASSERT_EQ(desktop().addOutput(800, 600), "X11-3");
  EXPECT_TRUE(comesToShow(board(), "plugged", "X11-3"));
  EXPECT_TRUE(comesToShow(bare(), "no-longer-there", "X11-2"));
  desktop().unplug("X11-3");
  EXPECT_TRUE(comesToShow(board(), "own-unplugged", "X11-2"));
  EXPECT_EQ(placements(display()), before);
}

TEST_F(OutputsOnWayland, BoardSurvivesThatNoOutputIsLeft) {
  startOn("X11-1");
  ASSERT_TRUE(comesToShow(board(), "before-all-unplugged", "X11-1"));
  desktop().unplug("X11-2");
  desktop().unplug("X11-1");
  ASSERT_EQ(desktop().addOutput(800, 600), "X11-3");
  EXPECT_TRUE(comesToShow(board(), "only-output", "X11-3"));
}

TEST_F(OutputsOnWayland, WidgetIsDraggedWithinTheSecondOutput) {
  startDesktop({.width = 800, .height = 600, .outputs = 2});
  place(display(), nlohmann::json::array({placedOn("HEADLESS-2", 1, "systemMedium", "topLeft", 40, 40)}));
  start();
  ASSERT_TRUE(comesToShow(screenWith({{"medium", {40, 40}}}, {}, 800, 600), "before-drag", "HEADLESS-2"));
  desktop().input().drag({1000, 200}, {1098, 322});
  // The screen is not compared, since this compositor leaves traces of layers that move on its second output.
  EXPECT_TRUE(comesToBeKept({placedOn("HEADLESS-2", 1, "systemMedium", "bottomLeft", 140, 120)}));
}

TEST_F(OutputsOnWayland, WidgetIsDraggedOntoTheSecondOutputWithItsImage) {
  startDesktop({.width = 800, .height = 600, .outputs = 2});
  place(display(), nlohmann::json::array({placedOn("HEADLESS-1", 1, "systemMedium", "topLeft", 200, 40)}));
  start();
  ASSERT_TRUE(comesToShow(screenWith({{"medium", {200, 40}}}, {}, 800, 600), "before-crossing"));
  ASSERT_TRUE(host().says("a new timeline is shown")) << host().said();
  const ScreenPoint from{440, 200};
  const ScreenPoint between{840, 250};  // the board is then at 600,90 and reaches to 1080
  desktop().input().moveTo(from);
  desktop().input().press();
  support::moveInSteps(desktop().input(), from, between);
  // A part of the image is on each output. The text of the board is on neither of these spots.
  const auto isImage = [this](const std::string& output, unsigned x, unsigned y) {
    return eventually([&] { return desktop().screenshot(output).at(x, y) == support::Pixel{255, 255, 255, 255}; });
  };
  EXPECT_TRUE(isImage("HEADLESS-1", 720, 300)) << host().said();
  EXPECT_TRUE(isImage("HEADLESS-2", 150, 300)) << host().said();
  support::moveInSteps(desktop().input(), between, {1140, 275});
  desktop().input().release();
  EXPECT_TRUE(comesToBeKept({placedOn("HEADLESS-2", 1, "systemMedium", "topLeft", 100, 120)}));
}

TEST_F(OutputsOnWayland, HostEndsWithTheCompositorAndTheToolkitSaysSo) {
  start();
  ASSERT_TRUE(host().says("a new timeline is shown")) << host().said();
  desktop().endCompositor();
  EXPECT_EQ(host().exitStatus(), 1);
  EXPECT_THAT(host().said(), testing::HasSubstr("Gdk-Message"));
}

}  // namespace
}  // namespace end_to_end
