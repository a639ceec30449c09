#include "host/feed/feed.hpp"

#include <condition_variable>
#include <csignal>
#include <filesystem>
#include <fstream>
#include <mutex>

#include <absl/time/clock.h>
#include <gmock/gmock.h>

#include "host/feed/feed_thread.hpp"
#include "support/environment.hpp"
#include "support/file_content.hpp"
#include "support/temporary_folder.hpp"
#include "support/waiting.hpp"

namespace host {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

std::string wordsOf(const protocol::Node& view) {
  return std::get<protocol::Verbatim>(std::get<protocol::TextNode>(view.kind).content).text;
}

/// What was told, in order: boards as "origin: words, words", and the rest by name.
class Told : public FeedListener {
 public:
  void widgetFound(const WidgetDeclaration& widget) override { add("widget " + widget.kind); }
  void boardsChanged(const FeedBoards& boards) override {
    const char* const origins[] = {"placeholder", "load", "redraw"};
    std::string line = origins[static_cast<int>(boards.origin)];
    for (const auto& [family, view] : boards.views) line += ", " + wordsOf(view);
    add(line);
  }
  void failed(const ExtensionFailure& failure) override { add("failed: " + failure.message); }
  void reloadPlanned(std::optional<absl::Time> reload) override {
    const std::scoped_lock lock(mutex_);
    reload_ = reload;
  }

  std::vector<std::string> all() {
    const std::scoped_lock lock(mutex_);
    return lines_;
  }
  std::optional<absl::Time> reload() {
    const std::scoped_lock lock(mutex_);
    return reload_;
  }
  /// Whether so many lines were told in time.
  bool waitFor(std::size_t count) {
    std::unique_lock lock(mutex_);
    return changed_.wait_for(lock, std::chrono::seconds(30), [&] { return lines_.size() >= count; });
  }

 private:
  void add(std::string line) {
    const std::scoped_lock lock(mutex_);
    lines_.push_back(std::move(line));
    changed_.notify_all();
  }

  std::mutex mutex_;
  std::condition_variable changed_;
  std::vector<std::string> lines_;
  std::optional<absl::Time> reload_;
};

class FeedTest : public testing::Test {
 protected:
  FeedTest() {
    std::signal(SIGPIPE, SIG_IGN);
    environment_.unset("FAKE_EXTENSION");
    environment_.set("FAKE_EXTENSION_STARTS", folder_.path("starts"));
  }

  static ExtensionSettings settings() { return {.program = VAMBA_FAKE_EXTENSION, .diagnostics = -1}; }

  /// Until nothing is due at once.
  static void runOnce(Feed& feed) {
    const auto [date, redraw, pause, zone] = feed.descriptors();
    waitForAny({date, redraw, pause, zone});
    feed.handleWakeUps();
  }

  std::size_t starts() const {
    std::ifstream file(folder_.path("starts"));
    std::size_t count = 0;
    for (std::string line; std::getline(file, line);) ++count;
    return count;
  }

