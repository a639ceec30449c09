#include "host/autostart/autostart.hpp"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "support/file_content.hpp"
#include "support/temporary_folder.hpp"

namespace host {
namespace {

using support::contentOf;
using testing::EndsWith;
using testing::HasSubstr;
using testing::Not;

constexpr const char* unit = "systemd/user/vamba-desktop.service";
constexpr const char* link = "systemd/user/graphical-session.target.wants/vamba-desktop.service";
constexpr const char* entry = "autostart/vamba-desktop.desktop";

class ServicesInHand : public ServiceManager {
 public:
  explicit ServicesInHand(bool graphicalSession) : graphicalSession_(graphicalSession) {}
  bool knowsGraphicalSession() override { return graphicalSession_; }
  bool canTakeCapabilitiesAway() override { return userNamespaces; }
  void reload() override { ++reloads; }
  int reloads = 0;
  bool userNamespaces = true;

 private:
  bool graphicalSession_;
};

class AutostartTest : public testing::Test {
 protected:
  bool isThere(const char* file) const { return std::filesystem::exists(folder_.path(file)); }
  std::optional<AutostartStatus> status() { return Autostart(folder_.path(""), withSystemd_).status().value(); }

  support::TemporaryFolder folder_;
  ServicesInHand withSystemd_{true};
  ServicesInHand withoutSystemd_{false};
  Autostart systemd_{folder_.path(""), withSystemd_};
  Autostart plain_{folder_.path(""), withoutSystemd_};
};

TEST_F(AutostartTest, IsAUnitThatTheGraphicalSessionWantsWhereSystemdKnowsOne) {
  const auto on = systemd_.on("/bin/sh");
  ASSERT_TRUE(on) << on.error();
  EXPECT_EQ(on->means, StartMeans::systemdUnit);
  EXPECT_EQ(contentOf(folder_.path(link)), contentOf(folder_.path(unit)));
  EXPECT_THAT(contentOf(folder_.path(unit)), HasSubstr("\nExecStart=:\"/bin/sh\" desktop --at-login\n"));
  EXPECT_EQ(std::filesystem::read_symlink(folder_.path(link)), "../vamba-desktop.service");
  EXPECT_EQ(withSystemd_.reloads, 1);
  EXPECT_FALSE(isThere(entry));
  ASSERT_TRUE(status());
  EXPECT_EQ(status()->means, StartMeans::systemdUnit);
  EXPECT_TRUE(status()->programThere);
}

TEST_F(AutostartTest, IsAUnitWithoutCapabilitiesWhereSystemdCanStartOne) {
  ASSERT_TRUE(systemd_.on("/bin/sh"));
  EXPECT_THAT(contentOf(folder_.path(unit)), HasSubstr("\nPrivateUsers=yes\nCapabilityBoundingSet=\n"));
  withSystemd_.userNamespaces = false;
  ASSERT_TRUE(systemd_.on("/bin/sh"));
  EXPECT_THAT(contentOf(folder_.path(unit)), Not(HasSubstr("PrivateUsers")));
  EXPECT_THAT(contentOf(folder_.path(unit)), Not(HasSubstr("Capability")));
}

TEST_F(AutostartTest, IsAnEntryOfXdgAutostartElsewhere) {
  const auto on = plain_.on("/bin/sh");
  ASSERT_TRUE(on) << on.error();
  EXPECT_EQ(on->means, StartMeans::autostartEntry);
  EXPECT_THAT(contentOf(folder_.path(entry)), HasSubstr("\nExec=\"/bin/sh\" desktop --at-login\n"));
  EXPECT_FALSE(isThere(unit));
  EXPECT_EQ(withoutSystemd_.reloads, 0);
  ASSERT_TRUE(status());
  EXPECT_EQ(status()->means, StartMeans::autostartEntry);
}

TEST_F(AutostartTest, IsAnEntryForAProgramThatSystemdRefuses) {
  const auto on = systemd_.on("/opt/\"a\"/vamba-host");
  ASSERT_TRUE(on) << on.error();
  EXPECT_EQ(on->means, StartMeans::autostartEntry);
}

TEST_F(AutostartTest, IsNeverBothWhateverTheSessionWasBefore) {
  ASSERT_TRUE(plain_.on("/bin/sh"));
  ASSERT_TRUE(systemd_.on("/bin/sh"));
  EXPECT_TRUE(isThere(unit) && isThere(link));
  EXPECT_FALSE(isThere(entry));
  ASSERT_TRUE(plain_.on("/bin/sh"));
  EXPECT_TRUE(isThere(entry));
  EXPECT_FALSE(isThere(unit) || isThere(link));
}

TEST_F(AutostartTest, GoesOffByBothMeansAndStaysOff) {
  ASSERT_TRUE(systemd_.on("/bin/sh"));
  ASSERT_TRUE(plain_.off());
  EXPECT_FALSE(isThere(unit) || std::filesystem::is_symlink(folder_.path(link)));
  ASSERT_TRUE(plain_.on("/bin/sh"));
  ASSERT_TRUE(systemd_.off());
  EXPECT_FALSE(isThere(entry));
  EXPECT_EQ(status(), std::nullopt);
  EXPECT_TRUE(systemd_.off());
}

TEST_F(AutostartTest, OnAgainStartsTheProgramOfNow) {
  ASSERT_TRUE(systemd_.on("/bin/true"));
  ASSERT_TRUE(systemd_.on("/bin/sh"));
  EXPECT_EQ(status()->program, "/bin/sh");
}

TEST_F(AutostartTest, SaysWhenTheProgramIsNotThereAnyMore) {
  ASSERT_TRUE(plain_.on(folder_.path("moved 100%/vamba-host")));
  ASSERT_TRUE(status());
  EXPECT_FALSE(status()->programThere);
  EXPECT_EQ(status()->program, folder_.path("moved 100%/vamba-host"));
}

TEST_F(AutostartTest, TouchesNoForeignFile) {
  for (const char* name : {unit, entry}) {
    std::filesystem::create_directories(std::filesystem::path(folder_.path(name)).parent_path());
    folder_.write(name, "[Service]\nExecStart=/bin/false\n");
    for (Autostart* autostart : {&systemd_, &plain_}) {
      EXPECT_EQ(autostart->on("/bin/sh").error(),
                folder_.path(name) + " was not written by vamba-host; remove or rename it first");
      EXPECT_FALSE(autostart->off());
      EXPECT_FALSE(autostart->status());
    }
    EXPECT_EQ(contentOf(folder_.path(name)), "[Service]\nExecStart=/bin/false\n");
    EXPECT_FALSE(isThere(name == unit ? entry : unit));
    std::filesystem::remove(folder_.path(name));
  }
}

TEST_F(AutostartTest, IsOffWhereTheSessionSkipsTheFile) {
  ASSERT_TRUE(plain_.on("/bin/sh"));
  folder_.write(entry, contentOf(folder_.path(entry)) + "Hidden=true\n");
  EXPECT_EQ(status(), std::nullopt);
  ASSERT_TRUE(systemd_.on("/bin/sh"));
  std::filesystem::remove(folder_.path(link));  // systemctl --user disable
  EXPECT_EQ(status(), std::nullopt);
}

TEST_F(AutostartTest, ClearsALinkWhoseUnitIsGone) {
  ASSERT_TRUE(systemd_.on("/bin/sh"));
  std::filesystem::remove(folder_.path(unit));
  EXPECT_EQ(status(), std::nullopt);
  ASSERT_TRUE(systemd_.off());
  EXPECT_FALSE(std::filesystem::is_symlink(folder_.path(link)));
}

TEST_F(AutostartTest, SaysWhyItCannot) {
  folder_.write("systemd", "");
  folder_.write("autostart", "");
  EXPECT_THAT(systemd_.on("/bin/sh").error(), EndsWith("Not a directory"));
  EXPECT_FALSE(systemd_.on("/bin/a=b"));
  EXPECT_FALSE(systemd_.on("/bin/a\nb"));
}

}  // namespace
}  // namespace host
