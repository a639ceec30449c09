// What the menu and its keys change on X11: zoom, appearance, background, lock and the start at login.
#include "desktop/end_to_end/x11_fixture.hpp"
#include "support/displays/accessible_objects.hpp"
#include "support/file_content.hpp"

namespace end_to_end {
namespace {

using nlohmann::json;
using support::Pixel;
using testing::HasSubstr;

class MenuOnX11 : public OnX11 {
 protected:
  void startWithKeyboard() {
    place(display(), json::array({placed(1, "systemMedium", "screen", "topLeft", 200, 300)}));
    start();
    ASSERT_TRUE(boardsAre({board})) << host().said();
    ASSERT_TRUE(host().says("a new timeline is shown")) << host().said();
    focus(board);
  }
  void press(std::uint32_t key, const std::vector<std::uint32_t>& modifiers = {}) {
    desktop().input().key(key, modifiers);
  }
  /// Chooses an item by the mnemonics that lead to it.
  void choose(const std::vector<std::uint32_t>& mnemonics) {
    openMenu();
    for (std::size_t i = 0; i < mnemonics.size(); ++i) {
      ASSERT_TRUE(menusAre(std::ptrdiff_t(i) + 1)) << "menu " << i;
      press(mnemonics[i]);
    }
    ASSERT_TRUE(menusAre(0)) << "the item closes the menu";
  }
  testing::AssertionResult comesToBeKept(const char* key, const json& value) {
    if (eventually([&] { return placements(display()).value(key, json()) == value; })) {
      return testing::AssertionSuccess();
    }
    return testing::AssertionFailure() << placements(display()) << host().said();
  }
  /// In the board, where the fake extension's has no text.
  Pixel background() {
    return desktop().screenshot().at(static_cast<std::uint32_t>(board.centre().x),
                                     static_cast<std::uint32_t>(board.centre().y));
  }

