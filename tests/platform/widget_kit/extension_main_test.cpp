#include "platform/widget_kit/extension_main.hpp"

#include <csignal>
#include <thread>

#include <fcntl.h>
#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include "protocol/json_rpc/line_reader.hpp"
#include "support/sample_widget.hpp"

namespace platform {
namespace {

using nlohmann::json;

/// An extension's main routine on a thread, with the host's ends of its pipes in the test's hands.
class ExtensionMain : public testing::Test {
 protected:
  ExtensionMain() : answers_((open(requests_), open(answerPipe_), answerPipe_[0])) {
    std::signal(SIGPIPE, SIG_IGN);
    main_ = std::jthread([this] {
      const support::SampleBundle bundle(tasks_, gate_);
      status_ = extensionMain(bundle, tasks_, {.requests = requests_[0], .answers = answerPipe_[1]});
      ::close(answerPipe_[1]);
    });
  }

  ~ExtensionMain() override {
    closeInput();
    status();
    ::close(requests_[0]);
    ::close(answerPipe_[0]);
  }

  void send(const std::string& text) {
    std::size_t sent = 0;
    while (sent < text.size()) {
      const auto count = ::write(requests_[1], text.data() + sent, text.size() - sent);
      ASSERT_GT(count, 0);
      sent += static_cast<std::size_t>(count);
    }
  }
  void request(int id, const std::string& method, const json& params) {
    send(json{{"jsonrpc", "2.0"}, {"id", id}, {"method", method}, {"params", params}}.dump() + "\n");
  }
  /// Of the routine, once it has ended.
  int status() {
    if (main_.joinable()) main_.join();
    return status_;
  }
  void makeInputNonBlocking() const { ASSERT_EQ(fcntl(requests_[0], F_SETFL, O_NONBLOCK), 0); }
  void closeInput() {
    if (requests_[1] >= 0) ::close(std::exchange(requests_[1], -1));
  }

  /// The next answer; null at the end of output.
  json answer() {
    const auto [status, line, error] = answers_.next();
    return status == protocol::json_rpc::LineReader::Status::line ? json::parse(line) : json();
  }
  json errorOf(const std::string& line) {
    send(line + "\n");
    return answer();
  }

  support::Gate gate_;
  base::TaskGroup tasks_;
  int status_ = -1;

 private:
  static void open(int (&pipe)[2]) { ASSERT_EQ(::pipe(pipe), 0); }

  int requests_[2] = {-1, -1};
  int answerPipe_[2] = {-1, -1};
  protocol::json_rpc::LineReader answers_;
  std::jthread main_;
};

const json smallSample{{"kind", "sample"}, {"family", "systemSmall"}};

json with(json params, const char* name, json value) {
  params[name] = std::move(value);
  return params;
}

TEST_F(ExtensionMain, DeclaresItsWidgets) {
  request(1, "widgets", json::object());
  EXPECT_EQ(answer(), json::parse(R"({"jsonrpc": "2.0", "id": 1, "result": [{
      "version": 1, "opens": [], "kind": "sample", "displayName": "Sample", "description": "A sample.",
      "families": ["systemSmall", "systemLarge"]}]})"));
  send(R"({"jsonrpc":"2.0","id":"two","method":"widgets"})"
       "\n");
  EXPECT_EQ(answer()["id"], "two");
}

TEST_F(ExtensionMain, AnswersEachQuestionOfTheProvider) {
  request(1, "placeholder", smallSample);
  EXPECT_EQ(answer()["result"]["entry"]["word"], "placeholder");
  request(2, "snapshot", with(smallSample, "isPreview", true));
  EXPECT_EQ(answer()["result"]["entry"]["word"], "preview");
  gate_.open();
  request(3, "snapshot", with(smallSample, "isPreview", false));
  EXPECT_EQ(answer()["result"]["entry"]["word"], "live");
  request(4, "timeline", smallSample);
  EXPECT_EQ(answer(), json::parse(R"({"jsonrpc": "2.0", "id": 4, "result": {
      "entries": [{"date": "2025-03-14T09:30:00Z", "word": "loaded"}],
      "policy": {"type": "after", "date": "2025-03-14T09:45:00Z"}}})"));
}

TEST_F(ExtensionMain, RendersAnEntryInTheFamilyAskedFor) {
  request(1, "render", with(with(smallSample, "family", "systemLarge"), "entry", {{"word", "day"}}));
  EXPECT_EQ(answer()["result"]["view"]["text"], "day in systemLarge");
}

