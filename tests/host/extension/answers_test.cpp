#include "host/extension/answers.hpp"

#include <gtest/gtest.h>

namespace host {
namespace {

using nlohmann::json;

TEST(ReadWidgets, ReadsDeclarationsAndPassesOverTheRest) {
  const auto widgets = readWidgets(json::parse(
      R"([{"kind":"k","displayName":"n","description":"d","families":["systemSmall","systemHuge"],"new":1}])"));
  ASSERT_TRUE(widgets);
  EXPECT_EQ(*widgets, (std::vector<WidgetDeclaration>{{"k", "n", "d", {"systemSmall", "systemHuge"}}}));
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
       }) {
    EXPECT_FALSE(readWidgets(json::parse(text))) << text;
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
  EXPECT_EQ(timeline->result, result);
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

TEST(ReadView, ReadsANode) {
  EXPECT_TRUE(readView(json::parse(R"({"view":{"type":"divider"}})")));
  for (const char* const text : {"null", "{}", R"({"view":null})", R"({"view":{"type":"picture"}})"}) {
    EXPECT_FALSE(readView(json::parse(text))) << text;
  }
}

}  // namespace
}  // namespace host
