#include "host/doctor/ask_program.hpp"

#include <gmock/gmock.h>

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

TEST(AskProgram, EndsAProgramThatDoesNotAnswer) {
  EXPECT_EQ(askShell("exec sleep 1000", absl::Milliseconds(50)).error(), "sh did not answer in time");
}

}  // namespace
}  // namespace host
