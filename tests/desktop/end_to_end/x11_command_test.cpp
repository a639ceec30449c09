// What `vamba-host` does without a command, with and without a display.
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
