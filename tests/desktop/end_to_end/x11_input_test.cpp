// Using widgets by mouse and keyboard on X11: moving, sizes, the menu, the gallery.
#include "desktop/end_to_end/x11_fixture.hpp"

namespace end_to_end {
namespace {

using support::ScreenPoint;

class InputOnX11 : public OnX11 {
 protected:
  /// Two widgets away from the edges; the medium one is focused.
  void startWithTwo() {
    place(display(), {placed(1, "systemMedium", "screen", "topLeft", 200, 300),
                      placed(2, "systemSmall", "screen", "topLeft", 820, 40)});
    start();
    ASSERT_TRUE(boardsAre({medium, small}));
    ASSERT_TRUE(host().says("a new timeline is shown")) << host().said();
    focus(medium);
  }
  void press(std::uint32_t key, const std::vector<std::uint32_t>& modifiers = {}) {
    desktop().input().key(key, modifiers);
  }

  /// Presses the board there and moves it by so much, in small steps.
  void dragHalfway(ScreenPoint from, int right, int down) {
    desktop().input().moveTo(from);
    desktop().input().press();
    constexpr int steps = 10;
    for (int step = 1; step <= steps; ++step) {
      desktop().input().moveTo({from.x + right * step / steps, from.y + down * step / steps});
    }
  }
  /// The area of the outline that is shown during a drag.
  std::optional<ScreenArea> outline() {
    for (const auto window : windows()) {
      const auto types = desktop().windows().atoms(window, "_NET_WM_WINDOW_TYPE");
      if (std::ranges::find(types, "_NET_WM_WINDOW_TYPE_DND") != types.end()) return desktop().windows().areaOf(window);
    }
    return std::nullopt;
  }
  support::XWindow boardAt(const ScreenArea& area) {
    for (const auto window : boards()) {
      if (desktop().windows().areaOf(window) == area) return window;
    }
    throw std::runtime_error("no board there");
  }

  bool galleryOpens() {
    return eventually([this] { return galleryIsOpen(); });
  }
  bool galleryCloses() {
    return eventually([this] { return !galleryIsOpen(); });
  }
  /// Waits until the gallery is focused.
  void awaitGallery() {
    ASSERT_TRUE(galleryOpens()) << host().said();
    const auto gallery = windowTitled("Galeria widżetów").value();
    ASSERT_TRUE(eventually([&] {
      return desktop().windows().numbers(desktop().windows().root(), "_NET_ACTIVE_WINDOW") == std::vector{gallery};
    }));
  }
  std::size_t placedCount() {
    const auto kept = placements(display());
    return kept.is_null() ? 0 : kept["widgets"].size();
  }

