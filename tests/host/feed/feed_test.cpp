#include "host/feed/feed.hpp"

#include <algorithm>
#include <cerrno>
#include <condition_variable>
#include <csignal>
#include <filesystem>
#include <fstream>
#include <mutex>
#include <system_error>

#include <gmock/gmock.h>
#include <sys/resource.h>

#include "host/feed/feed_thread.hpp"
#include "support/environment.hpp"
#include "support/file_content.hpp"
#include "support/manual_recovery.hpp"
#include "support/manual_timekeeper.hpp"
#include "support/sanitized.hpp"
#include "support/temporary_folder.hpp"
#include "support/waiting.hpp"

namespace host {
namespace {

using protocol::WidgetFamily;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

std::string wordsOf(const protocol::Node& view) {
  return std::get<protocol::Verbatim>(std::get<protocol::TextNode>(view.kind).content).text;
}

/// What was reported, in order: boards as "origin, words, words", and the rest by name.
class Told {
 public:
  FeedListener listener() {
    return [this](const FeedNews& news) { std::visit([this](const auto& each) { hear(each); }, news); };
  }

  std::vector<std::string> all() {
    const std::scoped_lock lock(mutex_);
    return lines_;
  }
  std::optional<absl::Time> reload() {
    const std::scoped_lock lock(mutex_);
    return reload_;
  }
  /// Whether so many lines were reported in time.
  bool waitFor(std::size_t count) {
    std::unique_lock lock(mutex_);
    return changed_.wait_for(lock, support::longPatience, [&] { return lines_.size() >= count; });
  }

 private:
  void hear(const WidgetDeclaration& widget) { add("widget " + widget.kind); }
  void hear(const FeedBoards& boards) {
    const char* const origins[] = {"placeholder", "load", "redraw"};
    std::string line = origins[static_cast<int>(boards.origin)];
    for (const auto& [family, view] : boards.views) line += ", " + wordsOf(view);
    add(line);
  }
  void hear(const ExtensionFailure& failure) { add("failed: " + failure.message); }
  void hear(const ReloadPlanned& planned) {
    const std::scoped_lock lock(mutex_);
    reload_ = planned.at;
  }
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

const absl::Time start = absl::FromUnixSeconds(1741944600);

class FeedTest : public testing::Test {
 protected:
  FeedTest() {
    std::signal(SIGPIPE, SIG_IGN);
    environment_.unset("FAKE_EXTENSION");
    environment_.set("FAKE_EXTENSION_STARTS", folder_.path("starts"));
    tellExtension();
  }

  static ExtensionSettings settings() { return {.program = VAMBA_FAKE_EXTENSION, .diagnostics = -1}; }

  /// A feed whose time stands still.
  Feed feed(Feed::Placeholders placeholders = Feed::Placeholders::none) {
    return Feed(settings(), told_.listener(), time_, recovery_, placeholders);
  }
  /// Until it has loaded its first timeline.
  static void begin(Feed& feed) {
    feed.show({WidgetFamily::systemSmall});
    feed.handleWakeUps();
  }
  std::ptrdiff_t loads() {
    const auto lines = told_.all();
    return std::ranges::count_if(lines, [](const std::string& line) { return line.starts_with("load"); });
  }

  /// The extension's clock follows at its next start.
  void pass(absl::Duration time) {
    time_.pass(time);
    tellExtension();
  }
  void set(absl::Time now) {
    time_.set(now);
    tellExtension();
  }
  void tellExtension() { environment_.set("FAKE_EXTENSION_NOW", std::to_string(absl::ToUnixSeconds(time_.now()))); }

  std::size_t starts() const {
    std::ifstream file(folder_.path("starts"));
    std::size_t count = 0;
    for (std::string line; std::getline(file, line);) ++count;
    return count;
  }