  support::ScopedEnvironment environment_;
  support::TemporaryFolder folder_;
  Told told_;
};

TEST_F(FeedTest, ShowsSeveralSizesFromOneTimelineOfOneProcess) {
  Feed feed(settings(), told_, Feed::Placeholders::none);
  feed.show({"systemMedium", "systemSmall"});
  runOnce(feed);
  EXPECT_THAT(told_.all(), ElementsAre("widget fake", "load, timeline systemMedium, timeline systemSmall"));
  EXPECT_EQ(starts(), 1U);
  ASSERT_TRUE(told_.reload());
  EXPECT_GT(*told_.reload() - absl::Now(), absl::Minutes(14));
}

TEST_F(FeedTest, ShowsPlaceholdersBeforeTheFirstLoadAndInTheSameProcess) {
  Feed feed(settings(), told_, Feed::Placeholders::untilLoaded);
  feed.show({"systemLarge"});
  EXPECT_THAT(told_.all(), ElementsAre("widget fake", "placeholder, placeholder systemLarge"));
  runOnce(feed);
  EXPECT_EQ(told_.all().back(), "load, timeline systemLarge");
  EXPECT_EQ(starts(), 1U);
}

TEST_F(FeedTest, DrawsAFurtherSizeFromTheEntryThatIsThere) {
  Feed feed(settings(), told_, Feed::Placeholders::untilLoaded);
  feed.show({"systemLarge"});
  runOnce(feed);
  const auto planned = told_.reload();
  feed.show({"systemLarge", "systemSmall"});
  EXPECT_EQ(told_.all().back(), "redraw, timeline systemLarge, timeline systemSmall");
  EXPECT_EQ(told_.reload(), planned);
}

TEST_F(FeedTest, AsksForNothingWithoutASizeAndAgainWithOne) {
  Feed feed(settings(), told_, Feed::Placeholders::untilLoaded);
  feed.show({"systemLarge"});
  runOnce(feed);
  feed.show({});
  const auto before = told_.all().size();
  feed.handleWakeUps();
  EXPECT_EQ(told_.all().size(), before);
  feed.show({"systemSmall"});
  runOnce(feed);
  EXPECT_EQ(told_.all().back(), "load, timeline systemSmall");
}

TEST_F(FeedTest, TellsOfAFailureAndAsksAgainAfterAPause) {
  environment_.set("FAKE_EXTENSION", "exit 3");
  Feed feed(settings(), told_, Feed::Placeholders::none);
  feed.show({"systemMedium"});
  runOnce(feed);
  EXPECT_THAT(told_.all(), ElementsAre(HasSubstr("ended with status 3")));
  ASSERT_TRUE(told_.reload());
  EXPECT_LT(*told_.reload() - absl::Now(), absl::Seconds(2));
  environment_.set("FAKE_EXTENSION", "");
  runOnce(feed);
  EXPECT_EQ(told_.all().back(), "load, timeline systemMedium");
}

TEST_F(FeedTest, GivesAPreviewOfEverySizeAndEndsTheProcess) {
  Feed feed(settings(), told_, Feed::Placeholders::none);
  std::vector<std::string> previews;
  for (const auto& [family, view] : feed.previews().views) previews.push_back(wordsOf(view));
  EXPECT_THAT(previews, ElementsAre("snapshot systemLarge", "snapshot systemMedium", "snapshot systemSmall"));
}

TEST_F(FeedTest, HasNoPreviewsOfAnExtensionThatFails) {
  environment_.set("FAKE_EXTENSION", "exit 3");
  Feed feed(settings(), told_, Feed::Placeholders::none);
  EXPECT_THAT(feed.previews().views, IsEmpty());
}

TEST_F(FeedTest, RunsOnAThreadThatEndsWhileTheExtensionHangs) {
  environment_.set("FAKE_EXTENSION", "hang and ignore signals");
  const auto begin = std::chrono::steady_clock::now();
  {
    FeedThread thread(settings(), told_, Feed::Placeholders::none);
    thread.post([](Feed& feed) { feed.show({"systemSmall"}); });
  }
  EXPECT_LT(std::chrono::steady_clock::now() - begin, std::chrono::seconds(4));
  EXPECT_THAT(told_.all(), IsEmpty());
}

TEST_F(FeedTest, InterruptsALoadForAWishAndBeginsItAgain) {
  // Well as long as a file is there, else silent.
  folder_.write("sometimes-silent", "#!/bin/sh\n[ -e " + folder_.path("well") + " ] || { : >" + folder_.path("silent") +
                                        "; exec sleep 1000; }\nexec " VAMBA_FAKE_EXTENSION "\n");
  std::filesystem::permissions(folder_.path("sometimes-silent"), std::filesystem::perms::owner_all);
  auto sometimesSilent = settings();
  sometimesSilent.program = folder_.path("sometimes-silent");
  folder_.write("well", "");
  FeedThread thread(sometimesSilent, told_, Feed::Placeholders::none);
  thread.post([](Feed& feed) { feed.show({"systemSmall"}); });
  ASSERT_TRUE(told_.waitFor(2));
  std::filesystem::remove(folder_.path("well"));
  thread.post([](Feed& feed) { feed.reload(); });
  ASSERT_TRUE(support::eventually([this] { return std::filesystem::exists(folder_.path("silent")); }));
  folder_.write("well", "");
  thread.post([](Feed& feed) { feed.show({"systemLarge"}); });
  ASSERT_TRUE(told_.waitFor(3));
  EXPECT_THAT(told_.all().back(), HasSubstr("timeline systemLarge"));
}

TEST_F(FeedTest, LetsThePlaceholderComeBeforeALoadThatWaitsItsTurn) {
  folder_.write("held", "");
  environment_.set("FAKE_EXTENSION_HELD", folder_.path("held"));
  environment_.set("FAKE_EXTENSION_REQUESTS", folder_.path("requests"));
  const auto rendering = [this] { return support::contentOf(folder_.path("requests")).contains("render"); };
  FeedThread thread(settings(), told_, Feed::Placeholders::untilLoaded, Feed::FirstLoad::whenAskedFor);
  thread.post([](Feed& feed) { feed.show({"systemSmall"}); });
  ASSERT_TRUE(support::eventually(rendering));
  thread.postInTurn([](Feed& feed) { feed.reload(); });
  std::filesystem::remove(folder_.path("held"));
  ASSERT_TRUE(told_.waitFor(3));
  EXPECT_THAT(told_.all(),
              ElementsAre("widget fake", "placeholder, placeholder systemSmall", "load, timeline systemSmall"));
  EXPECT_EQ(starts(), 1U);
}

}  // namespace
}  // namespace host
