// What the host says, on a terminal and in systemd's journal.
#include "host/diagnostics/diagnostics.hpp"

#include <string>

#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include "support/environment.hpp"

namespace host {
namespace {

/// What `say` writes while standard error is a file that JOURNAL_STREAM may name.
std::string said(Priority priority, bool isTheJournal) {
  support::ScopedEnvironment environment;
  testing::internal::CaptureStderr();
  struct stat status{};
  fstat(STDERR_FILENO, &status);
  environment.set("JOURNAL_STREAM",
                  std::to_string(status.st_dev) + ":" + std::to_string(status.st_ino + (isTheJournal ? 0 : 1)));
  EXPECT_EQ(leadsToJournal(STDERR_FILENO), isTheJournal);
  say(priority, "the feed ended");
  return testing::internal::GetCapturedStderr();
}

TEST(Diagnostics, BeginWithTheirPriorityInTheJournalAlone) {
  EXPECT_EQ(said(Priority::warning, true), "<4>vamba-host: the feed ended\n");
  EXPECT_EQ(said(Priority::debug, true), "<7>vamba-host: the feed ended\n");
  EXPECT_EQ(said(Priority::debug, false), "vamba-host: the feed ended\n");
}

TEST(Diagnostics, WithoutAJournalNoStreamLeadsToIt) {
  support::ScopedEnvironment environment;
  environment.unset("JOURNAL_STREAM");
  EXPECT_FALSE(leadsToJournal(STDERR_FILENO));
  environment.set("JOURNAL_STREAM", "");
  EXPECT_FALSE(leadsToJournal(STDERR_FILENO));
  EXPECT_FALSE(leadsToJournal(-1));
}

}  // namespace
}  // namespace host
