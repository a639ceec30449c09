// How the process starts, serves side by side, and ends.
#include <csignal>
#include <filesystem>
#include <system_error>

#include "end_to_end/extension_fixture.hpp"

namespace end_to_end {
namespace {

using support::Await;
using support::Event;
using support::Send;
using support::Stall;

using ExtensionLifeTest = ServiceTest;

TEST_F(ExtensionLifeTest, AnswersALastLineWithoutItsEnd) {
  extension().write(R"({"jsonrpc":"2.0","id":9,"method":"widgets"})");
  extension().closeInput();
  EXPECT_EQ(extension().answer()["id"], 9);
  EXPECT_EQ(extension().exitStatus(), 0);
}

TEST_F(ExtensionLifeTest, EndsWithStatusZeroAndSilentlyWhenNothingWasAsked) {
  extension().closeInput();
  EXPECT_EQ(extension().exitStatus(), 0);
  EXPECT_EQ(extension().line(), std::nullopt);
  EXPECT_EQ(extension().diagnostics(), "");
}

TEST_F(ExtensionLifeTest, StartedWithoutAnOutputGivesItsNumberToNoConnection) {
  folder_.write("start", "#!/bin/sh\nexec " VAMBA_EXTENSION " >&-\n");
  std::filesystem::permissions(folder_.path("start"), std::filesystem::perms::owner_all);
  everyAnswer({Stall{}});
  support::ExtensionUnderTest process(folder_.path("start"), environment);
  process.ask("timeline", boardParams());
  ASSERT_TRUE(service.waitForRequests(3));
  std::error_code error;
  const auto output = std::filesystem::read_symlink("/proc/" + std::to_string(process.id()) + "/fd/1", error);
  if (error == std::errc::permission_denied) GTEST_SKIP() << "only root can see the descriptors of a private process";
  EXPECT_EQ(output, "/dev/null");
}

TEST_F(ExtensionLifeTest, EndOfInputCancelsALoadAndAnswersTheRest) {
  everyAnswer({Stall{}});
  const int loading = extension().ask("timeline", boardParams());
  ASSERT_TRUE(service.waitForRequests(3));
  std::vector<int> ids;
  for (int count = 0; count < 20; ++count) ids.push_back(extension().ask("placeholder", boardParams()));
  extension().closeInput();
  EXPECT_EQ(extension().exitStatus(), 0);
  for (const int id : ids) EXPECT_TRUE(extension().answerTo(id).contains("result")) << id;
  EXPECT_TRUE(extension().answerTo(loading).is_null());
  EXPECT_EQ(extension().diagnostics(), "");
}

TEST_F(ExtensionLifeTest, SlowTimelineDelaysNothingElse) {
  const auto released = std::make_shared<Event>();
  service.script(tasksTarget, {Await{released}, Send{support::HttpAnswer{.body = "[]"}.bytes()}});
  service.script(inboxTarget, {Await{released}, Send{support::HttpAnswer{.body = R"({"zadania": []})"}.bytes()}});
  service.script(meetingsTarget, {Await{released}, Send{support::HttpAnswer{.body = "[]"}.bytes()}});
  const int loading = extension().ask("timeline", boardParams());
  ASSERT_TRUE(service.waitForRequests(3));

  const json placeholder = extension().call("placeholder", boardParams());
  ASSERT_TRUE(placeholder.contains("result"));
  EXPECT_FALSE(render(placeholder["result"]["entry"]).empty());
  EXPECT_TRUE(extension().call("widgets").contains("result"));
  EXPECT_TRUE(extension()
                  .call("snapshot", {{"kind", kind}, {"family", "systemSmall"}, {"isPreview", true}})
                  .contains("result"));

  released->set();
  EXPECT_FALSE(extension().answerTo(loading)["result"]["entries"][0].contains("blad"));
}

TEST_F(ExtensionLifeTest, LoadsThatRunAtOnceAreAnsweredEachByItsOwnId) {
  const auto released = std::make_shared<Event>();
  service.script(meetingsTarget, {Await{released}, Send{support::HttpAnswer{.body = "[]"}.bytes()}});
  std::vector<int> ids;
  for (int count = 0; count < 4; ++count) ids.push_back(extension().ask("timeline", boardParams()));
  ASSERT_TRUE(service.waitForRequests(12)) << "the loads should not wait for each other";
  released->set();
  for (const int id : ids) EXPECT_EQ(extension().answerTo(id)["result"]["entries"].size(), 1);
}

TEST_F(ExtensionLifeTest, KilledProcessLeavesNothingThatItsSuccessorMinds) {
  everyAnswer({Stall{}});
  extension().ask("timeline", boardParams());
  ASSERT_TRUE(service.waitForRequests(3));
  extension().kill();
  EXPECT_EQ(extension().exitStatus(), 128 + SIGKILL);
  EXPECT_TRUE(items.holds("token-urzadzenia"));
  restart();
  everyAnswer({Send{support::HttpAnswer{.status = 500}.bytes()}});
  EXPECT_EQ(loadSentence(), serverError(500));
}

TEST_F(ExtensionLifeTest, WritesNothingAndSpeaksToNobodyBesides) {
  service.answer(tasksTarget, {.body = "[]",
                               .headers = {{"Set-Cookie", "sesja=1; Path=/; Max-Age=9999"},
                                           {"Cache-Control", "max-age=9999"},
                                           {"ETag", "\"1\""}}});
  EXPECT_EQ(loadSentence(), "");
  EXPECT_EQ(loadSentence(), "");
  restart();
  EXPECT_EQ(loadSentence(), "");
  const auto requests = service.requests();
  EXPECT_EQ(requests.size(), 9) << "nothing is cached, nothing is asked twice";
  for (const auto& request : requests) {
    EXPECT_EQ(request.header("Cookie"), std::nullopt);
    EXPECT_EQ(request.header("If-None-Match"), std::nullopt);
    EXPECT_EQ(request.header("User-Agent"), std::nullopt);
    EXPECT_EQ(request.header("Authorization"), "Bearer tajne-7");
    EXPECT_EQ(request.header("Accept"), "application/json");
    EXPECT_TRUE(request.raw.starts_with("GET "));
  }
  EXPECT_EQ(extension().diagnostics(), "");
  // That the folders stayed empty is seen at every test's end.
}

}  // namespace
}  // namespace end_to_end
