#include <gmock/gmock.h>
#include <nlohmann/json.hpp>

#include "host/commands/host_process.hpp"
#include "support/file_content.hpp"
#include "support/waiting.hpp"

namespace host {
namespace {

using nlohmann::json;
using testing::AnyOf;
using testing::HasSubstr;
using testing::Not;

class Watch : public testing::Test {
 protected:
  void behave(const std::string& behaviour) { environment_.set("FAKE_EXTENSION", behaviour); }
  void reloadAfter(int seconds) { environment_.set("FAKE_EXTENSION_RELOAD_SECONDS", std::to_string(seconds)); }

  /// Ends it as Ctrl+C does, and expects status 0.
  void interrupt(HostProcess& host) {
    host.signal(SIGINT);
    EXPECT_EQ(host.status(), 0) << host.errors();
  }

  support::ScopedEnvironment environment_;
  support::TemporaryFolder folder_;
};

TEST_F(Watch, ShowsTheBoardAndWaitsUntilItIsInterrupted) {
  for (const int signal : {SIGINT, SIGTERM, SIGHUP}) {
    HostProcess host({"watch"});
    EXPECT_THAT(host.readUntil("╯\n"), HasSubstr("timeline systemMedium"));
    host.signal(signal);
    EXPECT_EQ(host.status(), 0);
  }
}

TEST_F(Watch, ShowsItAgainAtEachReload) {
  reloadAfter(1);
  HostProcess host({"watch", "--format", "json", "--family", "large"});
  for (int i = 0; i < 2; ++i) EXPECT_EQ(json::parse(host.line())["text"], "timeline systemLarge");
  interrupt(host);
}

TEST_F(Watch, ReloadsOnASignal) {
  HostProcess host({"watch", "--format", "json"});
  host.line();
  for (int i = 0; i < 2; ++i) {
    host.signal(SIGUSR1);
    EXPECT_EQ(json::parse(host.line())["text"], "timeline systemMedium");
  }
  interrupt(host);
}

TEST_F(Watch, VerboseSaysWhenTheNextReloadIs) {
  HostProcess host({"watch", "--format", "json", "--verbose"});
  host.line();
  interrupt(host);
  EXPECT_THAT(host.errors(), HasSubstr("vamba-host: next reload at 20"));
}

TEST_F(Watch, NoWidgetOfTheSizeIsStatus1) {
  behave("a small widget alone");
  HostProcess host({"watch", "--family", "large"});
  EXPECT_EQ(host.status(), 1);
  EXPECT_EQ(host.errors(), "vamba-host: the extension offers no widget of this size\n");
}

TEST_F(Watch, OutputThatFailsIsStatus1) {
  FILE* const shell = popen("exec " VAMBA_HOST " --extension " VAMBA_FAKE_EXTENSION " watch 2>&1 >/dev/full", "r");
  std::array<char, 200> text{};
  const std::string said(text.data(), fread(text.data(), 1, text.size(), shell));
  const int status = pclose(shell);
  EXPECT_TRUE(WIFEXITED(status) && WEXITSTATUS(status) == 1) << status;
  EXPECT_EQ(said, "vamba-host: can't write the result: No space left on device\n");
}

TEST_F(Watch, EndsWhenItsReaderIsGone) {
  for (const char* format : {"text", "json", "waybar", "line"}) {
    HostProcess host({"watch", "--format", format});
    host.line();
    host.closeOutput();
    // The next reload is a quarter of an hour away.
    EXPECT_EQ(host.status(), 0) << format << host.errors();
    EXPECT_EQ(host.errors(), "");
  }
}

TEST_F(Watch, EndsDuringALoadWhenItsReaderIsGone) {
  behave("hang");
  environment_.set("FAKE_EXTENSION_REQUESTS", folder_.path("requests"));
  HostProcess host({"watch", "--format", "line"});
  ASSERT_TRUE(support::eventually([&] { return support::contentOf(folder_.path("requests")) == "widgets\n"; }));
  host.closeOutput();
  EXPECT_EQ(host.status(), 0);
  EXPECT_EQ(host.errors(), "") << "the extension's silence was waited for";
}

TEST_F(Watch, EndsWhileItsReaderDoesNotRead) {
  // Cut by the host, it is still longer than what a pipe holds.
  environment_.set("FAKE_EXTENSION_TITLE", std::string(100'000, 'x'));
  for (const int signal : {SIGINT, SIGTERM, SIGHUP}) {
    HostProcess host({"watch", "--format", "json"});
    ASSERT_TRUE(host.isFull()) << "it writes, and nobody reads";
    host.signal(signal);
    EXPECT_EQ(host.status(), 0) << host.errors();
  }
}

TEST_F(Watch, WritesALongBoardInOneLine) {
  environment_.set("FAKE_EXTENSION_TITLE", std::string(100'000, 'x'));
  HostProcess host({"watch", "--format", "json"});
  EXPECT_EQ(json::parse(host.line())["text"], std::string(65536, 'x') + "…");
  interrupt(host);
}

TEST_F(Watch, WritesALineForPromptsAndBars) {
  HostProcess host({"watch", "--format", "line"});
  EXPECT_EQ(host.line(), "timeline systemMedium\n");
  interrupt(host);
}

TEST_F(Watch, SpeaksToAStatusBar) {
  HostProcess host({"watch", "--format", "waybar"});
  const auto line = json::parse(host.line());
  EXPECT_TRUE(line.contains("text") && line.contains("tooltip") && line.contains("class")) << line;
  interrupt(host);
}

TEST_F(Watch, NeverLeavesAStatusBarBlankAndRestartsTheExtension) {
  const std::string program = folder_.path("dies-once");
  folder_.write("dies-once", "#!/bin/sh\n[ -e " + folder_.path("died") + " ] || { : >" + folder_.path("died") +
                                 "; exit 1; }\nexec " VAMBA_FAKE_EXTENSION "\n");
  std::filesystem::permissions(program, std::filesystem::perms::owner_all);
  HostProcess host({"watch", "--format", "waybar"}, Onto::pipe, "", program);
  EXPECT_EQ(json::parse(host.line())["class"], json::array({"error"}));
  EXPECT_THAT(json::parse(host.line())["tooltip"].get<std::string>(), HasSubstr("timeline systemMedium"));
  EXPECT_THAT(host.errors(), HasSubstr("status 1"));
  interrupt(host);
}

TEST_F(Watch, KeepsTheLastBoardWhileTheExtensionFails) {
  reloadAfter(1);
  const std::string program = folder_.path("works-once");
  folder_.write("works-once", "#!/bin/sh\n[ -e " + folder_.path("ran") + " ] && exit 1\n: >" + folder_.path("ran") +
                                  "\nexec " VAMBA_FAKE_EXTENSION "\n");
  std::filesystem::permissions(program, std::filesystem::perms::owner_all);
  HostProcess host({"watch", "--format", "json"}, Onto::pipe, "", program);
  EXPECT_EQ(json::parse(host.line())["text"], "timeline systemMedium");
  ASSERT_TRUE(support::eventually([&] { return host.errors().contains("status 1"); }));
  host.signal(SIGTERM);
  EXPECT_EQ(host.rest(), "");
  EXPECT_EQ(host.status(), 0);
}

TEST_F(Watch, EndsAtOnceWhileTheExtensionHangs) {
  behave("hang");
  environment_.set("FAKE_EXTENSION_REQUESTS", folder_.path("requests"));
  HostProcess host({"watch"});
  ASSERT_TRUE(support::eventually([&] { return support::contentOf(folder_.path("requests")) == "widgets\n"; }));
  interrupt(host);
  EXPECT_EQ(host.errors(), "") << "the extension's silence was waited for";
}

TEST_F(Watch, DrawsAgainAtTheWidthOfAResizedTerminal) {
  environment_.set("TERM", "xterm-256color");
  HostProcess host({"watch"}, Onto::terminal);
  const auto first = host.readUntil("╯");
  host.resize(30);
  const auto second = host.readUntil("╯");
  EXPECT_LT(second.size(), first.size());
  interrupt(host);
}

TEST_F(Watch, ExtensionThatCannotBeStartedIsStatus1) {
  HostProcess host({"watch"}, Onto::pipe, "", "/no/such/extension");
  EXPECT_EQ(host.rest(), "");
  EXPECT_EQ(host.status(), 1);
}

}  // namespace
}  // namespace host
