// What `vamba-host` does without a command, with and without a display.
#include <csignal>

#include "desktop/end_to_end/x11_fixture.hpp"

namespace end_to_end {
namespace {

using testing::HasSubstr;

class CommandOnX11 : public OnX11 {};

TEST_F(CommandOnX11, DesktopIsWhatItShowsWhereADisplayIsReachable) {
  settings_.arguments = {};
  start();
  EXPECT_TRUE(boardsAre({firstPlace()}));
  EXPECT_EQ(host().end(), 0);
}

TEST_F(CommandOnX11, TerminalIsWhatItWritesToWhereTheDisplayHasGone) {
  const support::SessionBus session;
  const auto variables = session.environment();
  std::size_t shown = 0;
  for (const char* gone : {"", ":987", ":987.0", "unix:987"}) {
    auto environment = hostEnvironment(variables);
    if (*gone != '\0') environment["DISPLAY"] = gone;
    support::ChildProcess host({.command = {VAMBA_HOST, "--extension", extension_.program()},
                                .environment = support::environmentLines(environment),
                                .input = {}});
    EXPECT_THAT(host.firstLine(), testing::StartsWith("╭")) << gone;
    EXPECT_EQ(extension_.requests("timeline"), ++shown);
    EXPECT_EQ(host.exitStatus(), 0) << gone;
  }
}

TEST_F(CommandOnX11, SecondStartWithoutASessionBusIsRefusedAndSaysSo) {
  const char* const address = "DBUS_SESSION_BUS_ADDRESS";
  settings_.variables[address] = "unix:path=/nowhere";
  start();
  ASSERT_TRUE(boardsAre({firstPlace()}));
  const auto refused = [this] {
    const DesktopHost second(display(), settings_);
    EXPECT_EQ(second.exitStatus(), 1);
    EXPECT_THAT(second.said(), HasSubstr("vamba-host: the widgets are on the desktop already"));
  };
  refused();
  // One with a bus finds nobody there, and yet the lock.
  settings_.variables.erase(address);
  refused();
  EXPECT_FALSE(windowTitled("Galeria widżetów"));
  // A lock is nobody's once its owner has crashed.
  ::kill(host().id(), SIGKILL);
  settings_.variables[address] = "unix:path=/nowhere";
  start();
  EXPECT_TRUE(boardsAre({firstPlace()}));
}

TEST_F(CommandOnX11, LockIsInTheConfigurationWhereThereIsNoRuntimeFolder) {
  settings_.without = {"DBUS_SESSION_BUS_ADDRESS", "XDG_RUNTIME_DIR"};
  start();
  ASSERT_TRUE(boardsAre({firstPlace()}));
  EXPECT_TRUE(std::filesystem::exists(placementsFile(display()).parent_path() / "desktop.lock"));
  const DesktopHost second(display(), settings_);
  EXPECT_EQ(second.exitStatus(), 1);
}

TEST_F(CommandOnX11, LoginStartsNothingWhereNoWidgetIsPlacedAndAPersonOpensTheGallery) {
  place(display(), nlohmann::json::array());
  settings_.arguments = {"desktop", "--at-login", "--verbose"};
  start();
  EXPECT_EQ(host().exitStatus(), 0);
  EXPECT_THAT(host().said(), HasSubstr("nothing is started at login"));
  settings_.arguments = {"desktop"};
  start();
  EXPECT_TRUE(eventually([this] { return windowTitled("Galeria widżetów").has_value(); })) << host().said();
}

TEST_F(CommandOnX11, LoginStartsTheFirstWidgetAndThoseThatArePlaced) {
  settings_.arguments = {"desktop", "--at-login"};
  for (int starts = 0; starts < 2; ++starts) {
    start();
    EXPECT_TRUE(boardsAre({firstPlace()})) << starts;
    EXPECT_EQ(host().end(), 0);
  }
}

TEST_F(CommandOnX11, DesktopThatIsAskedForWithoutADisplayFailsAndSaysWhy) {
  const support::SessionBus session;
  auto variables = session.environment();
  const DesktopHost without(variables, settings_);
  EXPECT_EQ(without.exitStatus(), 1);
  EXPECT_THAT(without.said(), HasSubstr("no display is reachable"));
  variables["DISPLAY"] = ":987";
  const DesktopHost gone(variables, settings_);
  EXPECT_EQ(gone.exitStatus(), 1);
  EXPECT_THAT(gone.said(), HasSubstr("the display can't be opened"));
}

}  // namespace
}  // namespace end_to_end
