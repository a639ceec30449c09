// What becomes of the widgets when what they stand on goes: the session's bus, the X server.
#include <csignal>

#include "desktop/end_to_end/x11_fixture.hpp"
#include "support/displays/stand_in_portal.hpp"

namespace end_to_end {
namespace {

using support::ColourScheme;
using support::StandInPortal;
using testing::HasSubstr;

class LossOnX11 : public OnX11 {
 protected:
  static bool isRunning(pid_t process) { return ::kill(process, 0) == 0; }
};

TEST_F(LossOnX11, WidgetsStayAndGoOnWithoutTheSessionsBus) {
  // One question of the portal is open still.
  const StandInPortal portal(desktop().bus(),
                             {.appearance = {.colourScheme = ColourScheme::dark}, .silentAbout = {"accent-color"}});
  start();
  const auto isDark = [&](const std::string& name) {
    return comesToShowInside(firstPlace(), exported({"--appearance", "dark"}), name);
  };
  ASSERT_TRUE(isDark("x11-bus-there")) << host().said();
  ASSERT_TRUE(host().says(loaded)) << host().said();

  desktop().bus().end();
  extension_.set("FAKE_EXTENSION_TITLE", "later");
  focus(firstPlace());
  desktop().input().key(keys::f5);
  EXPECT_TRUE(host().says(loaded, 2)) << host().said();
  EXPECT_TRUE(isDark("x11-bus-gone")) << host().said();
  desktop().input().key(keys::left);
  auto moved = firstPlace();
  moved.x -= gap;
  EXPECT_TRUE(boardsAre({moved}));
  EXPECT_EQ(host().end(), 0) << host().said();
}

TEST_F(LossOnX11, HostEndsWithTheServerAndSaysSo) {
  start();
  ASSERT_TRUE(host().says(loaded)) << host().said();
  desktop().endServer();
  EXPECT_EQ(host().exitStatus(), 1);
  EXPECT_THAT(host().said(), HasSubstr("vamba-host: the display has gone\n"));
}

TEST_F(LossOnX11, ExtensionThatHangsDoesNotOutliveTheServer) {
  start();
  ASSERT_TRUE(host().says(loaded)) << host().said();
  extension_.set("FAKE_EXTENSION", "hang and ignore signals");
  focus(firstPlace());
  desktop().input().key(keys::f5);
  ASSERT_TRUE(eventually([this] { return extension_.processes().size() == 2; }));
  const auto hung = extension_.processes().back();
  ASSERT_TRUE(isRunning(hung));
  desktop().endServer();
  EXPECT_EQ(host().exitStatus(), 1);
  EXPECT_TRUE(eventually([&] { return !isRunning(hung); }));
}

}  // namespace
}  // namespace end_to_end
