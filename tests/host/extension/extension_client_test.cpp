#include "host/extension/extension_client.hpp"

#include <array>
#include <cerrno>
#include <chrono>
#include <csignal>
#include <fstream>
#include <string>
#include <vector>

#include <fcntl.h>
#include <gtest/gtest.h>
#include <poll.h>
#include <sys/syscall.h>
#include <sys/wait.h>
#include <unistd.h>

#include "base/descriptors/file_descriptor.hpp"
#include "protocol/view_tree/builders.hpp"
#include "support/environment.hpp"
#include "support/sanitized.hpp"
#include "support/temporary_folder.hpp"
#include "support/waiting.hpp"

namespace host {
namespace {

using Kind = ExtensionFailure::Kind;
using nlohmann::json;
using protocol::WidgetFamily;
using std::chrono::steady_clock;

// Long enough for a process to start on a busy machine under a sanitizer.
constexpr absl::Duration generous = absl::Seconds(30);

std::string titleOf(const Entry& entry) { return json::parse(entry.json).at("tytul"); }

class ExtensionClientTest : public testing::Test {
 protected:
  ExtensionClientTest() {
    std::signal(SIGPIPE, SIG_IGN);
    environment_.set("FAKE_EXTENSION_STARTS", folder_.path("starts"));
  }

  /// Every test ends with nothing left behind.
  void TearDown() override {
    for (const pid_t id : processes()) EXPECT_TRUE(isGone(id)) << "process " << id << " is left";
    EXPECT_EQ(::waitpid(-1, nullptr, WNOHANG), -1) << "a child was not waited for";
    EXPECT_EQ(errno, ECHILD);
  }

  void behave(const std::string& behaviour) { environment_.set("FAKE_EXTENSION", behaviour); }

  static ExtensionSettings settings(absl::Duration deadline = generous) {
    return {.program = VAMBA_FAKE_EXTENSION,
            .requestDeadline = deadline,
            .loadDeadline = deadline,
            .timeToLeave = generous,
            .diagnostics = -1};
  }

  std::vector<pid_t> processes() const {
    std::vector<pid_t> ids;
    std::ifstream lines(folder_.path("starts"));
    for (pid_t id = 0; lines >> id;) ids.push_back(id);
    return ids;
  }

  /// Whether the process has ended; one that was killed may need a moment.
  static bool isGone(pid_t id) {
    const base::FileDescriptor identity(static_cast<int>(::syscall(SYS_pidfd_open, id, 0)));
    if (identity.get() < 0) return errno == ESRCH;
    pollfd entry{.fd = identity.get(), .events = POLLIN, .revents = 0};
    return ::poll(&entry, 1, static_cast<int>(std::chrono::milliseconds(support::longPatience).count())) == 1;
  }