TEST_F(ExtensionMain, AnswersARenderWhileATimelineIsStillLoading) {
  request(1, "timeline", smallSample);
  request(2, "render", with(smallSample, "entry", {{"word", "day"}}));
  request(3, "placeholder", smallSample);
  EXPECT_EQ(answer()["id"], 2);
  EXPECT_EQ(answer()["id"], 3);
  gate_.open();
  EXPECT_EQ(answer()["id"], 1);
}

TEST_F(ExtensionMain, AnswersManyLoadsAtOnce) {
  for (int id = 0; id < 20; ++id) request(id, "timeline", smallSample);
  gate_.open();
  std::set<int> ids;
  for (int i = 0; i < 20; ++i) ids.insert(answer()["id"].get<int>());
  EXPECT_EQ(ids.size(), 20U);
}

TEST_F(ExtensionMain, RefusesABadLineByItsCodeAndGoesOn) {
  EXPECT_EQ(errorOf("{oops")["error"]["code"], -32700);
  EXPECT_EQ(errorOf("[1]")["error"]["code"], -32600);
  EXPECT_EQ(errorOf(R"({"jsonrpc":"2.0","id":7,"method":"reload"})")["error"]["code"], -32601);
  request(8, "placeholder", smallSample);
  EXPECT_EQ(answer()["id"], 8);
}

TEST_F(ExtensionMain, NamesTheBadParameter) {
  const std::pair<std::pair<const char*, json>, const char*> cases[] = {
      {{"placeholder", json::array()}, "params: not an object"},
      {{"placeholder", json::object()}, "kind: not one of the extension's widgets"},
      {{"timeline", with(smallSample, "kind", "other")}, "kind: not one of the extension's widgets"},
      {{"timeline", with(smallSample, "kind", 3)}, "kind: not one of the extension's widgets"},
      {{"timeline", with(smallSample, "family", "systemMedium")}, "family: not one of the widget's families"},
      {{"timeline", with(smallSample, "family", "systemExtraLarge")}, "family: not one of the widget's families"},
      {{"snapshot", smallSample}, "isPreview: not true or false"},
      {{"snapshot", with(smallSample, "isPreview", "yes")}, "isPreview: not true or false"},
      {{"render", smallSample}, "entry: missing"},
      {{"render", with(smallSample, "entry", json::object())}, "word: missing"}};
  for (const auto& [call, message] : cases) {
    request(1, call.first, call.second);
    const auto error = answer()["error"];
    EXPECT_EQ(error["code"], -32602) << call.first << call.second;
    EXPECT_EQ(error["message"], message) << call.first << call.second;
  }
}

TEST_F(ExtensionMain, AnswersNoNotification) {
  send(R"({"jsonrpc":"2.0","method":"widgets"})"
       "\n");
  request(9, "widgets", json::object());
  EXPECT_EQ(answer()["id"], 9);
}

// Another process that shares the terminal may have made the input non-blocking.
TEST_F(ExtensionMain, WaitsForANonBlockingInput) {
  makeInputNonBlocking();
  request(1, "placeholder", smallSample);
  EXPECT_EQ(answer()["id"], 1);
  request(2, "placeholder", smallSample);
  EXPECT_EQ(answer()["id"], 2);
  closeInput();
  EXPECT_EQ(status(), 0);
}

TEST_F(ExtensionMain, EndsWithItsInputAfterTheAnswersToWhatItRead) {
  request(1, "timeline", smallSample);  // still loading at the end of input: cancelled, and owed no answer
  request(2, "placeholder", smallSample);
  send(json{{"jsonrpc", "2.0"}, {"id", 3}, {"method", "widgets"}}.dump());  // a last line without its end
  closeInput();
  EXPECT_EQ(answer()["id"], 2);
  EXPECT_EQ(answer()["id"], 3);
  EXPECT_TRUE(answer().is_null());
  EXPECT_EQ(status(), 0);
}

TEST_F(ExtensionMain, RefusesALineBeyondTheLimitAndReadsPastIt) {
  send(std::string((std::size_t{64} << 20) + 2, 'x') + "\n");
  const auto refused = answer();
  EXPECT_EQ(refused["error"]["code"], -32600);
  EXPECT_TRUE(refused["id"].is_null());
  request(5, "placeholder", smallSample);
  EXPECT_EQ(answer()["id"], 5);
}

}  // namespace
}  // namespace platform
