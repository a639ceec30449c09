#include <array>
#include <cstdio>

#include <gmock/gmock.h>
#include <nlohmann/json.hpp>
#include <sys/resource.h>

#include "base/descriptors/file_descriptor.hpp"
#include "base/descriptors/write_all.hpp"
#include "host/commands/host_process.hpp"
#include "support/file_content.hpp"
#include "support/sanitized.hpp"
#include "support/waiting.hpp"

namespace host {
namespace {

using nlohmann::json;
using testing::HasSubstr;

class HostCommands : public testing::Test {
 protected:
  void behave(const std::string& behaviour) { environment_.set("FAKE_EXTENSION", behaviour); }

  support::ScopedEnvironment environment_;
  support::TemporaryFolder folder_;
};

TEST_F(HostCommands, GalleryTellsNameDescriptionAndSizes) {
  const auto [status, output, errors] = runHost({"gallery"});
  EXPECT_EQ(status, 0);
  EXPECT_EQ(output, "Fake\nA widget for tests\nsmall, medium, large\n");
  EXPECT_EQ(errors, "");
  EXPECT_EQ(json::parse(runHost({"gallery", "--json"}).output)[0]["kind"], "fake");
}

TEST_F(HostCommands, AnswersComeAsTheyAreAsJson) {
  EXPECT_EQ(json::parse(runHost({"placeholder"}).output)["entry"]["tytul"], "placeholder");
  EXPECT_EQ(json::parse(runHost({"snapshot", "--preview"}).output)["entry"]["tytul"], "snapshot");
  const auto timeline = json::parse(runHost({"timeline", "--family", "large"}).output);
  EXPECT_EQ(timeline["entries"][0]["tytul"], "timeline");
  EXPECT_EQ(timeline["policy"]["type"], "after");
}

TEST_F(HostCommands, ShowDrawsTheEntryAskedForInItsSize) {
  const std::pair<const char*, const char*> cases[] = {{"timeline", "timeline systemSmall"},
                                                       {"snapshot", "snapshot systemSmall"},
                                                       {"preview", "snapshot systemSmall"},
                                                       {"placeholder", "placeholder systemSmall"}};
  for (const auto& [entry, text] : cases) {
    EXPECT_THAT(runHost({"show", "--family", "small", "--entry", entry}).output, HasSubstr(text));
  }
}

TEST_F(HostCommands, VerboseTellsTimesInTheDevicesZone) {
  environment_.set("FAKE_EXTENSION_NOW", "1741944600");  // 2025-03-14T09:30:00Z
  for (const auto& [zone, time] : {std::pair{"Asia/Kolkata", "15:15:00"}, {"WYS-3:30", "13:15:00"}}) {
    environment_.set("TZ", zone);
    EXPECT_THAT(runHost({"show", "--verbose"}).errors, HasSubstr(std::string("asked again at 2025-03-14 ") + time));
  }
}

TEST_F(HostCommands, ShowTakesAnEntryFromAFileOrStandardInput) {
  folder_.write("entry", R"({"date": "2025-03-14T09:30:00Z", "tytul": "mine"})");
  EXPECT_THAT(runHost({"show", "--entry", folder_.path("entry")}).output, HasSubstr("mine systemMedium"));
  EXPECT_THAT(runHost({"show", "--entry", "-"}, R"({"tytul": "piped"})").output, HasSubstr("piped systemMedium"));
}

TEST_F(HostCommands, ShowRefusesAnEntryWithoutEndAndTakesLittleMemory) {
  std::string tasks = R"({"zadania":[{})";
  while (tasks.size() < std::size_t{40} << 20) tasks += R"(,{"tytul":"x"})";
  folder_.write("tasks", tasks + "]}");
  folder_.write("title", R"({"tytul":")" + std::string(std::size_t{60} << 20, 'x') + "\"}");
  for (const auto& file : {folder_.path("tasks"), folder_.path("title"), std::string("/dev/zero")}) {
    const auto outcome = runHost({"show", "--entry", file});
    EXPECT_EQ(outcome.status, 2);
    EXPECT_EQ(outcome.errors, "vamba-host: " + file + " is longer than 16 MiB\n");
  }
  folder_.write("lines", R"({"zadania":)" + std::string(std::size_t{15} << 20, '\n') + "x}");
  const auto outcome = runHost({"show", "--entry", folder_.path("lines")});
  EXPECT_EQ(outcome.status, 2);
  EXPECT_EQ(outcome.errors, "vamba-host: " + folder_.path("lines") +
                                " does not hold an entry: more than 64 KiB of white space between two values\n");
  rusage children{};
  getrusage(RUSAGE_CHILDREN, &children);
  if (!support::sanitized) {
    EXPECT_LT(children.ru_maxrss, 200 * 1024) << "kilobytes";
  }
}

TEST_F(HostCommands, ShowTakesLittleMemoryForTheLargestEntries) {
  if (support::sanitized) GTEST_SKIP() << "a sanitizer takes memory of its own";
  constexpr std::size_t longest = (std::size_t{16} << 20) - 200;
  const std::string beginning = R"({"date":"2025-03-14T08:00:00Z","doDecyzji":0,"spotkania":[],"zadania":[)";
  const std::string id = R"({"numer":1,"id":"00112233-4455-6677-8899-aabbccddeeff","tytul":")";
  const std::string text(16, 'x');
  const std::string end = R"(","status":")" + text + R"(","projektNazwa":")" + text + "\"}";