  support::TemporaryFolder folder_;
  support::ScopedEnvironment environment_;
};

TEST_F(ExtensionClientTest, AsksEveryMethod) {
  ExtensionClient client(settings());
  EXPECT_FALSE(client.running());
  const auto widgets = client.widgets();
  ASSERT_TRUE(widgets) << widgets.error().message;
  EXPECT_EQ(widgets->front().kind, "fake");
  EXPECT_EQ(client.widgetsJson()->at(0).at("displayName"), "Fake");
  EXPECT_EQ(titleOf(*client.placeholder("fake", WidgetFamily::systemSmall)), "placeholder");
  EXPECT_EQ(titleOf(*client.snapshot("fake", WidgetFamily::systemSmall, false)), "snapshot");
  const auto timeline = client.timeline("fake", WidgetFamily::systemLarge);
  ASSERT_TRUE(timeline) << timeline.error().message;
  EXPECT_EQ(titleOf(timeline->entries.front()), "timeline");
  const auto view = client.render("fake", WidgetFamily::systemLarge, timeline->entries.front().json);
  ASSERT_TRUE(view) << view.error().message;
  EXPECT_EQ(*view, protocol::Node(protocol::Text(std::string("timeline systemLarge"))
                                      .containerBackground(protocol::ContainerBackground::background)));
  EXPECT_TRUE(client.running());
  EXPECT_EQ(processes().size(), 1U);
}

TEST_F(ExtensionClientTest, StartsAgainAfterStop) {
  ExtensionClient client(settings());
  ASSERT_TRUE(client.widgets());
  client.stop();
  EXPECT_FALSE(client.running());
  client.stop();
  ASSERT_TRUE(client.widgets());
  EXPECT_EQ(processes().size(), 2U);
}

TEST_F(ExtensionClientTest, StartsAgainAfterOneThatEndedWhileIdle) {
  ExtensionClient client(settings());
  ASSERT_TRUE(client.widgets());
  const pid_t first = processes().front();
  ASSERT_EQ(::kill(first, SIGKILL), 0);
  ASSERT_TRUE(isGone(first));
  EXPECT_FALSE(client.running());
  EXPECT_TRUE(client.widgets());
}

TEST_F(ExtensionClientTest, TellsWhatCannotBeStarted) {
  folder_.write("text", "no program");
  for (const std::string& program : {folder_.path("absent"), folder_.path("text"), folder_.path("")}) {
    ExtensionClient client({.program = program});
    const auto widgets = client.widgets();
    ASSERT_FALSE(widgets);
    EXPECT_EQ(widgets.error().kind, Kind::cannotStart);
    EXPECT_NE(widgets.error().message.find(program), std::string::npos) << widgets.error().message;
  }
}

struct Misbehaviour {
  const char* behaviour;
  Kind kind;
  const char* message;  ///< part of it
};

TEST_F(ExtensionClientTest, FailsAtOnceWhereTheExtensionCannotAnswerAnyMore) {
  for (const Misbehaviour& c : {
           Misbehaviour{"exit 3", Kind::died, "ended with status 3"},
           Misbehaviour{"die mid-line", Kind::nonsense, "not an answer"},
           Misbehaviour{"crash", Kind::died, "was ended by signal 11"},
           Misbehaviour{"close output", Kind::died, "closed its output"},
           Misbehaviour{"die leaving a grandchild", Kind::died, "ended with status 0"},
           Misbehaviour{"garbage", Kind::nonsense, "not an answer: Segmentation ?[1mfault"},
           Misbehaviour{"flood", Kind::tooLong, "longer than 16 MiB"},
           Misbehaviour{"notifications", Kind::nonsense, "notifications without end"},
           Misbehaviour{"unknown ids", Kind::nonsense, "what it was not asked"},
           Misbehaviour{"many values", Kind::tooLong, "more than 750,000 values"},
           Misbehaviour{"empty object", Kind::nonsense, "\"widgets\" makes no sense"},
       }) {
    behave(c.behaviour);
    folder_.write("starts", "");
    // The deadline is far longer than the test's own time limit.
    ExtensionClient client(settings(absl::Minutes(10)));
    const auto widgets = client.widgets();
    ASSERT_FALSE(widgets) << c.behaviour;
    EXPECT_EQ(widgets.error().kind, c.kind) << c.behaviour << ": " << widgets.error().message;
    EXPECT_NE(widgets.error().message.find(c.message), std::string::npos) << widgets.error().message;
    EXPECT_FALSE(client.running()) << c.behaviour;
    for (const pid_t id : processes()) EXPECT_TRUE(isGone(id)) << c.behaviour;
  }
}

/// What this process has in memory, in kilobytes.
long residentMemory() {
  std::ifstream status("/proc/self/status");
  for (std::string line; std::getline(status, line);) {
    if (line.starts_with("VmRSS:")) return std::stol(line.substr(6));
  }
  return -1;
}

TEST_F(ExtensionClientTest, KeepsOfALongAnswerOnlyItsEntries) {
  if (support::sanitized) GTEST_SKIP() << "a sanitizer keeps what is freed";
  behave("long day");
  ExtensionClient client(settings(absl::Minutes(10)));
  const long before = residentMemory();
  const auto timeline = client.timeline("fake", WidgetFamily::systemMedium);
  ASSERT_TRUE(timeline) << timeline.error().message;
  client.stop();
  const auto entry = static_cast<long>(timeline->entries[0].json.size() / 1024);
  EXPECT_GT(entry, 5'000);
  EXPECT_LT(residentMemory() - before, 2 * entry + 10'000) << "kilobytes";
}

TEST_F(ExtensionClientTest, FailsAtOnceWhereTheExtensionListensNoMore) {
  behave("close input, then answer");
  ExtensionClient client(settings(absl::Minutes(10)));
  ASSERT_TRUE(client.widgets());
  const auto again = client.widgets();
  ASSERT_FALSE(again);
  EXPECT_EQ(again.error().kind, Kind::died);
  EXPECT_EQ(again.error().message, "the extension closed its input before it answered");
}

TEST_F(ExtensionClientTest, GivesUpASilentExtensionAtItsDeadline) {
  for (const char* const behaviour :
       {"hang", "hang and ignore signals", "spin", "stop reading", "drip", "id as text"}) {
    behave(behaviour);
    ExtensionClient client(settings(absl::Milliseconds(300)));
    const auto begin = steady_clock::now();
    const auto widgets = client.widgets();
    const auto took = steady_clock::now() - begin;
    ASSERT_FALSE(widgets) << behaviour;
    EXPECT_EQ(widgets.error().kind, Kind::timedOut) << behaviour << ": " << widgets.error().message;
    EXPECT_EQ(widgets.error().message, "the extension did not answer \"widgets\" in time");
    EXPECT_GE(took, std::chrono::milliseconds(300)) << behaviour;
    EXPECT_FALSE(client.running());
  }
}

TEST_F(ExtensionClientTest, GivesUpWhereALargeRequestIsNotRead) {
  behave("stop reading");
  ExtensionClient client(settings(absl::Milliseconds(300)));
  const auto view =
      client.render("fake", WidgetFamily::systemSmall, R"({"tytul":")" + std::string(1 << 20, 't') + "\"}");
  ASSERT_FALSE(view);
  EXPECT_EQ(view.error().kind, Kind::timedOut);
}

TEST_F(ExtensionClientTest, RefusesAnAnswerThatComesBeforeTheQuestionIsRead) {
  behave("answer before reading");
  ExtensionClient client(settings());
  const auto view =
      client.render("fake", WidgetFamily::systemSmall, R"({"tytul":")" + std::string(1 << 20, 't') + "\"}");
  ASSERT_FALSE(view);
  EXPECT_EQ(view.error().kind, Kind::nonsense);
  EXPECT_EQ(view.error().message, "the extension answered before it had read the question");
  EXPECT_FALSE(client.running());
}

TEST_F(ExtensionClientTest, RefusesARequestLongerThanALine) {
  ExtensionClient client(settings());
  const auto view =
      client.render("fake", WidgetFamily::systemSmall, "\"" + std::string(std::size_t{64} << 20, 't') + "\"");
  ASSERT_FALSE(view);
  EXPECT_EQ(view.error().kind, Kind::refused);
  EXPECT_TRUE(client.running());
}

TEST_F(ExtensionClientTest, GivesALoadItsOwnDeadline) {
  behave("hang");
  // Only the deadline of 50 ms can pass: a test that waited for the other one would exceed its time limit.
  auto patient = settings(absl::Milliseconds(50));
  patient.loadDeadline = absl::Hours(1);
  ExtensionClient client(patient);
  EXPECT_EQ(client.snapshot("fake", WidgetFamily::systemSmall, true).error().kind, Kind::timedOut);
  EXPECT_EQ(client.placeholder("fake", WidgetFamily::systemSmall).error().kind, Kind::timedOut);

  auto impatient = settings(absl::Hours(1));
  impatient.loadDeadline = absl::Milliseconds(50);
  ExtensionClient loading(impatient);
  EXPECT_EQ(loading.timeline("fake", WidgetFamily::systemSmall).error().kind, Kind::timedOut);
  EXPECT_EQ(loading.snapshot("fake", WidgetFamily::systemSmall, false).error().kind, Kind::timedOut);
}

TEST_F(ExtensionClientTest, TakesAnswersFromAnExtensionThatIsOnlyOdd) {
  for (const char* const behaviour : {"a notification, then answer", "one unknown id, then answer", "byte by byte",
                                      "much on standard error", "large answer"}) {
    behave(behaviour);
    ExtensionClient client(settings());
    for (int i = 0; i < 3; ++i) {
      const auto entry = client.placeholder("fake", WidgetFamily::systemSmall);
      ASSERT_TRUE(entry) << behaviour << ": " << entry.error().message;
    }
  }
}

TEST_F(ExtensionClientTest, TakesTheAnswerOfAnExtensionThatEndsRightAfter) {
  behave("answer and exit");
  for (int i = 0; i < 20; ++i) {
    const auto widgets = ExtensionClient(settings()).widgets();
    ASSERT_TRUE(widgets) << widgets.error().message;
  }
}

TEST_F(ExtensionClientTest, KeepsAnExtensionThatRefuses) {
  behave("refuse");
  ExtensionClient client(settings());
  const auto entry = client.placeholder("fake", WidgetFamily::systemMedium);
  ASSERT_FALSE(entry);
  EXPECT_EQ(entry.error().kind, Kind::refused);
  EXPECT_EQ(entry.error().message, "the extension refused \"placeholder\": \"family\": ?[31munknown");
  EXPECT_TRUE(client.running());
}

TEST_F(ExtensionClientTest, TakesAnErrorWithoutAnIdForItsOwn) {
  behave("not understand");
  ExtensionClient client(settings());
  EXPECT_EQ(client.widgets().error().kind, Kind::refused);
}

TEST_F(ExtensionClientTest, GivesUpWhenInterrupted) {
  behave("hang");
  std::array<int, 2> ends{};
  ASSERT_EQ(::pipe2(ends.data(), O_CLOEXEC), 0);
  auto interruptible = settings(absl::Minutes(10));
  interruptible.interruption = ends[0];
  ASSERT_EQ(::write(ends[1], "x", 1), 1);
  ExtensionClient client(interruptible);
  EXPECT_EQ(client.widgets().error().kind, Kind::interrupted);
  EXPECT_FALSE(client.running());
  ::close(ends[0]);
  ::close(ends[1]);
}

TEST_F(ExtensionClientTest, KillsWhatDoesNotLeaveByItself) {
  for (const char* const behaviour : {"ignore the end", "answer with a grandchild"}) {
    behave(behaviour);
    folder_.write("starts", "");
    auto impatient = settings();
    impatient.timeToLeave = absl::Milliseconds(50);
    {
      ExtensionClient client(impatient);
      ASSERT_TRUE(client.widgets()) << behaviour;
    }
    ASSERT_FALSE(processes().empty());
    for (const pid_t id : processes()) EXPECT_TRUE(isGone(id)) << behaviour;
  }
}

TEST_F(ExtensionClientTest, HandsOnWhatADyingExtensionExplains) {
  behave("explain and exit");
  std::array<int, 2> ends{};
  ASSERT_EQ(::pipe2(ends.data(), O_CLOEXEC), 0);
  auto talkative = settings();
  talkative.diagnostics = ends[1];
  EXPECT_EQ(ExtensionClient(talkative).widgets().error().kind, Kind::died);
  std::array<char, 100> text{};
  ASSERT_GT(::read(ends[0], text.data(), text.size() - 1), 0);
  EXPECT_STREQ(text.data(), "no ?[31mday\n");
  ::close(ends[0]);
  ::close(ends[1]);
}

TEST_F(ExtensionClientTest, LeavesClosedStandardStreamsClosed) {
  // Something else opened with the number of a standard stream would receive the host's output.
  const base::FileDescriptor saved(::fcntl(STDIN_FILENO, F_DUPFD_CLOEXEC, 10));
  ::close(STDIN_FILENO);
  {
    ExtensionClient client(settings());
    const auto widgets = client.widgets();
    EXPECT_TRUE(widgets) << widgets.error().message;
    EXPECT_EQ(::fcntl(STDIN_FILENO, F_GETFD), -1);
  }
  if (saved.get() >= 0) ::dup2(saved.get(), STDIN_FILENO);
}

TEST_F(ExtensionClientTest, LeavesNoDescriptorOpen) {
  const auto openDescriptors = [] {
    return std::distance(std::filesystem::directory_iterator("/proc/self/fd"), std::filesystem::directory_iterator());
  };
  const auto before = openDescriptors();
  for (const char* const behaviour : {"", "exit 3", "garbage"}) {
    behave(behaviour);
    ExtensionClient client(settings());
    static_cast<void>(client.widgets());
    static_cast<void>(client.widgets());
  }
  static_cast<void>(ExtensionClient({.program = folder_.path("absent")}).widgets());
  EXPECT_EQ(openDescriptors(), before);
}

}  // namespace
}  // namespace host
