// Using widgets by mouse and keyboard on a compositor with layer shell.
#include "desktop/end_to_end/wayland_fixture.hpp"
#include "displays/sample_window.hpp"
#include "support/displays/steps.hpp"

namespace end_to_end {
namespace {

using support::MouseButton;

class InputOnWayland : public OnSway {
 protected:
  /// Two widgets away from the edges; the medium one is focused.
  void startWithTwo() {
    place(display(), {keptMedium, keptSmall});
    start();
    ASSERT_TRUE(comesToShow(screenWith({medium, small}), "two"));
    ASSERT_TRUE(host().says("a new timeline is shown")) << host().said();
    desktop().input().click(middle);
  }
  /// Two widgets that a second start with --focus has brought to the front. The small one is the first and has the
  /// keyboard.
  void startInFront() {
    place(display(), {keptMedium, keptSmall});
    start();
    ASSERT_TRUE(host().says("a new timeline is shown")) << host().said();
    settings_.arguments = {"desktop", "--focus"};
    startAgain();
    ASSERT_TRUE(hasRing(small.place)) << host().said();
  }
  /// Whether a board comes to have a focus ring, which is blue, two points within the edge.
  bool hasRing(ScreenPoint board) {
    return eventually([&] {
      const auto pixel =
          desktop().screenshot().at(static_cast<unsigned>(board.x + 2), static_cast<unsigned>(board.y + 75));
      return pixel.blue > pixel.red + 60;
    });
  }
  bool galleryIsOpen() { return !desktop().windowsOf(host().id()).empty(); }

