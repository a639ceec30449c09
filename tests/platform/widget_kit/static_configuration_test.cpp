#include "platform/widget_kit/static_configuration.hpp"

#include <gmock/gmock.h>

#include "support/sample_widget.hpp"

namespace platform {
namespace {

using testing::ElementsAre;

class StaticConfigurationTest : public testing::Test {
 protected:
  support::Gate gate_;
  base::TaskGroup tasks_;
  const support::SampleWidget widget_{tasks_, gate_};
};

TEST_F(StaticConfigurationTest, KeepsWhatItsModifiersSaid) {
  const auto body = widget_.body();
  EXPECT_EQ(body->kind(), "sample");
  EXPECT_EQ(body->displayName(), "Sample");
  EXPECT_EQ(body->description(), "A sample.");
  EXPECT_THAT(body->supportedFamilies(),
              ElementsAre(protocol::WidgetFamily::systemSmall, protocol::WidgetFamily::systemLarge));
}

TEST_F(StaticConfigurationTest, LastModifierOfAKindWins) {
  const auto body = widget_.body().configurationDisplayName("Other").description("Else.");
  EXPECT_EQ(body->displayName(), "Other");
  EXPECT_EQ(body->description(), "Else.");
  EXPECT_EQ(body->kind(), "sample");
}

TEST_F(StaticConfigurationTest, OffersEveryFamilyUntilToldOtherwise) {
  const auto plain =
      StaticConfiguration("plain", std::make_unique<support::SampleProvider>(tasks_, gate_),
                          [](const support::SampleEntry& entry, const FamilyEnvironment&) -> protocol::Node {
                            return protocol::Text(entry.word);
                          });
  EXPECT_THAT(plain->supportedFamilies(),
              ElementsAre(protocol::WidgetFamily::systemSmall, protocol::WidgetFamily::systemMedium,
                          protocol::WidgetFamily::systemLarge));
  EXPECT_EQ(plain->displayName(), "");
}

TEST_F(StaticConfigurationTest, RendersOneEntryForEachFamilyAnew) {
  const nlohmann::json entry{{"word", "day"}};
  const protocol::Node small = protocol::Text("day in systemSmall");
  const protocol::Node large = protocol::Text("day in systemLarge");
  EXPECT_EQ(widget_.body()->content(entry, protocol::WidgetFamily::systemSmall), small);
  EXPECT_EQ(widget_.body()->content(entry, protocol::WidgetFamily::systemLarge), large);
}

TEST_F(StaticConfigurationTest, AnswersAPreviewBeforeTheCallReturns) {
  EntryJson answer;
  widget_.body()->getSnapshot({.isPreview = true},
                              Completion<EntryJson>([&](EntryJson entry) { answer = std::move(entry); }));
  EXPECT_EQ(nlohmann::json::parse(answer)["word"], "preview");
}

TEST_F(StaticConfigurationTest, CompletesATimelineWhenItsTaskIsDoneEvenAfterTheConfigurationIsGone) {
  TimelineJson answer{.policy = TimelineReloadPolicy::after(absl::InfinitePast())};
  widget_.body()->getTimeline({},
                              Completion<TimelineJson>([&](TimelineJson timeline) { answer = std::move(timeline); }));
  gate_.open();
  tasks_.waitForAll();
  ASSERT_EQ(answer.entries.size(), 1U);
  EXPECT_EQ(nlohmann::json::parse(answer.entries[0])["word"], "loaded");
  EXPECT_EQ(answer.policy.date, support::sampleDate() + absl::Minutes(15));
}

#ifndef NDEBUG
TEST(CompletionDeathTest, NeverCalledIsAMistake) {
  EXPECT_DEATH({ const Completion<int> forgotten([](int) {}); }, "never called");
}

TEST(CompletionDeathTest, CalledTwiceIsAMistake) {
  EXPECT_DEATH(
      {
        Completion<int> completion([](int) {});
        completion(1);
        completion(2);
      },
      "called twice");
}
#endif

}  // namespace
}  // namespace platform
