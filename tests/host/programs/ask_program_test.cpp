#include "host/programs/ask_program.hpp"

#include <gmock/gmock.h>
#include <sys/resource.h>

#include "support/sanitized.hpp"

namespace host {
namespace {

using testing::HasSubstr;

std::expected<std::string, std::string> askShell(const std::string& script,
                                                 absl::Duration patience = absl::Seconds(30)) {
  return askProgram("/bin/sh", {"-c", script}, patience);
}

TEST(AskProgram, AnswersWithTheOutputAlone) {
  EXPECT_EQ(askShell("echo aside >&2; echo Inter").value_or("failed"), "Inter");
  EXPECT_EQ(askShell("printf 'two\\nlines\\n\\n'").value_or("failed"), "two\nlines");
  EXPECT_EQ(askShell("read line || echo no input").value_or("failed"), "no input");
}

TEST(AskProgram, OfAFailedProgramTellsTheLastLineThatItSaid) {
  EXPECT_EQ(askShell("echo output; echo first >&2; echo 'vamba-host: no font' >&2; exit 1").error(), "no font");
  EXPECT_EQ(askShell("echo 'no font' >&2; kill -9 $$").error(), "no font");
  EXPECT_EQ(askShell("exit 3").error(), "sh failed");
}

TEST(AskProgram, KeepsLittleOfEndlessOutput) {
  const auto answer = askShell("head -c 10000000 /dev/zero | tr '\\0' x");
  ASSERT_TRUE(answer);
  EXPECT_LT(answer->size(), 100'000U);
}

TEST(AskProgram, TellsWhyAProgramCannotBeStarted) {
  EXPECT_THAT(askProgram("/nowhere/program", {}, absl::Seconds(30)).error(),
              HasSubstr("/nowhere/program could not be started: No such file or directory"));
}

TEST(AskProgram, LooksAProgramUpInTheSearchPath) {
  EXPECT_EQ(askProgram("echo", {"here"}, absl::Seconds(30)).value_or("failed"), "here");
}

TEST(AskProgram, StartsNoneWhoseOutputItCouldNotRead) {
  if (support::sanitized) GTEST_SKIP() << "the sanitizers need descriptors of their own to look at an object's type";
  rlimit before{};
  ASSERT_EQ(getrlimit(RLIMIT_NOFILE, &before), 0);
  const rlimit none{.rlim_cur = 0, .rlim_max = before.rlim_max};
  ASSERT_EQ(setrlimit(RLIMIT_NOFILE, &none), 0);
  const auto answer = askShell("echo here");
  setrlimit(RLIMIT_NOFILE, &before);
  ASSERT_FALSE(answer);
  EXPECT_EQ(answer.error(), "/bin/sh could not be started: Too many open files");
}

TEST(AskProgram, EndsAProgramThatDoesNotAnswer) {
  EXPECT_EQ(askShell("exec sleep 1000", absl::Milliseconds(50)).error(), "sh did not answer in time");
}

}  // namespace
}  // namespace host