  static constexpr ScreenArea board{200, 300, mediumWidth, mediumHeight};
  /// From the bottom left corner, which is the nearest.
  static constexpr ScreenArea zoomed{200, 300 + mediumHeight - 400, 600, 400};
};

TEST_F(MenuOnX11, ZoomIsThePersonsForEachWidgetAndStays) {
  startWithKeyboard();
  press('=', {keys::control});
  EXPECT_TRUE(boardsAre({zoomed}));
  EXPECT_TRUE(eventually([this] { return placedWidget(display(), 0)["zoom"] == 125; })) << placements(display());
  start();
  ASSERT_TRUE(boardsAre({zoomed}));
  EXPECT_TRUE(comesToShowInside(zoomed, exported({"--scale", "1.25"}), "x11-zoomed"));
  ASSERT_TRUE(host().says("a new timeline is shown")) << host().said();
  focus(zoomed);
  // Again where the key came before the keyboard; it asks for the same each time.
  EXPECT_TRUE(eventually([&] {
    press('0', {keys::control});
    return eventually([&] { return areas() == std::vector{board}; }, std::chrono::seconds(2));
  }));
  press('-', {keys::control});
  press('-', {keys::control});
  EXPECT_TRUE(boardsAre({{200, 300 + mediumHeight - 256, 384, 256}})) << "80 % is the smallest";
}

TEST_F(MenuOnX11, KeysWorkWithShiftForThePlusWithCapsLockAndOnTheKeypad) {
  startWithKeyboard();
  press('=', {keys::control, keys::shift});
  EXPECT_TRUE(boardsAre({zoomed}));
  press('0', {keys::control});
  EXPECT_TRUE(boardsAre({board}));
  press(keys::capsLock);
  press('l', {keys::control});
  EXPECT_TRUE(comesToBeKept("locked", true));
  press('l', {keys::control});
  EXPECT_TRUE(comesToBeKept("locked", false));
  press(keys::numLock);
  press(keys::keypadEnd);
  EXPECT_TRUE(eventually([this] { return placedWidget(display(), 0)["family"] == "systemSmall"; }))
      << placements(display());
}

TEST_F(MenuOnX11, LockedWidgetsCanNeitherBeDraggedNorMovedOrRemovedByKeysAlsoAfterARestart) {
  startWithKeyboard();
  press('l', {keys::control});
  ASSERT_TRUE(comesToBeKept("locked", true));
  for (int starts = 0; starts < 2; ++starts) {
    if (starts > 0) {
      start();
      ASSERT_TRUE(boardsAre({board}));
      ASSERT_TRUE(host().says("a new timeline is shown")) << host().said();
      focus(board);
    }
    const auto from = board.centre();
    desktop().input().drag(from, {from.x + 200, from.y - 100});
    press(keys::right);
    press('3');
    press('=', {keys::control});
    press(keys::deletion);
    // What comes after it has been dealt with shows that nothing came of the others.
    press(keys::f5);
    ASSERT_TRUE(host().says("a new timeline is shown", 2)) << host().said();
    EXPECT_EQ(areas(), std::vector{board});
  }
  choose({'b'});
  ASSERT_TRUE(comesToBeKept("locked", false));
  press(keys::right);
  EXPECT_TRUE(boardsAre({{board.x + gap, board.y, board.width, board.height}}));
}

TEST_F(MenuOnX11, LockedWidgetIsResizedZoomedAndRemovedByTheMenu) {
  startWithKeyboard();
  press('l', {keys::control});
  ASSERT_TRUE(comesToBeKept("locked", true));
  choose({'r', 'm'});
  ASSERT_TRUE(boardsAre({{board.x, board.y + mediumHeight - smallHeight, smallWidth, smallHeight}}));
  choose({'r', 'd'});
  ASSERT_TRUE(boardsAre({{board.x, board.y + mediumHeight - largeHeight, mediumWidth, largeHeight}}));
  // The zooms have no mnemonics. The smallest one is the first.
  openMenu();
  press('p');
  ASSERT_TRUE(menusAre(2));
  press(keys::enter);
  ASSERT_TRUE(menusAre(0));
  EXPECT_TRUE(eventually([this] { return placedWidget(display(), 0)["zoom"] == 80; })) << placements(display());
  choose({'u'});
  EXPECT_TRUE(boardsAre({}));
}

TEST_F(MenuOnX11, OffersAZoomOfTheFileBesideTheUsualOnes) {
  auto widget = placed(1, "systemMedium", "screen", "topLeft", 200, 300);
  widget["zoom"] = 110;
  place(display(), json::array({widget}));
  support::AccessibleObjects objects(desktop().bus());
  start();
  const ScreenArea enlarged{200, 300, mediumWidth * 110 / 100, mediumHeight * 110 / 100};
  ASSERT_TRUE(boardsAre({enlarged}));
  ASSERT_TRUE(host().says("a new timeline is shown")) << host().said();
  focus(enlarged);
  openMenu();
  press('p');
  ASSERT_TRUE(menusAre(2));
  const auto zooms = [&] {
    std::vector<std::string> found;
    for (const auto& each : objects.of(host().id())) {
      if (each.name.ends_with(" %")) found.push_back(each.name);
    }
    return found;
  };
  EXPECT_TRUE(eventually([&] {
    return zooms() == std::vector<std::string>{"80 %", "100 %", "110 %", "125 %", "150 %"};
  })) << testing::PrintToString(zooms());
}

TEST_F(MenuOnX11, RefreshesAddsAndQuits) {
  startWithKeyboard();
  // Until the process of the first load has ended, the item is not to be chosen.
  ASSERT_TRUE(eventually([this] {
    openMenu();
    press('o');
    if (eventually([this] { return openMenus() == 0; }, std::chrono::seconds(2))) return true;
    press(keys::escape);
    menusAre(0);
    return false;
  })) << host().said();
  EXPECT_TRUE(host().says("a new timeline is shown", 2)) << host().said();
  choose({'d'});
  ASSERT_TRUE(eventually([this] { return galleryIsOpen(); })) << host().said();
  // It covers the board.
  desktop().windows().close(windowTitled("Galeria widżetów").value());
  ASSERT_TRUE(eventually([this] { return !galleryIsOpen(); }));
  focus(board);
  choose({'z'});
  EXPECT_EQ(host().exitStatus(), 0);
  EXPECT_EQ(areas().size(), 0U);
}

TEST_F(MenuOnX11, TellsTheLastAndTheNextRefresh) {
  support::AccessibleObjects objects(desktop().bus());
  startWithKeyboard();
  const std::string time = "([0-9]{4}-[0-9]{2}-[0-9]{2} )?[0-9]{2}:[0-9]{2}";
  const auto last = testing::MatchesRegex("Ostatnie odświeżenie: " + time);
  const auto next = testing::MatchesRegex("Następne odświeżenie: " + time);
  const auto names = [&] {
    std::vector<std::string> found;
    for (const auto& each : objects.of(host().id())) found.push_back(each.name);
    return found;
  };
  const auto areTold = [&] {
    return testing::Value(names(), testing::AllOf(testing::Contains(last), testing::Contains(next)));
  };
  // Until the process of the first load has ended, no next refresh is known.
  EXPECT_TRUE(eventually([&] {
    openMenu();
    if (eventually(areTold, std::chrono::seconds(2))) return true;
    press(keys::escape);
    menusAre(0);
    return false;
  })) << testing::PrintToString(names());
}

TEST_F(MenuOnX11, ChosenAppearanceGoesBeforeTheDesktopsAndStays) {
  startWithKeyboard();
  ASSERT_TRUE(comesToShowInside(board, exported(), "x11-menu-light"));
  choose({'w', 'c'});
  EXPECT_TRUE(comesToShowInside(board, exported({"--appearance", "dark"}), "x11-menu-dark"));
  EXPECT_TRUE(comesToBeKept("appearance", "dark"));
  start();
  EXPECT_TRUE(comesToShowInside(board, exported({"--appearance", "dark"}), "x11-menu-dark-again"));
  ASSERT_TRUE(host().says("a new timeline is shown")) << host().said();
  focus(board);
  choose({'w', 's'});
  EXPECT_TRUE(comesToShowInside(board, exported(), "x11-menu-system"));
  EXPECT_TRUE(comesToBeKept("appearance", "system"));
}

TEST_F(MenuOnX11, DesktopIsSeenThroughATranslucentBoardAndThroughOneWithoutBackground) {
  startDesktop({.compositing = true});
  startWithKeyboard();
  const Pixel white{255, 255, 255, 255};
  ASSERT_TRUE(eventually([&] { return background() == white; }));
  // Looked at each time: the compositing manager may be late to paint it.
  const auto beside = [this] { return desktop().screenshot().at(100, 100); };
  choose({'w', 'r'});
  const auto isMixed = [](int seen, int below) {
    return std::abs(seen - static_cast<int>(0.75 * 255 + 0.25 * below)) <= 2;
  };
  EXPECT_TRUE(eventually([&] {
    const Pixel seen = background();
    const Pixel below = beside();
    return isMixed(seen.red, below.red) && isMixed(seen.green, below.green) && isMixed(seen.blue, below.blue);
  })) << int(background().red);
  EXPECT_TRUE(comesToBeKept("background", "translucent"));
  choose({'w', 'b'});
  EXPECT_TRUE(eventually([&] { return background() == beside(); }));
  EXPECT_TRUE(comesToBeKept("background", "none"));
  // Without a compositing manager a board is solid.
  desktop().endCompositing();
  EXPECT_TRUE(eventually([&] { return background() == white; }));
}

TEST_F(MenuOnX11, TooltipIsShownOverTheHeaderAlone) {
  startWithKeyboard();
  desktop().input().moveTo({board.x + 60, board.y + 20});
  desktop().input().moveTo({board.x + 62, board.y + 20});
  EXPECT_TRUE(menusAre(1));
  desktop().input().moveTo(board.centre());
  EXPECT_TRUE(menusAre(0));
}

TEST_F(MenuOnX11, WidgetsAreStartedAtLoginOnceTheItemIsChosenAndNoMoreOnceItIsChosenAgain) {
  startWithKeyboard();
  const std::string entry = hostEnvironment(display()).at("XDG_CONFIG_HOME") + "/autostart/vamba-desktop.desktop";
  choose({'l'});
  ASSERT_TRUE(eventually([&] { return std::filesystem::exists(entry); })) << host().said();
  EXPECT_THAT(support::contentOf(entry), HasSubstr(std::string("\nTryExec=") + VAMBA_HOST + "\n"));
  choose({'l'});
  EXPECT_TRUE(eventually([&] { return !std::filesystem::exists(entry); })) << host().said();
}

}  // namespace
}  // namespace end_to_end
