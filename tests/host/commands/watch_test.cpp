#include <gmock/gmock.h>
#include <nlohmann/json.hpp>

#include "host/commands/host_process.hpp"

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

  /// Ends it as a person does, and sees that it ends well.
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

TEST_F(Watch, FollowsAReloadDateInThePastWithAPauseThatGrows) {
  reloadAfter(-3600);
  environment_.set("FAKE_EXTENSION_STARTS", folder_.path("starts"));
  HostProcess host({"watch", "--format", "json"});
  const auto begin = std::chrono::steady_clock::now();
  for (int i = 0; i < 3; ++i) host.line();  // pauses of about 1 s and 2 s between them
  EXPECT_GE(std::chrono::steady_clock::now() - begin, std::chrono::milliseconds(2300));
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
  EXPECT_EQ(json::parse(host.line())["class"], "error");
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
  while (host.errors().find("status 1") == std::string::npos) std::this_thread::yield();
  host.signal(SIGTERM);
  EXPECT_EQ(host.rest(), "");
  EXPECT_EQ(host.status(), 0);
}

TEST_F(Watch, EndsAtOnceWhileTheExtensionHangs) {
  behave("hang");
  environment_.set("FAKE_EXTENSION_STARTS", folder_.path("starts"));
  HostProcess host({"watch"});
  std::ifstream starts;
  for (pid_t id = 0; id == 0;) {
    starts.open(folder_.path("starts"));
    starts >> id;
    starts.close();
    starts.clear();
  }
  const auto begin = std::chrono::steady_clock::now();
  interrupt(host);
  EXPECT_LT(std::chrono::steady_clock::now() - begin, std::chrono::seconds(4));  // its deadline would be 5 s
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
