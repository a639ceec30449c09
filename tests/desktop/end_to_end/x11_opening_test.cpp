// What a click on a board opens: a desktop entry that is installed, else an address in the default browser.
#include <cstdlib>
#include <fstream>

#include "desktop/end_to_end/x11_fixture.hpp"
#include "support/displays/accessible_objects.hpp"
#include "support/file_content.hpp"

namespace end_to_end {
namespace {

namespace fs = std::filesystem;
using testing::EndsWith;
using testing::HasSubstr;
using testing::Not;
using testing::StartsWith;

class OpeningOnX11 : public OnX11 {
 protected:
  OpeningOnX11() {
    extension_.set("FAKE_EXTENSION_OPENS",
                   R"([{"desktopEntry":"org.example.Day"},{"url":"https://day.example.org/"}])");
  }

  /// An application that adds a line to the file "opened" each time that it is started: its name, its argument, where
  /// GTK may run, and the startup id.
  void install(const std::string& id) {
    const auto script = folder_.path(id);
    write(script, "#!/bin/sh\necho \"" + id + " <$1> <$GDK_BACKEND$GDK_GL> $DESKTOP_STARTUP_ID\" >>" + opened() + "\n");
    fs::permissions(script, fs::perms::owner_all);
    writeEntry(id, script);
  }
  void writeEntry(const std::string& id, const std::string& program) {
    write(fs::path(display().at("XDG_DATA_HOME")) / "applications" / (id + ".desktop"),
          "[Desktop Entry]\nType=Application\nName=Test\nStartupNotify=true\nExec=" + program + " %u\n");
  }
  void installBrowser(const std::string& id) {
    install(id);
    write(fs::path(hostEnvironment(display()).at("XDG_CONFIG_HOME")) / "mimeapps.list",
          "[Default Applications]\nx-scheme-handler/https=" + id + ".desktop\n");
  }
  static void write(const fs::path& file, const std::string& content) {
    fs::create_directories(file.parent_path());
    std::ofstream(file, std::ios::binary) << content;
  }

  /// Has the host run as the service of the widgets, with a stand-in for `systemd-run` that adds its arguments to the
  /// file "opened".
  void runAsService() {
    write(folder_.path("bin/systemd-run"), "#!/bin/sh\necho \"$*\" >>" + opened() + "\n");
    fs::permissions(folder_.path("bin/systemd-run"), fs::perms::owner_all);
    settings_.asService = true;
    settings_.variables["PATH"] = folder_.path("bin") + ":" + std::getenv("PATH");
  }
  /// Starts with one medium board that knows what to open.
  void startLoaded() {
    start();
    ASSERT_TRUE(boardsAre({firstPlace()}));
    ASSERT_TRUE(host().says("a new timeline is shown")) << host().said();
  }
  std::string opened() const { return folder_.path("opened"); }
  std::vector<std::string> openings() const {
    std::ifstream stream(opened());
    std::vector<std::string> lines;
    for (std::string line; std::getline(stream, line);) lines.push_back(line);
    return lines;
  }
  testing::AssertionResult comesToOpen(std::size_t count) {
    if (eventually([&] { return openings().size() == count; })) return testing::AssertionSuccess();
    return testing::AssertionFailure() << openings().size() << " were opened\n" << host().said();
  }

  support::TemporaryFolder folder_;
};

TEST_F(OpeningOnX11, ClickOpensTheInstalledApplicationWithAStartupId) {
  install("org.example.Day");
  installBrowser("browser");
  startLoaded();
  desktop().input().click(firstPlace().centre());
  ASSERT_TRUE(comesToOpen(1));
  EXPECT_THAT(openings()[0], StartsWith("org.example.Day <> <> "))
      << "without an argument, in the session's environment";
  EXPECT_THAT(openings()[0], HasSubstr("_TIME")) << "with the time of the click";
  EXPECT_THAT(openings()[0], Not(EndsWith("_TIME0")));
}

TEST_F(OpeningOnX11, ClickOpensTheAddressInTheBrowserWhereTheApplicationIsNotInstalled) {
  installBrowser("browser");
  startLoaded();
  desktop().input().click(firstPlace().centre());
  ASSERT_TRUE(comesToOpen(1));
  EXPECT_THAT(openings()[0], StartsWith("browser <https://day.example.org/> <> "));
  EXPECT_THAT(openings()[0], HasSubstr("_TIME"));
}

TEST_F(OpeningOnX11, ServiceHasTheServiceManagerOpenTheAddressWithAStartupId) {
  installBrowser("browser");
  runAsService();
  startLoaded();
  desktop().input().click(firstPlace().centre());
  ASSERT_TRUE(comesToOpen(1));
  EXPECT_THAT(openings()[0], StartsWith("--user --collect --quiet --setenv=DESKTOP_STARTUP_ID="));
  EXPECT_THAT(openings()[0], HasSubstr("_TIME"));
  EXPECT_THAT(openings()[0], HasSubstr(" --setenv=XDG_ACTIVATION_TOKEN="));
  EXPECT_THAT(openings()[0], EndsWith(" gio open https://day.example.org/"));
  EXPECT_THAT(host().said(), Not(HasSubstr("CRITICAL")));
  // The journal reads priorities from lines.
  EXPECT_THAT(host().said(), HasSubstr("<7>vamba-host: a new timeline is shown\n"));
}

TEST_F(OpeningOnX11, ServiceHasTheServiceManagerStartTheInstalledApplication) {
  install("org.example.Day");
  runAsService();
  startLoaded();
  desktop().input().click(firstPlace().centre());
  ASSERT_TRUE(comesToOpen(1));
  EXPECT_THAT(openings()[0], HasSubstr("--setenv=DESKTOP_STARTUP_ID="));
  EXPECT_THAT(openings()[0],
              EndsWith(" gio launch " + display().at("XDG_DATA_HOME") + "/applications/org.example.Day.desktop"));
}

TEST_F(OpeningOnX11, EnterOnAFocusedBoardAndTheFirstItemOfTheMenuOpenIt) {
  install("org.example.Day");
  startLoaded();
  focus(firstPlace());
  std::size_t clicks = 0;
  // A click that only gives the board the keyboard opens it too.
  ASSERT_TRUE(eventually([&] { return (clicks = openings().size()) > 0; }));
  for (const auto key : {keys::enter, keys::keypadEnter}) {
    desktop().input().key(key);
    ASSERT_TRUE(comesToOpen(++clicks)) << key;
    EXPECT_THAT(openings().back(), HasSubstr("_TIME"));
  }
  openMenu();
  desktop().input().key(keys::enter);
  EXPECT_TRUE(comesToOpen(++clicks));
}

TEST_F(OpeningOnX11, ScreenReaderOpensByAnAction) {
  install("org.example.Day");
  support::AccessibleObjects objects(desktop().bus());
  startLoaded();
  ASSERT_TRUE(eventually([&] { return objects.act(host().id(), "Fake", "open"); })) << host().said();
  EXPECT_TRUE(comesToOpen(1));
}

TEST_F(OpeningOnX11, DragOpensNothingAndADoubleClickOpensOnce) {
  install("org.example.Day");
  startLoaded();
  const auto from = firstPlace().centre();
  desktop().input().drag(from, {from.x - 200, from.y + 200});
  auto moved = firstPlace();
  moved.x -= 200;
  moved.y += 200;
  ASSERT_TRUE(boardsAre({moved}));
  desktop().input().click(moved.centre());
  desktop().input().click(moved.centre());
  ASSERT_TRUE(eventually([this] { return !openings().empty(); }));
  // A key is handled after the clicks.
  desktop().input().key(keys::f5);
  ASSERT_TRUE(host().says("a new timeline is shown", 2)) << host().said();
  EXPECT_EQ(openings().size(), 1U);
}

TEST_F(OpeningOnX11, FailureIsSaidInOneLineAndHoldsNothingUp) {
  // No application is installed anywhere, and none is the default.
  settings_.variables["XDG_DATA_DIRS"] = folder_.path("empty");
  write(fs::path(hostEnvironment(display()).at("XDG_CONFIG_HOME")) / "mimeapps.list", "");
  startLoaded();
  focus(firstPlace());
  EXPECT_TRUE(host().says("vamba-host: can't open https://day.example.org/: ")) << host().said();
  desktop().input().key(keys::f5);
  EXPECT_TRUE(host().says("a new timeline is shown", 2)) << host().said();
}

TEST_F(OpeningOnX11, NothingThatCouldBeOpenedIsSaidInOneLine) {
  extension_.set("FAKE_EXTENSION_OPENS", R"([{"desktopEntry":"org.example.Day"},{"url":"file:///etc/passwd"}])");
  startLoaded();
  desktop().input().click(firstPlace().centre());
  EXPECT_TRUE(host().says("vamba-host: org.example.Day is not installed, so a click opens nothing\n")) << host().said();
}

}  // namespace
}  // namespace end_to_end