  static constexpr ScreenArea medium{200, 300, mediumWidth, mediumHeight};
  static constexpr ScreenArea small{820, 40, smallWidth, smallHeight};
};

ScreenArea movedBy(ScreenArea area, int right, int down) {
  area.x += right;
  area.y += down;
  return area;
}

TEST_F(InputOnX11, DraggedWidgetSnapsToTheGridAndStaysThereAfterARestart) {
  startWithTwo();
  const auto from = medium.centre();
  desktop().input().drag(from, {from.x + 97, from.y + 104});
  EXPECT_TRUE(boardsAre({movedBy(medium, 100, 100), small}));
  EXPECT_TRUE(eventually([&] {
    return placedWidget(display(), 0) == placed(1, "systemMedium", "screen", "bottomLeft", 300, 80);
  })) << placements(display());
  start();
  EXPECT_TRUE(boardsAre({movedBy(medium, 100, 100), small}));
}

TEST_F(InputOnX11, DraggedWidgetFollowsTheHandAndAnOutlineShowsWhereItLands) {
  startWithTwo();
  dragHalfway(medium.centre(), 93, 110);
  EXPECT_TRUE(boardsAre({movedBy(medium, 93, 110), small}));
  EXPECT_TRUE(eventually([this] { return outline() == movedBy(medium, 100, 120); }));
  // It is drawn as a line within the place's edge, here to the right of the board.
  const auto screen = desktop().screenshot();
  const auto pixel = screen.at(200 + 100 + mediumWidth - 2, 300 + 120 + 100);
  EXPECT_GT(pixel.blue, pixel.red + 60);
  desktop().input().release();
  EXPECT_TRUE(boardsAre({movedBy(medium, 100, 120), small}));
  EXPECT_TRUE(eventually([this] { return !outline(); }));
}

TEST_F(InputOnX11, WidgetDraggedWithShiftLandsWhereItIsLetGo) {
  startWithTwo();
  desktop().input().hold(keys::shift);
  dragHalfway(medium.centre(), 93, 110);
  EXPECT_TRUE(eventually([this] { return outline() == movedBy(medium, 93, 110); }));
  desktop().input().release();
  desktop().input().letGo(keys::shift);
  EXPECT_TRUE(boardsAre({movedBy(medium, 93, 110), small}));
  EXPECT_TRUE(eventually([this] {
    return placedWidget(display(), 0) == placed(1, "systemMedium", "screen", "bottomLeft", 293, 70);
  })) << placements(display());
}

TEST_F(InputOnX11, WidgetDraggedOntoAnotherLandsBesideIt) {
  startWithTwo();
  dragHalfway(medium.centre(), 500, -250);
  EXPECT_TRUE(boardsAre({movedBy(medium, 500, -250), small}));
  const ScreenArea beside{700, 40 + smallHeight + gap, mediumWidth, mediumHeight};
  EXPECT_TRUE(eventually([&] { return outline() == beside; })) << host().said();
  desktop().input().release();
  EXPECT_TRUE(boardsAre({beside, small}));
}

TEST_F(InputOnX11, WidgetMovedByTheWindowManagerStaysThere) {
  startWithTwo();
  // A window manager that moves a window for a person does so while a button is held. A busy host may hear of the move
  // only after the button was released, so it is moved again until that is kept.
  const auto board = boardAt(medium);
  desktop().input().moveTo({5, 795});
  EXPECT_TRUE(eventually([&] {
    desktop().input().press();
    for (const int x : {140, 133}) desktop().windows().move(board, x, 217);
    EXPECT_TRUE(boardsAre({{133, 217, mediumWidth, mediumHeight}, small}));
    desktop().input().release();
    const auto moved = placed(1, "systemMedium", "screen", "topLeft", 133, 217);
    return eventually([&] { return placedWidget(display(), 0) == moved; }, std::chrono::seconds(3));
  })) << placements(display());
  start();
  EXPECT_TRUE(boardsAre({{133, 217, mediumWidth, mediumHeight}, small}));
}

TEST_F(InputOnX11, DraggedWidgetSnapsBesideAnother) {
  place(display(), {placed(1, "systemMedium", "screen", "topLeft", 20, 25),
                    placed(2, "systemSmall", "screen", "topLeft", 820, 300)});
  start();
  const ScreenArea other{20, 25, mediumWidth, mediumHeight};
  ASSERT_TRUE(boardsAre({other, {820, 300, smallWidth, smallHeight}}));
  const ScreenPoint from{900, 400};
  desktop().input().drag(from, {from.x - 296, from.y - 271});
  EXPECT_TRUE(boardsAre({other, {20 + mediumWidth + gap, 25, smallWidth, smallHeight}}));
}

TEST_F(InputOnX11, EscapeDuringADragPutsTheWidgetBack) {
  startWithTwo();
  const auto before = placements(display());
  const auto from = medium.centre();
  desktop().input().moveTo(from);
  desktop().input().press();
  for (int step = 1; step <= 10; ++step) desktop().input().moveTo({from.x + 10 * step, from.y + 10 * step});
  EXPECT_TRUE(boardsAre({movedBy(medium, 100, 100), small}));
  press(keys::escape);
  EXPECT_TRUE(boardsAre({medium, small}));
  desktop().input().moveTo({from.x + 150, from.y + 150});
  desktop().input().release();
  // The reload is handled after the release, so the boards' places are final then.
  press(keys::f5);
  EXPECT_TRUE(host().says("a new timeline is shown", 2));
  EXPECT_TRUE(boardsAre({medium, small}));
  // Unsaved changes are saved at the end.
  EXPECT_EQ(host().end(), 0);
  EXPECT_EQ(placements(display()), before);
}

TEST_F(InputOnX11, ArrowKeysMoveByAStepAndDigitsChangeTheSize) {
  startWithTwo();
  press(keys::right);
  EXPECT_TRUE(boardsAre({movedBy(medium, 20, 0), small}));
  press(keys::down);
  EXPECT_TRUE(boardsAre({movedBy(medium, 20, 20), small}));
  press(keys::left);
  press(keys::left);
  press(keys::up);
  EXPECT_TRUE(boardsAre({movedBy(medium, -20, 0), small}));
  press('1');
  // It is resized from the nearest corner, the bottom left one.
  EXPECT_TRUE(boardsAre({{180, 300 + mediumHeight - smallHeight, smallWidth, smallHeight}, small}));
  press('3');
  ASSERT_TRUE(eventually([this] { return areas().at(0).height == largeHeight; }));
  press('2');
  ASSERT_TRUE(
      eventually([this] { return areas().at(0).height == mediumHeight && areas().at(0).width == mediumWidth; }));
  EXPECT_TRUE(eventually([this] { return placedWidget(display(), 0)["family"] == "systemMedium"; }));
}

TEST_F(InputOnX11, DeleteRemovesAndOpensTheGalleryWhenNoneIsLeft) {
  startWithTwo();
  press(keys::deletion);
  EXPECT_TRUE(boardsAre({small}));
  focus(small);
  // The reload is handled after all that the removal has led to.
  press(keys::f5);
  ASSERT_TRUE(host().says("a new timeline is shown", 2)) << host().said();
  EXPECT_FALSE(galleryIsOpen());
  press(keys::deletion);
  EXPECT_TRUE(boardsAre({}));
  EXPECT_TRUE(eventually([this] { return placedCount() == 0; })) << placements(display());
  awaitGallery();
  // Without widgets and gallery, nobody could use the program any more.
  press(keys::escape);
  EXPECT_EQ(host().exitStatus(), 0);
}

TEST_F(InputOnX11, RemovedWidgetComesBackByTheKeyByTheButtonInItsPlaceAndByTheMenu) {
  startWithTwo();
  // A key may come before the focus has; while the button is shown, the key does nothing more.
  const auto mediumIsRemoved = [this] {
    return eventually([this] {
      press(keys::deletion);
      return eventually([this] { return areas() == std::vector{small}; }, std::chrono::seconds(3));
    });
  };
  ASSERT_TRUE(eventually([this] { return placedCount() == 2; }));
  ASSERT_TRUE(mediumIsRemoved());
  EXPECT_TRUE(eventually([this] { return placedCount() == 1; })) << "it is removed at once for a host that ends";
  // The keyboard has stayed in its place.
  press('z', {keys::control});
  ASSERT_TRUE(boardsAre({medium, small}));
  EXPECT_TRUE(eventually([this] { return placedWidget(display(), 0)["id"] == 1 && placedCount() == 2; }));

  focus(medium);
  ASSERT_TRUE(mediumIsRemoved());
  // As a hand does: a button is clicked by a pointer that has moved onto it, and again where it was not ready yet.
  EXPECT_TRUE(eventually([&] {
    desktop().input().moveTo({medium.x + 30, medium.y + 30});
    desktop().input().moveTo(medium.centre());
    desktop().input().click(medium.centre());
    return eventually([&] { return areas().size() == 2; }, std::chrono::seconds(3));
  }));
  ASSERT_TRUE(boardsAre({medium, small}));

  focus(medium);
  ASSERT_TRUE(mediumIsRemoved());
  press(keys::enter);
  EXPECT_TRUE(boardsAre({medium, small})) << "the button has the keyboard";

  focus(medium);
  ASSERT_TRUE(mediumIsRemoved());
  desktop().input().click(small.centre(), support::MouseButton::right);
  ASSERT_TRUE(menusAre(1));
  // The mnemonic of "undo removal".
  press('c');
  EXPECT_TRUE(boardsAre({medium, small}));
}

TEST_F(InputOnX11, RemovedWidgetIsGoneForGoodAfterAWhile) {
  startWithTwo();
  press(keys::deletion);
  ASSERT_TRUE(boardsAre({small}));
  const auto hasUndo = [this] {
    return std::ranges::any_of(windows(), [this](support::XWindow window) { return isUndo(window); });
  };
  EXPECT_TRUE(eventually(hasUndo));
  EXPECT_TRUE(eventually([&] { return !hasUndo(); }));
  focus(small);
  press('z', {keys::control});
  press(keys::f5);
  ASSERT_TRUE(host().says("a new timeline is shown", 2)) << host().said();
  EXPECT_EQ(areas(), std::vector{small});
}

TEST_F(InputOnX11, LastWidgetComesBackFromTheGalleryThatItsRemovalOpened) {
  place(display(), nlohmann::json::array({placed(1, "systemMedium", "screen", "topLeft", 200, 300)}));
  start();
  ASSERT_TRUE(boardsAre({medium}));
  focus(medium);
  press(keys::deletion);
  ASSERT_TRUE(boardsAre({}));
  awaitGallery();
  press('z', {keys::control});
  EXPECT_TRUE(boardsAre({medium}));
  press(keys::escape);
  EXPECT_TRUE(galleryCloses());
  EXPECT_TRUE(eventually([this] { return placedCount() == 1; }));
}

TEST_F(InputOnX11, EveryMenuKeyOpensTheMenuAndEscapeClosesIt) {
  startWithTwo();
  const std::vector<std::pair<std::uint32_t, std::vector<std::uint32_t>>> menuKeys{
      {keys::menu, {}}, {keys::f10, {keys::shift}}, {keys::space, {}}};
  for (const auto& [key, modifiers] : menuKeys) {
    openMenu(key, modifiers);
    press(keys::escape);
    EXPECT_TRUE(menusAre(0)) << key;
  }
  desktop().input().click(medium.centre(), support::MouseButton::right);
  EXPECT_TRUE(menusAre(1));
  // The mnemonic of "remove".
  press('u');
  EXPECT_TRUE(boardsAre({small}));
}

TEST_F(InputOnX11, GalleryOpensByKeyAddsByEnterAndClosesByEscape) {
  startWithTwo();
  press(keys::insert);
  awaitGallery();
  press(keys::enter);
  EXPECT_TRUE(eventually([this] { return areas().size() == 3; }));
  EXPECT_TRUE(eventually([this] { return placedCount() == 3; }));
  const auto added = placedWidget(display(), 2);
  EXPECT_EQ(added["family"], "systemMedium");
  EXPECT_EQ(added["kind"], "fake");
  press(keys::escape);
  EXPECT_TRUE(galleryCloses());
  EXPECT_EQ(areas().size(), 3U);
  EXPECT_EQ(extension_.requests("timeline"), 1U);
}

TEST_F(InputOnX11, GalleryCanBeClosedAsAnyWindowWhichEndsAProgramWithoutWidgets) {
  startWithTwo();
  const auto closeGallery = [this] { desktop().windows().close(windowTitled("Galeria widżetów").value()); };
  press(keys::insert);
  awaitGallery();
  closeGallery();
  EXPECT_TRUE(galleryCloses());
  EXPECT_EQ(areas(), (std::vector{medium, small}));

  focus(medium);
  press(keys::deletion);
  ASSERT_TRUE(boardsAre({small}));
  focus(small);
  press(keys::deletion);
  awaitGallery();
  closeGallery();
  EXPECT_EQ(host().exitStatus(), 0);
}

TEST_F(InputOnX11, ControlAndQQuitAndKeysWithoutAMeaningDoNothing) {
  startWithTwo();
  const auto before = placements(display());
  press('x');
  press('k', {keys::control});
  EXPECT_EQ(areas(), (std::vector{medium, small}));
  press('q', {keys::control});
  EXPECT_EQ(host().exitStatus(), 0);
  EXPECT_EQ(placements(display()), before);
}

TEST_F(InputOnX11, TabGoesThroughTheGalleryAsItIsRead) {
  startWithTwo();
  press(keys::insert);
  awaitGallery();
  // The medium size is focused first.
  const std::vector<std::pair<std::vector<std::uint32_t>, std::string>> steps{
      {{}, "systemLarge"}, {{}, "systemSmall"}, {{}, "systemMedium"}, {{keys::shift}, "systemSmall"}};
  for (std::size_t i = 0; i < steps.size(); ++i) {
    press(keys::tab, steps[i].first);
    press(keys::enter);
    ASSERT_TRUE(eventually([&] { return placedCount() == 3 + i; })) << host().said();
    EXPECT_EQ(placedWidget(display(), 2 + i)["family"], steps[i].second) << i;
    awaitGallery();
  }
}

TEST_F(InputOnX11, SecondStartOpensTheGalleryOfTheFirst) {
  startWithTwo();
  const DesktopHost second(display(), settings_);
  EXPECT_EQ(second.exitStatus(), 0) << second.said();
  EXPECT_TRUE(galleryOpens()) << host().said();
  EXPECT_EQ(areas(), (std::vector{medium, small}));
}

}  // namespace
}  // namespace end_to_end
