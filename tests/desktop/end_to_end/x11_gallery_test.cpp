// The gallery on X11: its size, its tiles, and what it says of a widget that was added.
#include "desktop/end_to_end/x11_fixture.hpp"
#include "support/displays/accessible_objects.hpp"

namespace end_to_end {
namespace {

class GalleryOnX11 : public OnX11 {
 protected:
  void openGallery() {
    start();
    ASSERT_TRUE(host().says("a new timeline is shown")) << host().said();
    const DesktopHost second(display(), settings_);
    ASSERT_EQ(second.exitStatus(), 0) << second.said();
    ASSERT_TRUE(eventually([this] { return galleryIsOpen(); })) << host().said();
  }
  ScreenArea gallery() {
    const auto window = windowTitled("Galeria widżetów");
    return window ? desktop().windows().areaOf(*window).value_or(ScreenArea{}) : ScreenArea{};
  }
};

TEST_F(GalleryOnX11, FitsASmallScreenWithPreviewsOfThreeQuarters) {
  startDesktop({.width = 1024, .height = 600});
  openGallery();
  const auto fits = [this] {
    const auto area = gallery();
    // Tiles are at least as wide as their previews.
    const int previews = 3 * (smallWidth + 2 * mediumWidth) / 4;
    return area.width >= previews && area.width <= 1024 && area.height >= 3 * largeHeight / 4 && area.height <= 570 &&
           area.x >= 0 && area.y >= 0 && area.x + area.width <= 1024 && area.y + area.height <= 600;
  };
  EXPECT_TRUE(eventually(fits)) << gallery().width << "x" << gallery().height << "+" << gallery().x << "+"
                                << gallery().y;
}

TEST_F(GalleryOnX11, WindowIsNamedAfterTheDesktopEntry) {
  openGallery();
  EXPECT_THAT(desktop().windows().text(windowTitled("Galeria widżetów").value(), "WM_CLASS"),
              testing::StartsWith("pl.ferol.vamba.Desktop"));
}

TEST_F(GalleryOnX11, SaysWhereAWidgetWasAdded) {
  support::AccessibleObjects objects(desktop().bus());
  openGallery();
  const auto isSaid = [&](const std::string& message) {
    return eventually([&] {
      const auto all = objects.of(host().id());
      return std::ranges::any_of(all, [&](const auto& each) { return each.role == "label" && each.name == message; });
    });
  };
  EXPECT_TRUE(isSaid("Wybierz rozmiar, żeby dodać widżet do pulpitu."));
  EXPECT_TRUE(objects.act(host().id(), "Dodaj mały widżet", "click"));
  // Below the first widget, in the lower half of the screen.
  EXPECT_TRUE(isSaid("Dodano: u dołu po prawej.")) << host().said();
  EXPECT_TRUE(eventually([this] { return areas().size() == 2; }));
  EXPECT_THAT(objects.announcements(), testing::ElementsAre("Dodano: u dołu po prawej."));
}

}  // namespace
}  // namespace end_to_end
