#include "base/files/quarantine.hpp"

#include <gtest/gtest.h>

#include "support/file_content.hpp"
#include "support/temporary_folder.hpp"

namespace base {
namespace {

TEST(SetAside, TakesTheFirstFreeNameAndOverwritesNothing) {
  const support::TemporaryFolder folder;
  folder.write("file.bad-1", "first");
  std::filesystem::create_symlink("nowhere", folder.path("file.bad-2"));
  folder.write("file", "third");
  EXPECT_EQ(quarantine(folder.path("file"), ".bad"), folder.path("file.bad-3"));
  EXPECT_EQ(support::contentOf(folder.path("file.bad-1")), "first");
  EXPECT_EQ(support::contentOf(folder.path("file.bad-3")), "third");
  EXPECT_FALSE(std::filesystem::exists(folder.path("file")));
}

TEST(SetAside, MovesWhatIsBehindALinkAndKeepsTheLink) {
  const support::TemporaryFolder folder;
  folder.write("real", "content");
  std::filesystem::create_symlink("real", folder.path("link"));
  EXPECT_EQ(quarantine(folder.path("link"), ".bad"), folder.path("real.bad-1"));
  EXPECT_TRUE(std::filesystem::is_symlink(folder.path("link")));
}

TEST(SetAside, TakesFoldersAndLinksThatLeadNowhere) {
  const support::TemporaryFolder folder;
  std::filesystem::create_directory(folder.path("folder"));
  std::filesystem::create_symlink("loop", folder.path("loop"));
  EXPECT_EQ(quarantine(folder.path("folder"), ".bad"), folder.path("folder.bad-1"));
  EXPECT_EQ(quarantine(folder.path("loop"), ".bad"), folder.path("loop.bad-1"));
}

TEST(SetAside, SaysWhyItCannot) {
  const support::TemporaryFolder folder;
  EXPECT_EQ(quarantine(folder.path("missing"), ".bad").error(), "No such file or directory");
}

}  // namespace
}  // namespace base