  std::string tasks = beginning + id + text + end;
  while (tasks.size() < longest) tasks.append(",").append(id).append(text).append(end);
  folder_.write("tasks", tasks + "]}");
  folder_.write("title", beginning + id + std::string(longest - 300, 'x') + end + "]}");
  // Each value in an object of its own takes the most memory.
  std::string nested = R"({"x":[0)";
  for (int i = 0; i < 1450; ++i) {
    nested += ',';
    for (int level = 0; level < 500; ++level) nested += R"({"abcdefghijklmn":)";
    nested.append("0").append(500, '}');
  }
  folder_.write("nested", nested + "]}");
  for (const char* const file : {"tasks", "title", "nested"}) {
    // On a slow machine the extension does not answer in time; what it takes is the same.
    const auto outcome = runHost({"show", "--entry", folder_.path(file)}, "", VAMBA_EXTENSION);
    EXPECT_LT(outcome.status, 3) << file << ": " << outcome.errors;
  }
  rusage children{};
  getrusage(RUSAGE_CHILDREN, &children);
  EXPECT_LT(children.ru_maxrss, 200 * 1024) << "kilobytes, of the host and the extension";
}

TEST_F(HostCommands, ShowAsJsonPrintsTheView) {
  const auto view = json::parse(runHost({"show", "--format", "json"}).output);
  EXPECT_EQ(view["type"], "text");
  EXPECT_EQ(view["text"], "timeline systemMedium");
}

TEST_F(HostCommands, ShowSpeaksToStatusBarsAndPrompts) {
  const auto bar = json::parse(runHost({"show", "--format", "waybar"}).output);
  EXPECT_EQ(bar, (json{{"text", "timeline systemMedium"}, {"tooltip", "timeline systemMedium"}, {"class", {"ok"}}}));
  EXPECT_EQ(runHost({"show", "--format", "line"}).output, "timeline systemMedium\n");
  const auto failing =
      runHost({"show", "--entry", "-", "--format", "line"}, R"({"tytul": "No connection.", "blad": "x"})");
  EXPECT_EQ(failing.output, "⚠ No connection. systemMedium\n");
}

TEST_F(HostCommands, ShowWaitsForANonBlockingStandardInput) {
  std::array<int, 2> ends{};
  ASSERT_EQ(pipe2(ends.data(), O_CLOEXEC), 0);
  const base::FileDescriptor reading(ends[0]);
  base::FileDescriptor writing(ends[1]);
  ASSERT_EQ(fcntl(reading.get(), F_SETFL, O_NONBLOCK), 0);
  HostProcess host({"show", "--entry", "-", "--format", "line"}, reading.get());
  // It finds the pipe empty once at least: the second half comes when the first is read.
  ASSERT_FALSE(base::writeAll(writing.get(), R"({"tytul": )"));
  ASSERT_TRUE(support::eventually([&] {
    int waiting = 0;
    return ioctl(reading.get(), FIONREAD, &waiting) == 0 && waiting == 0;
  }));
  ASSERT_FALSE(base::writeAll(writing.get(), R"("late"})"));
  writing.reset();
  EXPECT_EQ(host.rest(), "late systemMedium\n") << host.errors();
  EXPECT_EQ(host.status(), 0);
}

TEST_F(HostCommands, NoWidgetOfTheSizeIsStatus1) {
  behave("no widgets");
  for (const std::string command : {"show", "timeline", "placeholder"}) {
    const auto [status, output, errors] = runHost({command});
    EXPECT_EQ(status, 1) << command;
    EXPECT_EQ(output, "");
    EXPECT_EQ(errors, "vamba-host: the extension offers no widget of this size\n");
  }
  behave("a small widget alone");
  EXPECT_EQ(runHost({"show", "--family", "small"}).status, 0);
  EXPECT_EQ(runHost({"show", "--family", "large"}).errors, "vamba-host: the extension offers no widget of this size\n");
}

TEST_F(HostCommands, VerboseSaysWhatIsAsked) {
  const auto errors = runHost({"show", "--verbose"}).errors;
  EXPECT_THAT(errors, HasSubstr("vamba-host: starting " VAMBA_FAKE_EXTENSION "\n"));
  EXPECT_THAT(errors, HasSubstr("vamba-host: \"timeline\" was answered after "));
}