  support::ScopedEnvironment environment_;
  support::TemporaryFolder folder_;
  support::ManualTimekeeper time_{start};
  support::ManualRecovery recovery_;
  Told told_;
};

TEST_F(FeedTest, ShowsSeveralSizesFromOneTimelineOfOneProcess) {
  Feed feed = this->feed();
  feed.show({WidgetFamily::systemMedium, WidgetFamily::systemSmall});
  feed.handleWakeUps();
  EXPECT_THAT(told_.all(), ElementsAre("widget fake", "load, timeline systemSmall, timeline systemMedium"));
  EXPECT_EQ(starts(), 1U);
  EXPECT_EQ(told_.reload(), start + absl::Minutes(15));
}

TEST_F(FeedTest, ShowsPlaceholdersBeforeTheFirstLoadAndInTheSameProcess) {
  Feed feed = this->feed(Feed::Placeholders::untilLoaded);
  feed.show({WidgetFamily::systemLarge});
  EXPECT_THAT(told_.all(), ElementsAre("widget fake", "placeholder, placeholder systemLarge"));
  feed.handleWakeUps();
  EXPECT_EQ(told_.all().back(), "load, timeline systemLarge");
  EXPECT_EQ(starts(), 1U);
}

TEST_F(FeedTest, DrawsAFurtherSizeFromTheEntryThatIsThere) {
  Feed feed = this->feed(Feed::Placeholders::untilLoaded);
  feed.show({WidgetFamily::systemLarge});
  feed.handleWakeUps();
  const auto planned = told_.reload();
  feed.show({WidgetFamily::systemLarge, WidgetFamily::systemSmall});
  EXPECT_EQ(told_.all().back(), "redraw, timeline systemSmall, timeline systemLarge");
  EXPECT_EQ(told_.reload(), planned);
}

TEST_F(FeedTest, AsksForNothingWithoutASizeAndAgainWithOne) {
  Feed feed = this->feed(Feed::Placeholders::untilLoaded);
  feed.show({WidgetFamily::systemLarge});
  feed.handleWakeUps();
  feed.show({});
  const auto before = told_.all().size();
  feed.handleWakeUps();
  EXPECT_EQ(told_.all().size(), before);
  feed.show({WidgetFamily::systemSmall});
  feed.handleWakeUps();
  EXPECT_EQ(told_.all().back(), "load, timeline systemSmall");
}

TEST_F(FeedTest, TellsOfAFailureAndAsksAgainAfterAPause) {
  environment_.set("FAKE_EXTENSION", "exit 3");
  Feed feed = this->feed();
  feed.show({WidgetFamily::systemMedium});
  feed.handleWakeUps();
  EXPECT_THAT(told_.all(), ElementsAre(HasSubstr("ended with status 3")));
  EXPECT_EQ(told_.reload(), start + absl::Seconds(1));
  environment_.set("FAKE_EXTENSION", "");
  pass(absl::Seconds(1));
  feed.handleWakeUps();
  EXPECT_EQ(told_.all().back(), "load, timeline systemMedium");
}

TEST_F(FeedTest, GivesAPreviewOfEverySizeAndEndsTheProcess) {
  Feed feed = this->feed();
  std::vector<std::string> previews;
  for (const auto& [family, view] : feed.previews().views) previews.push_back(wordsOf(view));
  EXPECT_THAT(previews, ElementsAre("snapshot systemSmall", "snapshot systemMedium", "snapshot systemLarge"));
  pid_t process = 0;
  ASSERT_TRUE(std::ifstream(folder_.path("starts")) >> process);
  EXPECT_EQ(kill(process, 0), -1) << "it is gone";
  EXPECT_EQ(errno, ESRCH);
}

TEST_F(FeedTest, HasNoPreviewsOfAnExtensionThatFails) {
  environment_.set("FAKE_EXTENSION", "exit 3");
  Feed feed = this->feed();
  EXPECT_THAT(feed.previews().views, IsEmpty());
}

TEST_F(FeedTest, AsksAgainAtTheReloadDateAndNotBefore) {
  Feed feed = this->feed();
  begin(feed);
  pass(absl::Minutes(15) - absl::Milliseconds(1));
  feed.handleWakeUps();
  EXPECT_EQ(starts(), 1U);
  pass(absl::Milliseconds(1));
  feed.handleWakeUps();
  EXPECT_EQ(starts(), 2U);
  EXPECT_EQ(told_.all().back(), "load, timeline systemSmall");
}

TEST_F(FeedTest, DrawsAgainWithoutALoadWhenTheClockIsSetAndTheDateIsStillAhead) {
  Feed feed = this->feed();
  begin(feed);
  const auto planned = told_.reload();
  for (const auto by : {absl::Minutes(10), -absl::Minutes(5), absl::Minutes(5)}) {
    set(time_.now() + by);
    feed.handleWakeUps();
    EXPECT_EQ(told_.all().back(), "redraw, timeline systemSmall") << by;
    EXPECT_EQ(told_.reload(), planned) << by;
  }
}

TEST_F(FeedTest, AsksAtOnceWhenTheClockWasSetPastTheDateOrFarBack) {
  Feed feed = this->feed();
  begin(feed);
  std::ptrdiff_t count = 1;
  for (const auto by : {absl::Minutes(16), absl::Hours(24 * 400), -absl::Hours(3)}) {
    set(time_.now() + by);
    feed.handleWakeUps();
    feed.handleWakeUps();
    EXPECT_EQ(loads(), ++count) << by;
    EXPECT_EQ(told_.all().back(), "load, timeline systemSmall") << by;
    EXPECT_EQ(told_.reload(), time_.now() + absl::Minutes(15)) << by;
  }
}

TEST_F(FeedTest, PauseAfterAFailureIsNotMovedByASetClock) {
  environment_.set("FAKE_EXTENSION", "exit 3");
  Feed feed = this->feed();
  feed.show({WidgetFamily::systemSmall});
  feed.handleWakeUps();
  pass(absl::Milliseconds(900));
  set(start + absl::Hours(1000));
  feed.handleWakeUps();
  EXPECT_EQ(starts(), 1U);
  EXPECT_EQ(told_.reload(), start + absl::Hours(1000) + absl::Milliseconds(100));
  pass(absl::Milliseconds(100));
  feed.handleWakeUps();
  EXPECT_EQ(starts(), 2U);
}

TEST_F(FeedTest, DrawsTheNewDayAtMidnightAndForANewZone) {
  Feed feed = this->feed();
  time_.setMidnight(start + absl::Minutes(3));
  feed.show({WidgetFamily::systemSmall});
  feed.handleWakeUps();
  pass(absl::Minutes(3));
  time_.setMidnight(start + absl::Hours(27));
  feed.handleWakeUps();
  EXPECT_EQ(told_.all().back(), "redraw, timeline systemSmall");
  EXPECT_EQ(time_.redraw(), start + absl::Hours(27));
  const auto before = told_.all().size();
  time_.setMidnight(start + absl::Hours(5));
  time_.changeZone();
  feed.handleWakeUps();
  EXPECT_EQ(told_.all().size(), before + 1);
  EXPECT_EQ(time_.redraw(), start + absl::Hours(5));
}

TEST_F(FeedTest, DrawsAtMostOnceASecondWhateverTheZonesRuleSays) {
  Feed feed = this->feed();
  time_.setMidnight(start - absl::Hours(2));
  begin(feed);
  const auto before = told_.all().size();
  for (int tenths = 0; tenths < 50; ++tenths) {
    pass(absl::Milliseconds(100));
    feed.handleWakeUps();
  }
  EXPECT_EQ(told_.all().size(), before + 5);
}

TEST_F(FeedTest, KeepsASecondBetweenADrawingAndAMidnightRightAfterIt) {
  Feed feed = this->feed();
  time_.setMidnight(start + absl::Milliseconds(200));
  feed.show({WidgetFamily::systemSmall});
  feed.handleWakeUps();
  EXPECT_EQ(time_.redraw(), start + absl::Seconds(1));
}

TEST_F(FeedTest, AsksSoonAfterASignInWhileASentenceStandsOnTheBoard) {
  environment_.set("FAKE_EXTENSION_SENTENCE", "Sign in.");
  Feed feed = this->feed();
  begin(feed);
  EXPECT_TRUE(recovery_.watching());
  recovery_.give({.credentials = true});
  feed.handleWakeUps();
  EXPECT_EQ(told_.reload(), start + absl::Seconds(1));
  environment_.unset("FAKE_EXTENSION_SENTENCE");
  pass(absl::Seconds(1));
  feed.handleWakeUps();
  EXPECT_EQ(loads(), 2);
  EXPECT_FALSE(recovery_.watching());
  recovery_.give({.credentials = true, .network = true});
  feed.handleWakeUps();
  EXPECT_EQ(told_.reload(), time_.now() + absl::Minutes(15));
}

TEST_F(FeedTest, AsksAtMostOnceAMinuteForANetworkThatIsBack) {
  environment_.set("FAKE_EXTENSION_SENTENCE", "No connection.");
  Feed feed = this->feed();
  begin(feed);
  for (int seconds = 0; seconds < 130; ++seconds) {
    recovery_.give({.network = true});
    feed.handleWakeUps();
    pass(absl::Seconds(1));
  }
  EXPECT_EQ(loads(), 4);  // the first, then after 1 s, 61 s and 121 s
}

TEST_F(FeedTest, KeepsALoadThatIsPlannedSoonerThanASignAsksFor) {
  environment_.set("FAKE_EXTENSION_SENTENCE", "No connection.");
  Feed feed = this->feed();
  begin(feed);
  pass(absl::Minutes(15) - absl::Milliseconds(500));
  recovery_.give({.network = true});
  feed.handleWakeUps();
  EXPECT_EQ(told_.reload(), start + absl::Minutes(15));
}

TEST_F(FeedTest, KeepsThePlanForASignWhenTheClockIsSet) {
  environment_.set("FAKE_EXTENSION_SENTENCE", "No connection.");
  Feed feed = this->feed();
  begin(feed);
  recovery_.give({.network = true});
  set(start + absl::Minutes(5));
  feed.handleWakeUps();
  EXPECT_EQ(told_.reload(), time_.now() + absl::Seconds(1));
}

TEST_F(FeedTest, FollowsReloadDatesInThePastWithPausesThatGrow) {
  environment_.set("FAKE_EXTENSION_RELOAD_SECONDS", "-3600");
  Feed feed = this->feed();
  begin(feed);
  for (const int seconds : {1, 2, 4, 8}) {
    EXPECT_EQ(told_.reload(), time_.now() + absl::Seconds(seconds));
    pass(absl::Seconds(seconds));
    feed.handleWakeUps();
  }
}

TEST_F(FeedTest, RunsOnAThreadThatEndsWhileTheExtensionHangs) {
  environment_.set("FAKE_EXTENSION", "hang and ignore signals");
  auto patient = settings();
  patient.requestDeadline = absl::Hours(1);  // waited for, it would outlast the test
  {
    FeedThread thread(patient, told_.listener(), Feed::Placeholders::none);
    thread.post([](Feed& feed) { feed.show({WidgetFamily::systemSmall}); });
    ASSERT_TRUE(support::eventually([this] { return starts() == 1; }));
  }
  EXPECT_THAT(told_.all(), IsEmpty());
}

TEST_F(FeedTest, StartsNoThreadThatNothingCouldWake) {
  if (support::sanitized) GTEST_SKIP() << "the sanitizers need descriptors of their own to look at an object's type";
  rlimit before{};
  ASSERT_EQ(getrlimit(RLIMIT_NOFILE, &before), 0);
  const rlimit none{.rlim_cur = 0, .rlim_max = before.rlim_max};
  ASSERT_EQ(setrlimit(RLIMIT_NOFILE, &none), 0);
  EXPECT_THROW(FeedThread(settings(), told_.listener(), Feed::Placeholders::none), std::system_error);
  setrlimit(RLIMIT_NOFILE, &before);
}

TEST_F(FeedTest, InterruptsALoadForATaskAndBeginsItAgain) {
  // Answers while a file is there, else it is silent.
  folder_.write("sometimes-silent", "#!/bin/sh\n[ -e " + folder_.path("well") + " ] || { : >" + folder_.path("silent") +
                                        "; exec sleep 1000; }\nexec " VAMBA_FAKE_EXTENSION "\n");
  std::filesystem::permissions(folder_.path("sometimes-silent"), std::filesystem::perms::owner_all);
  auto sometimesSilent = settings();
  sometimesSilent.program = folder_.path("sometimes-silent");
  folder_.write("well", "");
  FeedThread thread(sometimesSilent, told_.listener(), Feed::Placeholders::none);
  thread.post([](Feed& feed) { feed.show({WidgetFamily::systemSmall}); });
  ASSERT_TRUE(told_.waitFor(2));
  std::filesystem::remove(folder_.path("well"));
  thread.post([](Feed& feed) { feed.reload(); });
  ASSERT_TRUE(support::eventually([this] { return std::filesystem::exists(folder_.path("silent")); }));
  folder_.write("well", "");
  thread.post([](Feed& feed) { feed.show({WidgetFamily::systemLarge}); });
  ASSERT_TRUE(told_.waitFor(3));
  EXPECT_THAT(told_.all().back(), HasSubstr("timeline systemLarge"));
}

}  // namespace
}  // namespace host
