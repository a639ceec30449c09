// Boards grow with the desktop's text size on a compositor with layer shell.
#include "desktop/end_to_end/wayland_fixture.hpp"

namespace end_to_end {
namespace {

class TextSizeOnWayland : public OnSway {
 protected:
  TextSizeOnWayland() {
    settings_.variables["GSETTINGS_BACKEND"] = "keyfile";
    settings_.variables["XDG_CONFIG_HOME"] = display().at("HOME") + "/configuration";
  }

  /// Sets it as settings programs do, in the file that the host's settings come from.
  void setTextScale(const std::string& factor) {
    auto variables = hostEnvironment(display());
    variables["GSETTINGS_BACKEND"] = "keyfile";
    const support::ChildProcess program(
        {.command = {"gsettings", "set", "org.gnome.desktop.interface", "text-scaling-factor", factor},
         .environment = support::environmentLines(variables),
         .input = {},
         .errorFile = desktop().bus().path("gsettings.log"),
         .package = "libglib2.0-bin"});
    ASSERT_EQ(program.exitStatus(), 0);
  }
};

TEST_F(TextSizeOnWayland, BoardFollowsTheTextAtRunTime) {
  start();
  EXPECT_TRUE(comesToShow(screenWith({{"medium", firstPlace}}), "text-100"));
  setTextScale("1.25");
  const ShownBoard larger{"medium", {1280 - gap - mediumWidth * 5 / 4, gap}};
  auto expected = screenWith({});
  paint(expected, exported("medium", {"--scale", "1.25"}), larger.place);
  EXPECT_TRUE(comesToShow(expected, "text-125")) << host().said();
  setTextScale("1.0");
  EXPECT_TRUE(comesToShow(screenWith({{"medium", firstPlace}}), "text-100-again"));
}

TEST_F(TextSizeOnWayland, BoardStartsInTheSizeOfTheText) {
  setTextScale("1.5");
  start();
  auto expected = screenWith({});
  paint(expected, exported("medium", {"--scale", "1.5"}), {1280 - gap - mediumWidth * 3 / 2, gap});
  EXPECT_TRUE(comesToShow(expected, "text-150")) << host().said();
}

}  // namespace
}  // namespace end_to_end
