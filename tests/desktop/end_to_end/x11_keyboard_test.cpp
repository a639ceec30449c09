// Using the boards by keyboard alone on X11, from a shortcut on, and what a screen reader can do with them.
#include "desktop/end_to_end/x11_service_fixture.hpp"
#include "displays/sample_window.hpp"
#include "support/displays/accessible_objects.hpp"

namespace end_to_end {
namespace {

using support::AccessibleObject;
using support::Pixel;
using testing::ElementsAre;

class KeyboardOnX11 : public OnX11 {
 protected:
  /// Two boards below a maximized window that has the focus. The small one is the first in reading order.
  void startBelowAWindow() {
    place(display(), {placed(1, "systemMedium", "screen", "topLeft", 200, 300),
                      placed(2, "systemSmall", "screen", "topLeft", 820, 40)});
    start();
    ASSERT_TRUE(boardsAre({medium, small}));
    ASSERT_TRUE(host().says("a new timeline is shown")) << host().said();
    window_.emplace(sampleWindow(display(), {"Window", "#ff0000", "maximized"}));
    ASSERT_TRUE(boardsAreCovered());
    desktop().input().click({100, 100});
    ASSERT_EQ(window_->firstLine(), "press 1 100 100");
    ASSERT_EQ(window_->firstLine(), "release 1 100 100");
  }
  void startAgainWithFocus() {
    auto settings = settings_;
    settings.arguments = {"desktop", "--focus"};
    const DesktopHost second(display(), settings);
    EXPECT_EQ(second.exitStatus(), 0) << second.said();
  }
  Pixel middleOf(const ScreenArea& area) {
    const auto centre = area.centre();
    return desktop().screenshot().at(static_cast<unsigned>(centre.x), static_cast<unsigned>(centre.y));
  }
  /// Removes the first board, which was just focused.
  void removeTheFirst() {
    ASSERT_TRUE(focusComesTo(small));
    desktop().input().key(keys::deletion);
    ASSERT_TRUE(boardsAre({medium}));
    ASSERT_TRUE(eventually([this] { return undoWindow().has_value(); }));
  }
  std::optional<support::XWindow> undoWindow() { return windowTitled("Cofnij usunięcie"); }
  bool boardsAreCovered() {
    return eventually([this] { return middleOf(medium) == red && middleOf(small) == red; });
  }
  bool boardsAreInFront() {
    return eventually([this] { return middleOf(medium) != red && middleOf(small) != red; });
  }

