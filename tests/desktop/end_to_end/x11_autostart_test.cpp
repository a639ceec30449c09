// `vamba-host autostart` with a real user systemd: the widgets start and end with the graphical session. The unit's
// text is tested without systemd in tests/host/autostart.
#include <csignal>

#include "desktop/end_to_end/x11_fixture.hpp"
#include "support/file_content.hpp"
#include "support/systemd_session.hpp"

namespace end_to_end {
namespace {

using support::SystemdSession;

constexpr const char* unit = "vamba-desktop.service";

class AutostartOnX11 : public OnX11 {
 protected:
  void SetUp() override {
    if (const auto hindrance = SystemdSession::hindrance()) {
      GTEST_SKIP() << "no systemd of a user's own can run on this machine: " << *hindrance;
    }
    auto login = hostEnvironment(display());
    login.erase("DISPLAY");
    // A sanitizer's search for leaks traces the process that ends, which the unit forbids.
    login["ASAN_OPTIONS"] = "detect_leaks=0";
    session_ = std::make_unique<SystemdSession>(desktop().bus(), login);
  }

  SystemdSession& session() { return *session_; }
  void beginGraphical() { session_->beginGraphical({{"DISPLAY", display().at("DISPLAY")}}); }

  SystemdSession::Outcome autostart(const std::string& action) {
    return session_->run({VAMBA_HOST, "autostart", action});
  }
  std::string unitFile() { return hostEnvironment(display()).at("XDG_CONFIG_HOME") + "/systemd/user/" + unit; }
  std::string onSentence() { return "on: systemd user unit " + unitFile(); }

  std::string state() { return session_->property(unit, "SubState"); }
  pid_t process() { return std::stoi(session_->property(unit, "MainPID")); }
  /// The areas of the windows of the unit's process.
  std::vector<ScreenArea> shownByTheUnit() {
    std::vector<ScreenArea> areas;
    for (const auto window : desktop().windows().windowsOf(process())) {
      if (const auto area = desktop().windows().areaOf(window)) areas.push_back(*area);
    }
    return areas;
  }
  bool boardComes() {
    return eventually([this] { return shownByTheUnit() == std::vector{firstPlace()}; });
  }

 private:
  std::unique_ptr<SystemdSession> session_;
};

TEST_F(AutostartOnX11, WidgetsComeAndGoWithTheGraphicalSession) {
  beginGraphical();
  const auto on = autostart("on");
  EXPECT_EQ(on.status, 0);
  EXPECT_EQ(on.line, onSentence());
  EXPECT_EQ(session().systemctl({"is-enabled", unit}).line, "enabled");
  EXPECT_EQ(session().run({"systemd-analyze", "--user", "verify", "--man=no", unitFile()}).status, 0);
  EXPECT_THAT(session().property("graphical-session.target", "Wants"), testing::HasSubstr(unit));
  EXPECT_EQ(state(), "dead") << "from the next session on";
  session().endGraphical();

  for (int sessions = 0; sessions < 2; ++sessions) {
    beginGraphical();
    EXPECT_TRUE(boardComes()) << state();
    EXPECT_EQ(state(), "running");
    EXPECT_EQ(autostart("status").line, onSentence());
    const auto widgets = process();
    ASSERT_GT(widgets, 0);
    session().endGraphical();
    EXPECT_NE(::kill(widgets, 0), 0);
    EXPECT_EQ(state(), "dead");
    EXPECT_EQ(session().property(unit, "Result"), "success");
  }
}

// Whether they can be taken away depends on the machine: not where user namespaces are refused.
TEST_F(AutostartOnX11, WidgetsRunWithoutCapabilitiesWhereTheUnitTakesThemAway) {
  beginGraphical();
  ASSERT_EQ(autostart("on").status, 0);
  const bool takenAway = support::contentOf(unitFile()).contains("\nCapabilityBoundingSet=\n");
  const auto trial = session().run({"systemd-run", "--user", "--quiet", "--collect", "--service-type=exec",
                                    "--property=PrivateUsers=yes", "--property=CapabilityBoundingSet=", "true"});
  EXPECT_EQ(takenAway, trial.status == 0);
  session().endGraphical();
  beginGraphical();
  ASSERT_TRUE(boardComes()) << state();
  const auto status = support::contentOf("/proc/" + std::to_string(process()) + "/status");
  EXPECT_EQ(status.contains("\nCapBnd:\t0000000000000000\n"), takenAway) << status;
}

TEST_F(AutostartOnX11, WidgetsThatCrashComeBackAndThoseThatAreEndedDoNot) {
  beginGraphical();
  ASSERT_EQ(autostart("on").status, 0);
  session().endGraphical();
  beginGraphical();
  ASSERT_TRUE(boardComes()) << state();
  const auto crashed = process();
  ASSERT_GT(crashed, 0);
  ::kill(crashed, SIGKILL);
  // The unit allows it five seconds.
  EXPECT_TRUE(eventually([&] { return session().property(unit, "NRestarts") == "1"; })) << state();
  EXPECT_TRUE(boardComes()) << state();
  const auto restarted = process();
  ASSERT_GT(restarted, 0);
  EXPECT_NE(restarted, crashed);

  ::kill(restarted, SIGTERM);
  EXPECT_TRUE(eventually([&] { return state() == "dead"; })) << state();
  EXPECT_EQ(session().property(unit, "Result"), "success");
}

TEST_F(AutostartOnX11, WidgetsThatAreSwitchedOffComeWithNoFurtherSession) {
  beginGraphical();
  ASSERT_EQ(autostart("on").status, 0);
  session().endGraphical();
  const auto off = autostart("off");
  EXPECT_EQ(off.status, 0);
  EXPECT_EQ(off.line, "off");
  EXPECT_NE(session().systemctl({"is-enabled", unit}).status, 0);
  EXPECT_EQ(autostart("status").line, "off");
  beginGraphical();
  EXPECT_EQ(state(), "dead");
  EXPECT_EQ(session().property(unit, "LoadState"), "not-found");
  EXPECT_THAT(session().property("graphical-session.target", "Wants"), testing::Not(testing::HasSubstr(unit)));
}

TEST_F(AutostartOnX11, WidgetsThatSystemdDisabledAreOff) {
  beginGraphical();
  ASSERT_EQ(autostart("on").status, 0);
  EXPECT_EQ(session().systemctl({"disable", unit}).status, 0);
  EXPECT_EQ(autostart("status").line, "off");
  EXPECT_EQ(session().systemctl({"enable", unit}).status, 0);
  EXPECT_EQ(autostart("status").line, onSentence());
  session().endGraphical();
  beginGraphical();
  EXPECT_TRUE(boardComes()) << state();
}

}  // namespace
}  // namespace end_to_end