TEST_F(HostCommands, TooFewDescriptorsAreASentenceAndAStatus) {
  if (support::sanitized) GTEST_SKIP() << "the sanitizers need descriptors of their own to look at an object's type";
  for (const std::string command : {"show", "watch", "gallery"}) {
    for (int descriptors = 3; descriptors < 20; ++descriptors) {
      const std::string shell = "(ulimit -n " + std::to_string(descriptors) +
                                "; exec " VAMBA_HOST " --extension " VAMBA_FAKE_EXTENSION " " + command +
                                ") 2>&1 | head -n 3";
      FILE* const host = popen(shell.c_str(), "r");
      std::array<char, 4096> text{};
      const std::string said(text.data(), fread(text.data(), 1, text.size(), host));
      pclose(host);
      EXPECT_THAT(said, testing::AnyOf(HasSubstr("vamba-host: "), HasSubstr("Fake"), HasSubstr("timeline systemMedium"),
                                       HasSubstr("error while loading shared libraries")))
          << command << descriptors;
    }
  }
}

TEST_F(HostCommands, ShowWritesToAFile) {
  const auto file = folder_.path("board.txt");
  const auto [status, output, errors] = runHost({"show", "--output", file});
  EXPECT_EQ(status, 0);
  EXPECT_EQ(output, "");
  const std::string board = support::contentOf(file);
  EXPECT_THAT(board, HasSubstr("timeline systemMedium"));
  EXPECT_THAT(board, Not(HasSubstr("\x1b")));
}

TEST_F(HostCommands, BadInputIsTurnedAwayWithASentence) {
  EXPECT_EQ(runHost({"show", "--entry", "/no/such/file"}).status, 2);
  const auto broken = runHost({"show", "--entry", "-"}, "{broken");
  EXPECT_EQ(broken.status, 2);
  EXPECT_THAT(broken.errors, HasSubstr("standard input does not hold an entry: "));
  const auto unwritable = runHost({"show", "--output", "/dev/full"});
  EXPECT_EQ(unwritable.status, 2);
  EXPECT_EQ(unwritable.errors, "vamba-host: can't write /dev/full: No space left on device\n");
}

TEST_F(HostCommands, AnExtensionThatCannotBeStartedIsStatus1) {
  const auto missing = runHost({"show"}, "", "/no/such/extension");
  EXPECT_EQ(missing.status, 1);
  EXPECT_EQ(missing.output, "");
  EXPECT_THAT(missing.errors, HasSubstr("/no/such/extension"));
}

TEST_F(HostCommands, AnExtensionThatKeepsDyingIsGivenUpWithStatus1) {
  behave("exit 3");
  const auto [status, output, errors] = runHost({"show"});
  EXPECT_EQ(status, 1);
  EXPECT_EQ(output, "");
  EXPECT_THAT(errors, HasSubstr("status 3"));
}

TEST_F(HostCommands, AnExtensionThatDiesOnceIsStartedAgain) {
  const std::string program = folder_.path("dies-once");
  folder_.write("dies-once", "#!/bin/sh\n[ -e " + folder_.path("died") + " ] || { : >" + folder_.path("died") +
                                 "; exit 1; }\nexec " VAMBA_FAKE_EXTENSION "\n");
  std::filesystem::permissions(program, std::filesystem::perms::owner_all);
  const auto [status, output, errors] = runHost({"show"}, "", program);
  EXPECT_EQ(status, 0) << errors;
  EXPECT_THAT(output, HasSubstr("timeline systemMedium"));
}

TEST_F(HostCommands, OnATerminalTheBoardIsAsWideAsThatAndColoured) {
  environment_.set("TERM", "xterm-256color");
  environment_.unset("NO_COLOR");
  HostProcess host({"show"}, Onto::terminal);
  const std::string board = host.rest();
  std::string topEdge = "\x1b[38;5;243m╭";
  constexpr int columns = 50;
  for (int column = 2; column < columns; ++column) topEdge += "─";
  EXPECT_THAT(board, HasSubstr(topEdge + "╮"));
  EXPECT_THAT(board, HasSubstr("timeline systemMedium"));
  EXPECT_EQ(host.status(), 0);
}

TEST_F(HostCommands, PlainTextHasNoEscapeSequences) {
  for (const auto& [name, value] : {std::pair{"NO_COLOR", "1"}, std::pair{"TERM", "dumb"}}) {
    support::ScopedEnvironment environment;
    environment.set("TERM", "xterm-256color");
    environment.set(name, value);
    HostProcess host({"show"}, Onto::terminal);
    EXPECT_THAT(host.rest(), Not(HasSubstr("\x1b"))) << name;
  }
  environment_.set("TERM", "xterm-256color");
  EXPECT_THAT(runHost({"show"}).output, Not(HasSubstr("\x1b")));
}

}  // namespace
}  // namespace host
