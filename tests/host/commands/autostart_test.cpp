// The command as a person calls it, in a session without systemd.
#include <tuple>

#include <gtest/gtest.h>

#include "host/commands/host_process.hpp"
#include "support/file_content.hpp"

namespace host {
namespace {

TEST(AutostartCommand, GoesOnAndOffAndTellsWhich) {
  const support::TemporaryFolder folder;
  support::ScopedEnvironment environment;
  environment.set("XDG_CONFIG_HOME", folder.path("config"));
  environment.unset("XDG_RUNTIME_DIR");
  const std::string file = folder.path("config/autostart/vamba-desktop.desktop");
  const std::string on = "on: XDG autostart file " + file + "\n";
  const std::tuple<const char*, std::string, bool> steps[] = {
      {"status", "off\n", false}, {"on", on, true},        {"status", on, true},      {"on", on, true},
      {"off", "off\n", false},    {"off", "off\n", false}, {"status", "off\n", false}};
  for (const auto& [action, said, there] : steps) {
    const auto outcome = runHost({"autostart", action});
    EXPECT_EQ(outcome.output, said) << action;
    const bool toldOff = std::string_view(action) == "status" && !there;
    EXPECT_EQ(outcome.status, toldOff ? 3 : 0) << action << outcome.errors;
    EXPECT_EQ(std::filesystem::exists(file), there) << action;
  }
}

TEST(AutostartCommand, SaysWhenTheProgramIsGoneAndWhenTheFileIsForeign) {
  const support::TemporaryFolder folder;
  support::ScopedEnvironment environment;
  environment.set("XDG_CONFIG_HOME", folder.path(""));
  environment.unset("XDG_RUNTIME_DIR");
  std::filesystem::create_directory(folder.path("autostart"));
  const std::string file = folder.path("autostart/vamba-desktop.desktop");
  folder.write("autostart/vamba-desktop.desktop", "[Desktop Entry]\nX-Vamba-Program=/gone/vamba-host\n");
  EXPECT_EQ(
      runHost({"autostart", "status"}).output,
      "on: XDG autostart file " + file + ", but /gone/vamba-host is gone; run \"vamba-host autostart on\" again\n");
  folder.write("autostart/vamba-desktop.desktop", "[Desktop Entry]\n");
  const auto on = runHost({"autostart", "on"});
  EXPECT_EQ(on.output, "");
  EXPECT_EQ(on.errors, "vamba-host: " + file + " was not written by vamba-host; remove or rename it first\n");
  EXPECT_EQ(on.status, 1);
  EXPECT_EQ(support::contentOf(file), "[Desktop Entry]\n");
}

}  // namespace
}  // namespace host
