#include "host/extension/answers.hpp"

#include <gtest/gtest.h>

namespace host {
namespace {

using nlohmann::json;

TEST(ReadWidgets, ReadsDeclarationsAndPassesOverTheRest) {
  const auto widgets = readWidgets(json::parse(
      R"([{"kind":"k","displayName":"n","description":"d","families":["systemSmall","systemHuge"],"new":1}])"));
  ASSERT_TRUE(widgets);
  EXPECT_EQ(*widgets, (std::vector<WidgetDeclaration>{{"k", "n", "d", {protocol::WidgetFamily::systemSmall}}}));
  EXPECT_TRUE(readWidgets(json::array()));
}

TEST(ReadWidgets, RefusesWhatIsNoDeclaration) {
  for (const char* const text : {
           "null",
           "{}",
           "[1]",
           R"([{"displayName":"n","description":"d","families":[]}])",
           R"([{"kind":1,"displayName":"n","description":"d","families":[]}])",
           R"([{"kind":"k","displayName":"n","description":"d","families":[1]}])",
           R"([{"kind":"k","displayName":"n","description":"d","families":"systemSmall"}])",
           R"([{"kind":"k","displayName":"n","description":"d","families":[],"opens":{}}])",
           R"([{"kind":"k","displayName":"n","description":"d","families":[],"opens":["https://example.org"]}])",
           R"([{"kind":"k","displayName":"n","description":"d","families":[],"opens":[{"url":1}]}])",
           R"([{"kind":"k","displayName":"n","description":"d","families":[],"opens":[{"desktopEntry":[]}]}])",
       }) {
    EXPECT_FALSE(readWidgets(json::parse(text))) << text;
  }
}

TEST(ReadWidgets, ReadsWhatAClickOpensInOrder) {
  const auto opens = [](const char* targets) {
    const auto widgets = readWidgets(json::array({{{"kind", "k"},
                                                   {"displayName", "n"},
                                                   {"description", "d"},
                                                   {"families", json::array()},
                                                   {"opens", json::parse(targets)}}}));
    return widgets ? widgets->at(0).opens : std::vector<OpenTarget>{{OpenTarget::Kind::url, "refused"}};
  };
  using enum OpenTarget::Kind;
  EXPECT_EQ(opens(R"([{"desktopEntry":"org.example.App-1_x"},{"url":"https://example.org/a?b=c#d"}])"),
            (std::vector<OpenTarget>{{desktopEntry, "org.example.App-1_x"}, {url, "https://example.org/a?b=c#d"}}));
  EXPECT_EQ(opens(R"([{"url":"http://127.0.0.1:80/"},{"new":1}])"),
            (std::vector<OpenTarget>{{url, "http://127.0.0.1:80/"}}));
  EXPECT_TRUE(opens("[]").empty());
  EXPECT_TRUE(opens("null").empty());
}

TEST(ReadWidgets, LeavesOutTargetsThatAreNotToBeOpened) {
  for (const char* const target : {
           R"({"url":"file:///etc/passwd"})",
           R"({"url":"data:text/html,x"})",
           R"({"url":"vamba://day"})",
           R"({"url":"HTTPS//example.org"})",
           R"({"url":"https://"})",
           R"({"url":"https:///path"})",
           R"({"url":"https://example.org/a b"})",
           R"({"url":"https://example.org/\u0000"})",
           R"({"url":"https://example.org/\n"})",
           R"({"url":"https://example.org/\u00e9"})",
           R"({"url":""})",
           R"({"desktopEntry":""})",
           R"({"desktopEntry":".hidden"})",
           R"({"desktopEntry":"../../tmp/evil"})",
           R"({"desktopEntry":"/tmp/evil"})",
           R"({"desktopEntry":"a b"})",
           R"({})",
       }) {
    const auto widgets = readWidgets(json::parse(
        std::string(R"([{"kind":"k","displayName":"n","description":"d","families":[],"opens":[)") + target + "]}]"));
    ASSERT_TRUE(widgets) << target;
    EXPECT_TRUE(widgets->at(0).opens.empty()) << target;
  }
}

TEST(ReadEntryAnswer, WantsAnInstantAndKeepsTheRest) {
  const json answer = json::parse(R"({"entry":{"date":"2025-03-14T09:30:00.25Z","numer":9223372036854775807}})");
  EXPECT_EQ(readEntryAnswer(answer).value_or(nullptr), answer);
  for (const char* const text : {
           "null",
           "[]",
           "{}",
           R"({"entry":1})",
           R"({"entry":{}})",
           R"({"entry":{"date":1}})",
           R"({"entry":{"date":"tomorrow"}})",
           R"({"entry":{"date":"2025-02-30T09:30:00Z"}})",
       }) {
    EXPECT_FALSE(readEntryAnswer(json::parse(text))) << text;
  }
}

TEST(ReadTimeline, ReadsEntriesAndReloadDate) {
  const json result = json::parse(R"({"entries":[{"date":"2025-03-14T09:30:00Z"},{"date":"2025-03-14T10:00:00Z"}],)"
                                  R"("policy":{"type":"after","date":"2025-03-14T09:45:00Z"}})");
  const auto timeline = readTimeline(result);
  ASSERT_TRUE(timeline);
  EXPECT_EQ(timeline->entries.size(), 2U);
  EXPECT_EQ(timeline->reload, absl::FromUnixSeconds(1741945500));
}

TEST(ReadTimeline, RefusesWhatCannotBeFollowed) {
  for (const char* const text : {
           "null",
           "{}",
           R"({"entries":[],"policy":{"type":"after","date":"2025-03-14T09:45:00Z"}})",
           R"({"entries":[{}],"policy":{"type":"after","date":"2025-03-14T09:45:00Z"}})",
           R"({"entries":[{"date":"2025-03-14T09:30:00Z"}]})",
           R"({"entries":[{"date":"2025-03-14T09:30:00Z"}],"policy":{"type":"after"}})",
           R"({"entries":[{"date":"2025-03-14T09:30:00Z"}],"policy":{"type":"never","date":"2025-03-14T09:45:00Z"}})",
           R"({"entries":[{"date":"2025-03-14T09:30:00Z"}],"policy":{"type":"after","date":"soon"}})",
           R"({"entries":[{"date":"2025-03-14T09:30:00Z"}],"policy":[]})",
       }) {
    EXPECT_FALSE(readTimeline(json::parse(text))) << text;
  }
}

json stackOf(std::vector<json> children) { return {{"type", "vstack"}, {"children", std::move(children)}}; }

TEST(ReadView, RefusesTreesOfMoreNodesThanAHostDraws) {
  const json leaf = {{"type", "divider"}};
  EXPECT_TRUE(readView({{"view", stackOf(std::vector(mostNodes - 1, leaf))}}));
  EXPECT_EQ(readView({{"view", stackOf(std::vector(mostNodes, leaf))}}).error(), "view: more than 5000 nodes");
  json deep = leaf;
  for (std::size_t depth = 1; depth < deepestNode; ++depth) deep = stackOf({deep});
  EXPECT_TRUE(readView({{"view", deep}}));
  EXPECT_EQ(readView({{"view", stackOf({deep})}}).error(), "view: more than 64 nodes in one another");
}

TEST(ReadView, CutsLongTextsBeforeTheCharacterThatPassesTheLimit) {
  const auto textOf = [](const std::string& text) {
    const auto node = readView({{"view", stackOf({{{"type", "text"}, {"text", text}}})}});
    const auto& stack = std::get<protocol::VStackNode>(node.value().kind);
    return std::get<protocol::Verbatim>(std::get<protocol::TextNode>(stack.children.front().kind).content).text;
  };
  const std::string longest(longestText, 'x');
  EXPECT_EQ(textOf(longest), longest);
  EXPECT_EQ(textOf(longest + "y"), longest + "…");
  EXPECT_EQ(textOf(longest.substr(1) + "łł"), longest.substr(1) + "…");
  const auto keyed = readView({{"view", {{"type", "text"}, {"key", longest + "k"}, {"value", longest + "v"}}}});
  const auto& key = std::get<protocol::LocalizedKey>(std::get<protocol::TextNode>(keyed.value().kind).content);
  EXPECT_EQ(key.key, longest + "…");
  EXPECT_EQ(key.value, longest + "…");
}

TEST(ReadView, ReadsANode) {
  EXPECT_TRUE(readView(json::parse(R"({"view":{"type":"divider"}})")));
  for (const char* const text : {"null", "{}", R"({"view":null})", R"({"view":{"type":"picture"}})"}) {
    EXPECT_FALSE(readView(json::parse(text))) << text;
  }
}

}  // namespace
}  // namespace host