  static constexpr Pixel red{255, 0, 0, 255};
  static constexpr ScreenArea medium{200, 300, mediumWidth, mediumHeight};
  static constexpr ScreenArea small{820, 40, smallWidth, smallHeight};
  std::optional<support::ChildProcess> window_;
};

ScreenArea movedRight(ScreenArea area, int by) {
  area.x += by;
  return area;
}

TEST_F(KeyboardOnX11, FocusBringsTheBoardsToTheFrontTabGoesRoundAndEscapeSendsThemBack) {
  startBelowAWindow();
  startAgainWithFocus();
  EXPECT_TRUE(boardsAreInFront()) << host().said();
  EXPECT_FALSE(galleryIsOpen());
  EXPECT_TRUE(focusComesTo(small));
  // An arrow key shows which board has the focus.
  const auto arrowMoves = [this](std::uint32_t key, const std::vector<ScreenArea>& to) {
    desktop().input().key(key);
    return boardsAre(to);
  };
  EXPECT_TRUE(arrowMoves(keys::right, {medium, movedRight(small, 20)}));
  desktop().input().key(keys::tab);
  EXPECT_TRUE(focusComesTo(medium));
  EXPECT_TRUE(arrowMoves(keys::right, {movedRight(medium, 20), movedRight(small, 20)}));
  desktop().input().key(keys::tab);
  EXPECT_TRUE(focusComesTo(movedRight(small, 20)));
  EXPECT_TRUE(arrowMoves(keys::left, {movedRight(medium, 20), small}));
  desktop().input().key(keys::tab, {keys::shift});
  EXPECT_TRUE(focusComesTo(movedRight(medium, 20)));
  EXPECT_TRUE(arrowMoves(keys::left, {medium, small}));

  desktop().input().key(keys::escape);
  EXPECT_TRUE(boardsAreCovered()) << host().said();
  // The window has the focus again.
  EXPECT_TRUE(eventually([this] {
    return desktop().windows().numbers(desktop().windows().root(), "_NET_ACTIVE_WINDOW") ==
           std::vector{desktop().windows().windowsOf(window_->id()).at(0)};
  })) << desktop().log();
  desktop().input().key(keys::f5);
  EXPECT_EQ(window_->firstLine(), "key F5");
}

TEST_F(KeyboardOnX11, BoardsGoBackWhenAnotherWindowGetsTheFocus) {
  startBelowAWindow();
  startAgainWithFocus();
  EXPECT_TRUE(boardsAreInFront()) << host().said();
  EXPECT_TRUE(focusComesTo(small));
  desktop().input().click({100, 100});
  EXPECT_TRUE(boardsAreCovered());
}

TEST_F(KeyboardOnX11, EscapeFromARemovedBoardSendsItBackWithTheOthers) {
  startBelowAWindow();
  startAgainWithFocus();
  removeTheFirst();
  desktop().input().key(keys::escape);
  EXPECT_TRUE(boardsAreCovered()) << host().said();
  startAgainWithFocus();
  EXPECT_TRUE(boardsAreInFront()) << host().said();
}

TEST_F(KeyboardOnX11, TabFromARemovedBoardFocusesTheFirstOfTheOthers) {
  startBelowAWindow();
  startAgainWithFocus();
  removeTheFirst();
  desktop().input().key(keys::tab);
  EXPECT_TRUE(focusComesTo(medium));
}

TEST_F(KeyboardOnX11, RemovedBoardGoesBackWithTheOthersWhenAnotherWindowGetsTheFocus) {
  startBelowAWindow();
  startAgainWithFocus();
  removeTheFirst();
  desktop().input().click({100, 100});
  EXPECT_TRUE(boardsAreCovered()) << host().said();
}

TEST_F(KeyboardOnX11, BoardsGoBackWhenTheFocusedRemovedBoardIsGoneForGood) {
  startBelowAWindow();
  startAgainWithFocus();
  removeTheFirst();
  EXPECT_TRUE(eventually([this] { return !undoWindow(); }));
  EXPECT_TRUE(boardsAreCovered()) << host().said();
}

TEST_F(KeyboardOnX11, StartWithFocusFocusesTheFirstBoard) {
  place(display(), {placed(1, "systemMedium", "screen", "topLeft", 200, 300),
                    placed(2, "systemSmall", "screen", "topLeft", 820, 40)});
  settings_.arguments = {"desktop", "--verbose", "--focus"};
  start();
  EXPECT_TRUE(boardsAre({medium, small}));
  EXPECT_TRUE(focusComesTo(small)) << host().said();
}

TEST_F(KeyboardOnX11, FocusRingIsDrawnAfterAKeyAndNotAfterAClick) {
  start();
  ASSERT_TRUE(boardsAre({firstPlace()}));
  ASSERT_TRUE(host().says("a new timeline is shown")) << host().said();
  const auto ringColours = [this] {
    // The ring is two points wide within the edge; elsewhere there is background or the hairline of the edge.
    const auto screen = desktop().screenshot();
    const int middle = firstPlace().centre().y;
    std::size_t blue = 0;
    for (int x = firstPlace().x; x < firstPlace().x + 8; ++x) {
      const auto pixel = screen.at(static_cast<unsigned>(x), static_cast<unsigned>(middle));
      if (pixel.blue > pixel.red + 60) ++blue;
    }
    return blue;
  };
  focus(firstPlace());
  EXPECT_EQ(ringColours(), 0U);
  desktop().input().key(keys::tab);
  EXPECT_TRUE(eventually([&] { return ringColours() >= 2; }));
  desktop().input().press();
  EXPECT_TRUE(eventually([&] { return ringColours() == 0; }));
  desktop().input().moveTo({10, 790});
  desktop().input().key(keys::escape);
  desktop().input().release();
}

class ScreenReaderOnX11 : public ServiceOnX11 {
 protected:
  std::vector<AccessibleObject> objectsOf(support::AccessibleObjects& objects) { return objects.of(host().id()); }
};

TEST_F(ScreenReaderOnX11, BoardIsFocusableWithActionsAndItsRowsAreChildren) {
  service_.answer(tasksTarget, {.body = json::array({serverTask(41, "Oddać rozliczenie", "2020-01-05"),
                                                     serverTask(42, "Sprawdzić korektę", "2020-01-06")})
                                            .dump()});
  support::AccessibleObjects objects(desktop().bus());
  start();
  const auto namesAt = [&](int depth) {
    std::vector<std::string> names;
    for (const auto& each : objectsOf(objects)) {
      if (each.depth == depth) names.push_back(each.name);
    }
    return names;
  };
  const std::vector<std::string> rows{"Vamba", "Brak umówionych spotkań", "#41, Oddać rozliczenie, Pracownia, zaległe",
                                      "#42, Sprawdzić korektę, Pracownia, zaległe"};
  ASSERT_TRUE(eventually([&] { return namesAt(2) == rows; })) << testing::PrintToString(namesAt(2)) << host().said();
  focus(firstPlace());
  ASSERT_TRUE(eventually([&] { return objectsOf(objects).at(1).focused; }));
  const auto board = objectsOf(objects).at(1);
  EXPECT_EQ(board.role, "panel");
  EXPECT_EQ(board.name, "Vamba — spotkania i zadania");
  EXPECT_EQ(board.description, rows[0] + "\n" + rows[1] + "\n" + rows[2] + "\n" + rows[3]);
  EXPECT_TRUE(board.focusable);
  EXPECT_THAT(board.actions, ElementsAre("open", "menu"));
  EXPECT_THAT(board.actionNames, ElementsAre("Otwórz Vambę", "Pokaż menu"));
  EXPECT_EQ(objectsOf(objects).at(2).role, "label");

  // They are read in the order in which they are seen, each within the board.
  int bottom = firstPlace().y;
  for (const auto& row : rows) {
    const auto area = objects.areaOf(host().id(), row);
    EXPECT_GE(area.y, bottom) << row;
    EXPECT_GT(area.height, 0) << row;
    bottom = area.y + area.height;
  }
  EXPECT_LE(bottom, firstPlace().y + firstPlace().height);

  // Fewer rows and another text.
  service_.answer(tasksTarget, {.body = json::array({serverTask(42, "Sprawdzić korektę", "2020-01-06")}).dump()});
  desktop().input().key(keys::f5);
  EXPECT_TRUE(eventually([&] { return namesAt(2) == std::vector<std::string>{rows[0], rows[1], rows[3]}; }))
      << testing::PrintToString(namesAt(2));

  EXPECT_TRUE(objects.act(host().id(), board.name, "menu"));
  EXPECT_TRUE(menusAre(1));
}

TEST_F(ScreenReaderOnX11, RemovedBoardLeavesTheTree) {
  place(display(), {placed(1, "systemMedium", "screen", "topLeft", 200, 300),
                    placed(2, "systemSmall", "screen", "topLeft", 820, 40)});
  support::AccessibleObjects objects(desktop().bus());
  start();
  const auto boardCount = [&] {
    const auto all = objectsOf(objects);
    return std::ranges::count(all, "panel", &AccessibleObject::role);
  };
  ASSERT_TRUE(boardsAre({{200, 300, mediumWidth, mediumHeight}, {820, 40, smallWidth, smallHeight}}));
  ASSERT_TRUE(eventually([&] { return boardCount() == 2; })) << host().said();
  focus({820, 40, smallWidth, smallHeight});
  desktop().input().key(keys::deletion);
  EXPECT_TRUE(eventually([&] { return boardCount() == 1; }));
  // What the toolkit says of objects that are used after they are gone.
  EXPECT_THAT(host().said(), testing::Not(testing::HasSubstr("CRITICAL")));
}

}  // namespace
}  // namespace end_to_end
