#include "desktop/glib/session_bus.hpp"

#include <gtest/gtest.h>

#include "support/environment.hpp"
#include "support/temporary_folder.hpp"

namespace desktop {
namespace {

TEST(SessionBusToAsk, IsNeverOneThatWouldHaveToBeStarted) {
  const support::TemporaryFolder folder;
  support::ScopedEnvironment environment;
  environment.set("DBUS_SESSION_BUS_ADDRESS", "unix:path=/somewhere");
  EXPECT_EQ(sessionBusToAsk(), "unix:path=/somewhere");
  environment.set("DBUS_SESSION_BUS_ADDRESS", "autolaunch:");
  EXPECT_EQ(sessionBusToAsk(), std::nullopt);
  environment.unset("DBUS_SESSION_BUS_ADDRESS");
  environment.unset("XDG_RUNTIME_DIR");
  EXPECT_EQ(sessionBusToAsk(), std::nullopt);
  environment.set("XDG_RUNTIME_DIR", folder.path("").substr(0, folder.path("").size() - 1));
  EXPECT_EQ(sessionBusToAsk(), std::nullopt);
  folder.write("bus", "");
  EXPECT_EQ(sessionBusToAsk(), "unix:path=" + folder.path("bus"));
}

}  // namespace
}  // namespace desktop
