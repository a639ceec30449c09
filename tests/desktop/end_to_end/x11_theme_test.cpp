// The toolkit's themes on X11: boards are dark with a dark theme, and menus use it.
#include <filesystem>
#include <fstream>

#include "desktop/end_to_end/sizes_and_keys.hpp"
#include "desktop/end_to_end/x11_fixture.hpp"

namespace end_to_end {
namespace {

using support::Pixel;

/// A dark theme whose name does not contain "dark".
class ThemeOnX11 : public OnX11 {
 protected:
  ThemeOnX11() {
    const auto theme = folder_.path("themes/Noc/gtk-3.0");
    std::filesystem::create_directories(theme);
    std::ofstream(theme + "/gtk.css") << "@define-color theme_bg_color #202428;\n"
                                         "menu { background-color: #a01090; }\n";
    settings_.variables["XDG_DATA_HOME"] = folder_.path("");
  }

  testing::AssertionResult isDrawn(const std::string& appearance) {
    return comesToShowInside(firstPlace(), exported({"--appearance", appearance}), "x11-theme-" + appearance);
  }
  std::ptrdiff_t pixelsOfTheMenu() {
    return std::ranges::count_if(desktop().screenshot().pixels, [](const Pixel& pixel) {
      return pixel.red == 0xa0 && pixel.green == 0x10 && pixel.blue == 0x90;
    });
  }

  support::TemporaryFolder folder_;
};

TEST_F(ThemeOnX11, VariantThatTheEnvironmentNamesMakesBoardsDark) {
  settings_.variables["GTK_THEME"] = "Adwaita:dark";
  start();
  EXPECT_TRUE(isDrawn("dark")) << host().said();
}

TEST_F(ThemeOnX11, DarkBackgroundOfTheSettingsThemeMakesBoardsDark) {
  const std::filesystem::path folder = hostEnvironment(display()).at("XDG_CONFIG_HOME") + "/gtk-3.0";
  std::filesystem::create_directories(folder);
  const auto choose = [&](const char* theme) {
    std::ofstream(folder / "settings.ini") << "[Settings]\ngtk-theme-name=" << theme << "\n";
  };
  choose("Noc");
  start();
  EXPECT_TRUE(isDrawn("dark")) << host().said();
  choose("HighContrast");
  start();
  EXPECT_TRUE(isDrawn("light")) << host().said();
}

TEST_F(ThemeOnX11, MenuIsDrawnByTheThemeEachTimeItOpens) {
  settings_.variables["GTK_THEME"] = "Noc";
  start();
  ASSERT_TRUE(boardsAre({firstPlace()}));
  focus(firstPlace());
  EXPECT_EQ(pixelsOfTheMenu(), 0);
  for (int i = 0; i < 2; ++i) {
    openMenu();
    EXPECT_TRUE(eventually([&] { return pixelsOfTheMenu() > 1000; })) << host().said();
    desktop().input().key(keys::escape);
    EXPECT_TRUE(eventually([&] { return pixelsOfTheMenu() == 0; }));
  }
}

}  // namespace
}  // namespace end_to_end
