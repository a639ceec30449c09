// Boards grow with the desktop's text size on X11.
#include <fstream>

#include "desktop/end_to_end/x11_fixture.hpp"
#include "support/displays/x_settings.hpp"

namespace end_to_end {
namespace {

class TextSizeOnX11 : public OnX11 {
 protected:
  /// Sets the resolution as a desktop's session does before programs start.
  void setResolution(int dotsPerInch) {
    const auto file = desktop().bus().path("resources");
    std::ofstream(file) << "Xft.dpi: " << dotsPerInch << "\n";
    support::runTool("xrdb", "x11-xserver-utils", {"-display", display().at("DISPLAY"), "-nocpp", "-merge", file},
                     desktop().bus().path("xrdb.log"));
  }

  static ScreenArea topRight(int width, int height) { return {1280 - gap - width, gap, width, height}; }
};

TEST_F(TextSizeOnX11, BoardIsAsManyTimesLargerAsTheText) {
  setResolution(120);
  start();
  const auto area = topRight(600, 400);
  EXPECT_TRUE(boardsAre({area}));
  EXPECT_TRUE(comesToShowInside(area, exported({"--scale", "1.25"}), "x11-text-125")) << host().said();
}

TEST_F(TextSizeOnX11, BoardOfTwiceTheTextShowsWhatTheUsualOneShows) {
  setResolution(192);
  start();
  const auto area = topRight(960, 640);
  EXPECT_TRUE(boardsAre({area}));
  EXPECT_TRUE(comesToShowInside(area, exported({"--scale", "2"}), "x11-text-200")) << host().said();
}

TEST_F(TextSizeOnX11, ToolkitsOwnFactorCounts) {
  settings_.variables["GDK_DPI_SCALE"] = "1.5";
  start();
  EXPECT_TRUE(boardsAre({topRight(720, 480)}));
}

TEST_F(TextSizeOnX11, ResolutionThatTheFactorTakesBackIsTheUsualSize) {
  setResolution(192);
  settings_.variables["GDK_SCALE"] = "2";
  settings_.variables["GDK_DPI_SCALE"] = "0.5";
  start();
  // The screen has 640x400 points of two pixels.
  const ScreenArea area{1280 - 2 * gap - 2 * mediumWidth, 2 * gap, 2 * mediumWidth, 2 * mediumHeight};
  EXPECT_TRUE(boardsAre({area}));
  EXPECT_TRUE(comesToShowInside(area, exported({"--scale", "2"}), "x11-scale-2")) << host().said();
}

TEST_F(TextSizeOnX11, BoardIsNoLargerThanItsMonitor) {
  setResolution(288);
  start();
  // It would be 1440x960 on a larger monitor.
  EXPECT_TRUE(boardsAre({{60, 0, 1200, 800}}));
}

TEST_F(TextSizeOnX11, BoardsFollowTheTextAndStayClearOfEachOther) {
  support::XSettings manager(display().at("DISPLAY"));
  manager.setResolution(96);
  place(display(), {placed(1, "systemMedium", "screen", "topRight", gap, gap),
                    placed(2, "systemSmall", "screen", "topRight", gap, 2 * gap + mediumHeight)});
  const auto before = placements(display());
  start();
  const std::vector<ScreenArea> usual{topRight(mediumWidth, mediumHeight),
                                      {1280 - gap - smallWidth, 2 * gap + mediumHeight, smallWidth, smallHeight}};
  ASSERT_TRUE(boardsAre(usual));
  manager.setResolution(144);
  EXPECT_TRUE(boardsAre({topRight(720, 480), {1280 - gap - 345, 2 * gap + 480, 345, 225}}));
  manager.setResolution(96);
  EXPECT_TRUE(boardsAre(usual));
  EXPECT_EQ(host().end(), 0);
  EXPECT_EQ(placements(display()), before);
}

}  // namespace
}  // namespace end_to_end
