// Boards of a real day on X11: compared with the exporter's pictures, following the desktop's appearance, and read by a
// screen reader.
#include "desktop/end_to_end/x11_service_fixture.hpp"
#include "support/displays/accessible_objects.hpp"
#include "support/displays/stand_in_portal.hpp"

namespace end_to_end {
namespace {

using support::ColourScheme;
using support::Pixel;
using support::StandInPortal;
using testing::Contains;
using testing::HasSubstr;

/// A day that does not change: without meetings, which would pass, and with nothing due today.
class PictureOnX11 : public ServiceOnX11 {
 protected:
  PictureOnX11() { answerTasks("Oddać rozliczenie"); }

  void answerTasks(const std::string& title) { service_.answer(tasksTarget, {.body = taskList(title)}); }
  static std::string taskList(const std::string& title) {
    return json::array({serverTask(41, title, "2020-01-05"), serverTask(42, "Sprawdzić korektę", "2020-01-06")}).dump();
  }

  /// Expects the background at the four outermost pixels.
  void expectRoundCorners(const ScreenArea& area) {
    const auto screen = desktop().screenshot();
    for (const int x : {area.x, area.x + area.width - 1}) {
      for (const int y : {area.y, area.y + area.height - 1}) {
        const auto right = static_cast<std::uint32_t>(x);
        const auto down = static_cast<std::uint32_t>(y);
        EXPECT_EQ(screen.at(right, down), background_.at(right, down)) << x << " " << y;
      }
    }
  }
};

TEST_F(PictureOnX11, ScreenShowsWhatTheExporterDrawsInEverySize) {
  paintBackground();
  keepBackground();
  place(display(),
        {placed(1, "systemSmall", "screen", "topLeft", 20, 20), placed(2, "systemMedium", "screen", "topLeft", 280, 20),
         placed(3, "systemLarge", "screen", "topRight", 20, 20)});
  start();
  const std::vector<std::pair<std::string, ScreenArea>> sizes{{"small", {20, 20, smallWidth, smallHeight}},
                                                              {"medium", {280, 20, mediumWidth, mediumHeight}},
                                                              {"large", {780, 20, mediumWidth, largeHeight}}};
  for (const auto& [family, area] : sizes) {
    const auto picture = expectedAt(area, exported({"--family", family}));
    EXPECT_TRUE(comesToShow(area, picture, "x11-" + family)) << host().said();
    expectRoundCorners(area);
  }
}

TEST_F(PictureOnX11, ScreenShowsTheSameWithACompositingManagerThatComesAndGoes) {
  paintBackground();
  const auto corner = [this] { return desktop().screenshot().at(0, 0); };
  const Pixel painted = corner();
  // The manager paints a background of its own.
  desktop().startCompositing();
  ASSERT_TRUE(eventually([&] { return corner() != painted; }));
  keepBackground();
  start();
  const auto picture = exported();
  EXPECT_TRUE(comesToShow(firstPlace(), expectedAt(firstPlace(), picture), "x11-composed"));
  expectRoundCorners(firstPlace());

  desktop().endCompositing();
  ASSERT_TRUE(eventually([&] { return corner() == painted; }));
  std::ranges::fill(background_.pixels, painted);
  EXPECT_TRUE(comesToShow(firstPlace(), expectedAt(firstPlace(), picture), "x11-no-longer-composed"));
  expectRoundCorners(firstPlace());
}

TEST_F(PictureOnX11, PlaceholderIsShownUntilTheFirstTimelineComes) {
  paintBackground();
  keepBackground();
  const auto answer = std::make_shared<support::Event>();
  service_.script(tasksTarget, {support::Await{answer},
                                support::Send{support::HttpAnswer{.body = taskList("Oddać rozliczenie")}.bytes()}});
  start();
  EXPECT_TRUE(
      comesToShow(firstPlace(), expectedAt(firstPlace(), exported({"--entry", "placeholder"})), "x11-placeholder"));
  answer->set();
  EXPECT_TRUE(comesToShow(firstPlace(), expectedAt(firstPlace(), exported()), "x11-after-placeholder"));
}

TEST_F(PictureOnX11, DarkAndAccentOfThePortalAreFollowedAtRunTime) {
  service_.answer(inboxTarget, {.body = json{{"zadania", {serverTask(50, "Do decyzji", std::nullopt)}}}.dump()});
  paintBackground();
  keepBackground();
  StandInPortal portal(desktop().bus(), {.appearance = {.colourScheme = ColourScheme::light}});
  start();
  const auto light = expectedAt(firstPlace(), exported());
  EXPECT_TRUE(comesToShow(firstPlace(), light, "x11-light"));
  portal.change({.colourScheme = ColourScheme::dark});
  EXPECT_TRUE(comesToShow(firstPlace(), expectedAt(firstPlace(), exported({"--appearance", "dark"})), "x11-dark"));
  portal.change({.colourScheme = ColourScheme::light});
  EXPECT_TRUE(comesToShow(firstPlace(), light, "x11-light-again"));

  // Only the badge is pale purple.
  const auto tinted = [&] {
    return std::ranges::count_if(shown(firstPlace()).pixels, [](const Pixel& pixel) {
      return std::abs(pixel.red - pixel.blue) < 8 && pixel.red - pixel.green > 10;
    });
  };
  EXPECT_EQ(tinted(), 0);
  portal.change(
      {.colourScheme = ColourScheme::light, .accentColour = support::AccentColour{0x80 / 255.0, 0, 0x80 / 255.0}});
  EXPECT_TRUE(eventually([&] { return tinted() > 200; })) << host().said();
}

TEST_F(PictureOnX11, ScreenReaderIsToldTheBoardInItsOrderAndWhatChanges) {
  support::AccessibleObjects objects(desktop().bus());
  start();
  const auto board = [&]() -> support::AccessibleObject {
    const auto all = objects.of(host().id());
    return all.size() > 1 ? all[1] : support::AccessibleObject{};
  };
  ASSERT_TRUE(eventually([&] { return board().description.find("Oddać rozliczenie") != std::string::npos; }))
      << board().description << host().said();
  EXPECT_EQ(board().role, "panel");
  EXPECT_EQ(board().name, "Vamba — spotkania i zadania");
  const auto description = board().description;
  EXPECT_THAT(description, HasSubstr("#41, Oddać rozliczenie, Pracownia, zaległe\n"));
  EXPECT_LT(description.find("Oddać rozliczenie"), description.find("Sprawdzić korektę")) << description;
  EXPECT_THAT(description, HasSubstr("Sprawdzić korektę"));

  answerTasks("Zwrócić książki");
  focus(firstPlace());
  desktop().input().key(keys::f5);
  EXPECT_TRUE(eventually([&] { return board().description.find("Zwrócić książki") != std::string::npos; }));
  EXPECT_THAT(objects.changes(),
              Contains(testing::AllOf(HasSubstr("accessible-description: "), HasSubstr("Zwrócić książki"))));
}

}  // namespace
}  // namespace end_to_end
