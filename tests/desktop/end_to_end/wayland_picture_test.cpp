// Boards on a compositor with layer shell: compared with the exporter's pictures, following the output's scale and the
// desktop's appearance, and read by a screen reader.
#include "desktop/end_to_end/wayland_fixture.hpp"
#include "displays/sample_window.hpp"
#include "support/displays/accessible_objects.hpp"
#include "support/displays/stand_in_portal.hpp"

namespace end_to_end {
namespace {

using support::ColourScheme;

class PictureOnWayland : public OnSway {};

TEST_F(PictureOnWayland, FirstWidgetIsAtTheTopRightAsTheExporterDrawsIt) {
  start();
  EXPECT_TRUE(comesToShow(screenWith({{"medium", firstPlace}}), "first"));
  EXPECT_TRUE(comesToBeKept({placedOn("HEADLESS-1", 1, "systemMedium", "topRight", gap, gap)}));
  EXPECT_TRUE(host().says("the display: Wayland, on the bottom layer")) << host().said();
}

TEST_F(PictureOnWayland, WidgetsOfEverySizeAreWhereTheyWereLeft) {
  place(display(), {placedOn("HEADLESS-1", 1, "systemSmall", "topLeft", 20, 37),
                    placedOn("HEADLESS-1", 2, "systemMedium", "bottomLeft", 45, 20),
                    placedOn("HEADLESS-1", 3, "systemLarge", "bottomRight", 0, 20)});
  start();
  EXPECT_TRUE(comesToShow(screenWith({{"small", {20, 37}},
                                      {"medium", {45, 800 - 20 - mediumHeight}},
                                      {"large", {1280 - mediumWidth, 800 - 20 - largeHeight}}}),
                          "sizes"));
  EXPECT_EQ(extension_.requests("timeline"), 1U + 3U /* of the exporter */);
}

TEST_F(PictureOnWayland, ScaleChangedAtRunTimeMovesTheBoardAndDrawsItAnew) {
  start();
  EXPECT_TRUE(comesToShow(screenWith({{"medium", firstPlace}}), "scale-1"));
  desktop().setScale("HEADLESS-1", 2);
  // 640x400 points.
  EXPECT_TRUE(comesToShow(screenWith({{"medium", {640 - gap - mediumWidth, gap}}}, {"--scale", "2"}), "scale-2"));
  desktop().setScale("HEADLESS-1", 1);
  EXPECT_TRUE(comesToShow(screenWith({{"medium", firstPlace}}), "scale-1-again"));
}

TEST_F(PictureOnWayland, BoardStartsOnAnOutputOfScaleTwo) {
  desktop().setScale("HEADLESS-1", 2);
  start();
  EXPECT_TRUE(comesToShow(screenWith({{"medium", {640 - gap - mediumWidth, gap}}}, {"--scale", "2"}), "starts-at-2"));
}

TEST_F(PictureOnWayland, BoardLiesBelowWindows) {
  start();
  const auto board = screenWith({{"medium", firstPlace}});
  ASSERT_TRUE(comesToShow(board, "before-window"));
  {
    const auto window = sampleWindow(display(), {"Red", "#ff0000"});
    auto covered = board;
    std::ranges::fill(covered.pixels, support::Pixel{255, 0, 0, 255});
    EXPECT_TRUE(comesToShow(covered, "below-window"));
    desktop().input().click(middleOfFirst);
    EXPECT_TRUE(comesToShow(covered, "below-clicked-window"));
  }
  EXPECT_TRUE(comesToShow(board, "after-window"));
}

TEST_F(PictureOnWayland, BoardMakesRoomForAPanelAtItsEdge) {
  start();
  const auto board = screenWith({{"medium", firstPlace}});
  ASSERT_TRUE(comesToShow(board, "before-panel"));
  {
    const auto panel = sampleWindow(display(), {"Panel", "#ff0000", "panel"});
    auto beside = screenWith({{"medium", {firstPlace.x - 300, firstPlace.y}}});
    support::Bitmap panelPicture{.width = 300, .height = beside.height, .pixels = {}};
    panelPicture.pixels.resize(std::size_t{300} * beside.height, support::Pixel{255, 0, 0, 255});
    paint(beside, panelPicture, {firstPlace.x + mediumWidth + gap - 300, 0});
    EXPECT_TRUE(comesToShow(beside, "beside-panel")) << host().said();
  }
  EXPECT_TRUE(comesToShow(board, "after-panel"));
}

TEST_F(PictureOnWayland, DarkOfThePortalIsFollowedAtRunTime) {
  support::StandInPortal portal(desktop().bus(), {.appearance = {.colourScheme = ColourScheme::light}});
  start();
  const auto light = screenWith({{"medium", firstPlace}});
  EXPECT_TRUE(comesToShow(light, "light"));
  portal.change({.colourScheme = ColourScheme::dark});
  EXPECT_TRUE(comesToShow(screenWith({{"medium", firstPlace}}, {"--appearance", "dark"}), "dark"));
  portal.change({.colourScheme = ColourScheme::light});
  EXPECT_TRUE(comesToShow(light, "light-again"));
}

TEST_F(PictureOnWayland, ScreenReaderIsToldTheBoardAndWhatChanges) {
  extension_.set("FAKE_EXTENSION_TITLE", "Zebranie");
  support::AccessibleObjects objects(desktop().bus());
  start();
  const auto isRead = [&](const std::string& description) {
    const auto isTold = [&] {
      const auto all = objects.of(host().id());
      return all.size() == 3 && all[1].role == "panel" && all[1].name == "Fake" && all[1].description == description &&
             all[2].role == "label" && all[2].name == description;
    };
    if (eventually(isTold)) return testing::AssertionSuccess();
    auto failure = testing::AssertionFailure();
    for (const auto& each : objects.of(host().id())) {
      failure << each.role << " \"" << each.name << "\": " << each.description << "\n";
    }
    return failure << host().said();
  };
  EXPECT_TRUE(isRead("Zebranie systemMedium"));
  ASSERT_TRUE(boardsAre({{"medium", firstPlace}}, "read"));
  extension_.set("FAKE_EXTENSION_TITLE", "Spacer");
  desktop().input().click(middleOfFirst);
  press(keys::f5);
  EXPECT_TRUE(isRead("Spacer systemMedium"));
}

}  // namespace
}  // namespace end_to_end
