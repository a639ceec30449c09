// Monitors that are plugged in and unplugged on X11.
#include "desktop/end_to_end/x11_fixture.hpp"

namespace end_to_end {
namespace {

class MonitorsOnX11 : public OnX11 {
 protected:
  MonitorsOnX11() {
    startDesktop({.width = 1200, .monitors = Desktop::MonitorKind::unpluggable});
    desktop().monitors().add(right);
  }

  const support::XMonitor right{"DUMMY1", {1200, 0, 1000, 800}};
};

TEST_F(MonitorsOnX11, FirstWidgetIsPlacedOnThePrimaryMonitor) {
  start();
  EXPECT_TRUE(boardsAre({firstPlace(1200)}));
  ASSERT_TRUE(eventually([this] { return !placements(display()).is_null(); }));
  EXPECT_EQ(placedWidget(display(), 0), placed(1, "systemMedium", "DUMMY0", "topRight", gap, gap));
}

TEST_F(MonitorsOnX11, WidgetsOfAnUnpluggedMonitorMoveToAnotherAndComeBackExactly) {
  place(display(), {placed(1, "systemMedium", "DUMMY1", "topLeft", 37, 143),
                    placed(2, "systemSmall", "DUMMY1", "bottomRight", 0, 11),
                    placed(3, "systemSmall", "DUMMY0", "topLeft", 20, 20)});
  const auto before = placements(display());
  const ScreenArea stays{20, 20, smallWidth, smallHeight};
  const std::vector<ScreenArea> both{stays,
                                     {1237, 143, mediumWidth, mediumHeight},
                                     {2200 - smallWidth, 800 - 11 - smallHeight, smallWidth, smallHeight}};
  start();
  ASSERT_TRUE(boardsAre(both));
  for (int time = 0; time < 3; ++time) {
    desktop().monitors().remove(right.name);
    EXPECT_TRUE(eventually([this] {
      const auto now = areas();
      return now.size() == 3 && std::ranges::all_of(now, [](const ScreenArea& area) {
               return area.x >= 0 && area.x + area.width <= 1200 && area.y >= 0 && area.y + area.height <= 800;
             });
    })) << host().said();
    EXPECT_THAT(areas(), testing::Contains(stays));
    desktop().monitors().add(right);
    EXPECT_TRUE(boardsAre(both));
  }
  EXPECT_EQ(placements(display()), before);
}

TEST_F(MonitorsOnX11, WidgetIsDraggedFromOneMonitorToAnother) {
  start();
  ASSERT_TRUE(boardsAre({firstPlace(1200)}));
  const auto from = firstPlace(1200).centre();
  desktop().input().drag(from, {from.x + 700, from.y + 3});
  const ScreenArea there{1400, 20, mediumWidth, mediumHeight};
  EXPECT_TRUE(boardsAre({there}));
  EXPECT_TRUE(eventually([this] {
    return placedWidget(display(), 0) == placed(1, "systemMedium", "DUMMY1", "topLeft", 200, 20);
  })) << placements(display());
}

}  // namespace
}  // namespace end_to_end
