// Where widgets stand on X11, and that they are found there again.
#include <fstream>

#include "desktop/end_to_end/x11_fixture.hpp"
#include "support/displays/hesitant_manager.hpp"

namespace end_to_end {
namespace {

using testing::Contains;
using testing::HasSubstr;
using testing::IsSupersetOf;
using testing::Not;

class PlacementOnX11 : public OnX11 {};

TEST_F(PlacementOnX11, FirstStartPlacesAMediumWidgetTopRightAndKeepsItsPlace) {
  start();
  EXPECT_TRUE(boardsAre({firstPlace()}));
  ASSERT_TRUE(eventually([this] { return !placements(display()).is_null(); })) << host().said();
  const auto widget = placedWidget(display(), 0);
  EXPECT_EQ(widget, placed(1, "systemMedium", "screen", "topRight", gap, gap));
  EXPECT_EQ(host().end(), 0);
}

TEST_F(PlacementOnX11, LaterStartsFindEveryWidgetWhereItWas) {
  place(display(), {placed(3, "systemLarge", "screen", "topLeft", 40, 60),
                    placed(7, "systemSmall", "screen", "bottomRight", 100, 0)});
  const auto before = placements(display());
  const ScreenArea large{40, 60, mediumWidth, largeHeight};
  const ScreenArea small{1280 - 100 - smallWidth, 800 - smallHeight, smallWidth, smallHeight};
  start();
  EXPECT_TRUE(boardsAre({large, small}));
  EXPECT_TRUE(host().says("a new timeline is shown"));
  EXPECT_EQ(host().end(), 0);
  EXPECT_EQ(placements(display()), before);
  EXPECT_EQ(extension_.processes().size(), 1U);
  EXPECT_EQ(extension_.requests("timeline"), 1U);
}

TEST_F(PlacementOnX11, DamagedFileIsKeptAsideAndSaidOnce) {
  const auto file = placementsFile(display());
  std::filesystem::create_directories(file.parent_path());
  std::ofstream(file) << "{\"format\":";
  start();
  EXPECT_TRUE(boardsAre({firstPlace()}));
  EXPECT_TRUE(host().says("it is kept as " + file.string() + ".damaged-1")) << host().said();
  EXPECT_TRUE(eventually([this] { return !placements(display()).is_null(); }));
  std::string kept;
  std::getline(std::ifstream(file.string() + ".damaged-1"), kept);
  EXPECT_EQ(kept, "{\"format\":");
  start();
  EXPECT_TRUE(boardsAre({firstPlace()}));
  EXPECT_TRUE(host().says("a new timeline is shown"));
  EXPECT_THAT(host().said(), Not(HasSubstr("kept as")));
}

TEST_F(PlacementOnX11, WindowManagerThatSitsOnARequestIsAskedAgain) {
  startDesktop({.windowManager = Desktop::WindowManager::none});
  support::HesitantManager manager(display().at("DISPLAY"));
  place(display(), {placed(1, "systemMedium", "screen", "topLeft", 200, 300),
                    placed(2, "systemSmall", "screen", "topLeft", 820, 40)});
  start();
  const std::vector<ScreenArea> both{{200, 300, mediumWidth, mediumHeight}, {820, 40, smallWidth, smallHeight}};
  EXPECT_TRUE(eventually([&] {
    manager.handleRequests();
    return areas() == both;
  }));
}

TEST_F(PlacementOnX11, BoardsStayBelowOtherWindowsAndOutOfLists) {
  start();
  ASSERT_TRUE(boardsAre({firstPlace()}));
  const auto board = boards().at(0);
  EXPECT_THAT(desktop().windows().atoms(board, "_NET_WM_STATE"),
              IsSupersetOf({"_NET_WM_STATE_BELOW", "_NET_WM_STATE_SKIP_TASKBAR", "_NET_WM_STATE_SKIP_PAGER"}));
  constexpr std::uint32_t everyDesktop = 0xffffffff;
  EXPECT_THAT(desktop().windows().numbers(board, "_NET_WM_DESKTOP"), testing::ElementsAre(everyDesktop));
  // The gallery is a window like any other.
  settings_.arguments = {"desktop"};
  const DesktopHost second(display(), settings_);
  ASSERT_EQ(second.exitStatus(), 0) << second.said();
  ASSERT_TRUE(eventually([this] { return galleryIsOpen(); })) << host().said();
  const auto gallery = windowTitled("Galeria widżetów").value();
  ASSERT_TRUE(eventually([this] { return desktop().windows().stacking().size() == 2; }));
  EXPECT_THAT(desktop().windows().stacking(), testing::ElementsAre(board, gallery));
  // The gallery covers the middle of the board.
  focus(firstPlace(), {firstPlace().x + mediumWidth - 30, firstPlace().centre().y});
  // A key is handled after the click.
  desktop().input().key(keys::f5);
  ASSERT_TRUE(host().says("a new timeline is shown", 2)) << host().said();
  EXPECT_THAT(desktop().windows().stacking(), testing::ElementsAre(board, gallery));
}

}  // namespace
}  // namespace end_to_end