  const ShownBoard medium{"medium", {200, 300}};
  const ShownBoard small{"small", {820, 40}};
  static constexpr ScreenPoint middle{440, 420};
  static constexpr ScreenPoint middleOfSmall{940, 160};
  const nlohmann::json keptMedium = placedOn("HEADLESS-1", 1, "systemMedium", "topLeft", 200, 300);
  const nlohmann::json keptSmall = placedOn("HEADLESS-1", 2, "systemSmall", "topRight", 230, 40);
};

TEST_F(InputOnWayland, DraggedBoardDimsBelowAnImageThatFollowsTheHandAndLandsWhereTheOutlineIs) {
  startWithTwo();
  const ScreenPoint to{middle.x + 110, middle.y + 110};
  const ShownBoard dropped{"medium", {320, 420}};
  desktop().input().moveTo(middle);
  desktop().input().press();
  support::moveInSteps(desktop().input(), middle, to);
  auto dragging = screenWith({small});
  constexpr double dimmed = 0.4;
  paint(dragging, faded(exported("medium"), dimmed), medium.place);
  paint(dragging, exported("medium"), {medium.place.x + 110, medium.place.y + 110});
  EXPECT_TRUE(comesToShowBesideAnOutline(dragging, "dragging"));
  // The line of the outline, here to the right of the image.
  const auto outline = desktop().screenshot().at(320 + mediumWidth - 2, 500);
  EXPECT_GT(outline.blue, outline.red + 60);
  EXPECT_EQ(kept(), keptMedium);
  desktop().input().release();
  EXPECT_TRUE(comesToShow(screenWith({dropped, small}), "dropped"));
  EXPECT_TRUE(comesToBeKept({placedOn("HEADLESS-1", 1, "systemMedium", "bottomLeft", 320, 60), keptSmall}));
  start();
  EXPECT_TRUE(comesToShow(screenWith({dropped, small}), "dropped-after-restart"));
}

TEST_F(InputOnWayland, EscapeTakesADragBack) {
  startWithTwo();
  desktop().input().moveTo(middle);
  desktop().input().press();
  support::moveInSteps(desktop().input(), middle, {middle.x + 200, middle.y});
  const auto before = screenWith({medium, small});
  ASSERT_TRUE(eventually([&] { return support::differingPixels(desktop().screenshot(), before, 4) > 10'000; }));
  press(keys::escape);
  EXPECT_TRUE(boardsAre({medium, small}, "drag-taken-back"));
  desktop().input().release();
  // The reload is handled after the release, so the boards' places are final then.
  press(keys::f5);
  ASSERT_TRUE(host().says("a new timeline is shown", 2)) << host().said();
  EXPECT_TRUE(boardsAre({medium, small}, "released-after-escape"));
  // Unsaved changes are saved at the end.
  EXPECT_EQ(host().end(), 0);
  EXPECT_EQ(kept(), keptMedium);
}

TEST_F(InputOnWayland, ArrowKeysMoveByAStepAndDigitsChangeTheSize) {
  startWithTwo();
  press(keys::right);
  EXPECT_TRUE(boardsAre({{"medium", {220, 300}}, small}, "right"));
  press(keys::down);
  EXPECT_TRUE(boardsAre({{"medium", {220, 320}}, small}, "down"));
  press(keys::left);
  press(keys::left);
  press(keys::up);
  EXPECT_TRUE(boardsAre({{"medium", {180, 300}}, small}, "left-and-up"));
  press('1');
  EXPECT_TRUE(boardsAre({{"small", {180, 300 + mediumHeight - smallHeight}}, small}, "digit-1"));
  press('3');
  EXPECT_TRUE(eventually([this] { return kept()["family"] == "systemLarge"; })) << kept();
  press('2');
  EXPECT_TRUE(eventually([this] { return kept()["family"] == "systemMedium"; })) << kept();
}

TEST_F(InputOnWayland, KeysZoomAndLock) {
  startWithTwo();
  desktop().input().key('-', {keys::control});
  auto zoomed = screenWith({small});
  paint(zoomed, exported("medium", {"--scale", "0.8"}), {200, 300 + mediumHeight - 256});
  ASSERT_TRUE(comesToShowWithAFocusRing(zoomed, "zoomed"));
  desktop().input().key('l', {keys::control});
  ASSERT_TRUE(eventually([this] { return placements(display()).value("locked", false); })) << placements(display());
  const auto locked = placements(display());
  EXPECT_EQ(kept()["zoom"], 80);
  desktop().input().drag(middle, {middle.x + 200, middle.y});
  press(keys::right);
  press(keys::f5);
  ASSERT_TRUE(host().says("a new timeline is shown", 2)) << host().said();
  EXPECT_TRUE(comesToShowWithAFocusRing(zoomed, "locked"));
  EXPECT_EQ(host().end(), 0);
  EXPECT_EQ(placements(display()), locked);
}

TEST_F(InputOnWayland, DeleteRemovesAndOpensTheGalleryWhenNoneIsLeft) {
  startWithTwo();
  press(keys::deletion);
  EXPECT_TRUE(boardsAre({small}, "one-left"));
  desktop().input().click(middleOfSmall);
  // The reload is handled after all that the removal has led to.
  press(keys::f5);
  ASSERT_TRUE(host().says("a new timeline is shown", 2)) << host().said();
  EXPECT_FALSE(galleryIsOpen());
  press(keys::deletion);
  EXPECT_TRUE(eventually([this] { return galleryIsOpen(); })) << host().said();
  EXPECT_TRUE(comesToBeKept({}));
  // Without widgets and gallery, nobody could use the program any more.
  press(keys::escape);
  EXPECT_EQ(host().exitStatus(), 0);
}

TEST_F(InputOnWayland, MenuOpensByRightClickAndByKey) {
  startWithTwo();
  const auto boards = screenWith({medium, small});
  // A menu has many more pixels than a focus ring.
  const auto menuIsOpen = [&] { return support::differingPixels(desktop().screenshot(), boards, 40) > 8000; };
  for (const auto key : {keys::menu, keys::space}) {
    press(key);
    EXPECT_TRUE(eventually(menuIsOpen)) << key;
    press(keys::escape);
    EXPECT_TRUE(boardsAre({medium, small}, "menu-closed"));
  }
  desktop().input().click(middle, MouseButton::right);
  EXPECT_TRUE(eventually(menuIsOpen));
  // The mnemonic of "remove".
  press('u');
  EXPECT_TRUE(boardsAre({small}, "removed-by-menu"));
}

TEST_F(InputOnWayland, StartWithoutACommandShowsTheWidgets) {
  settings_.arguments = {};
  start();
  EXPECT_TRUE(comesToShow(screenWith({{"medium", firstPlace}}), "no-command"));
}

TEST_F(InputOnWayland, SecondStartOpensTheGalleryOfTheFirst) {
  startWithTwo();
  EXPECT_FALSE(galleryIsOpen());
  startAgain();
  EXPECT_TRUE(eventually([this] { return galleryIsOpen(); })) << host().said();
  // Enter adds the focused preview's widget.
  press(keys::enter);
  EXPECT_TRUE(eventually([this] { return !kept(2).is_null(); }));
  EXPECT_EQ(kept(2)["family"], "systemMedium");
  EXPECT_EQ(kept(2)["kind"], "fake");
  press(keys::escape);
  EXPECT_TRUE(eventually([this] { return !galleryIsOpen(); }));
  EXPECT_TRUE(boardsAre({medium, small, {"medium", {780, 220}}}, "added"));
}

TEST_F(InputOnWayland, FocusBringsTheBoardsToTheFrontTabGoesRoundAndEscapeSendsThemBack) {
  place(display(), {keptMedium, keptSmall});
  start();
  ASSERT_TRUE(comesToShow(screenWith({medium, small}), "two"));
  ASSERT_TRUE(host().says("a new timeline is shown")) << host().said();
  auto window = sampleWindow(display(), {"Red", "#ff0000"});
  auto covered = screenWith({});
  std::ranges::fill(covered.pixels, support::Pixel{255, 0, 0, 255});
  ASSERT_TRUE(comesToShow(covered, "covered"));

  settings_.arguments = {"desktop", "--focus"};
  startAgain();
  const auto inFront = [&](const std::vector<ShownBoard>& boards, const std::string& name) {
    auto expected = covered;
    for (const auto& board : boards) paint(expected, exported(board.family), board.place);
    return comesToShowWithAFocusRing(expected, name);
  };
  EXPECT_TRUE(inFront({medium, small}, "in-front")) << host().said();
  // An arrow key shows which board has the focus. The small one is the first in reading order.
  EXPECT_TRUE(hasRing(small.place));
  press(keys::left);
  EXPECT_TRUE(inFront({medium, {"small", {800, 40}}}, "first-moved"));
  press(keys::tab);
  EXPECT_TRUE(hasRing(medium.place));
  press(keys::left);
  EXPECT_TRUE(inFront({{"medium", {180, 300}}, {"small", {800, 40}}}, "second-moved"));
  press(keys::tab);
  EXPECT_TRUE(hasRing({800, 40}));
  press(keys::right);
  EXPECT_TRUE(inFront({{"medium", {180, 300}}, small}, "first-moved-back"));
  press(keys::escape);
  EXPECT_TRUE(comesToShow(covered, "covered-again"));
  press(keys::f5);
  EXPECT_EQ(window.firstLine(), "key F5");
}

TEST_F(InputOnWayland, GalleryGetsTheKeyboardOfABoardInFront) {
  startInFront();
  press(keys::insert);
  ASSERT_TRUE(eventually([this] { return galleryIsOpen(); })) << host().said();
  // Enter adds the focused preview's widget.
  press(keys::enter);
  EXPECT_TRUE(eventually([this] { return !kept(2).is_null(); })) << host().said();
}

TEST_F(InputOnWayland, EscapeFromARemovedBoardInFrontGivesTheKeyboardBack) {
  auto window = sampleWindow(display(), {"Red", "#ff0000"});
  startInFront();
  press(keys::deletion);
  ASSERT_TRUE(eventually([this] { return kept(1).is_null(); })) << kept(1);
  press(keys::escape);
  auto covered = screenWith({});
  std::ranges::fill(covered.pixels, support::Pixel{255, 0, 0, 255});
  EXPECT_TRUE(comesToShow(covered, "covered-after-removal"));
  press(keys::f5);
  EXPECT_EQ(window.firstLine(), "key F5");
}

}  // namespace
}  // namespace end_to_end
