#include "base/files/replace_file.hpp"

#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include "support/file_content.hpp"
#include "support/file_size_limit.hpp"
#include "support/temporary_folder.hpp"

namespace base {
namespace {

using support::contentOf;
using support::namesIn;
using Names = std::set<std::string>;

mode_t modeOf(const std::string& path) {
  struct stat status{};
  EXPECT_EQ(stat(path.c_str(), &status), 0) << path;
  return status.st_mode & 07777;
}

class ReplaceFile : public testing::Test {
 protected:
  std::expected<void, std::string> replace(const std::string& name, const std::string& text, Rights rights = {}) {
    return replaceFile(folder_.path(name), text, Durability::lasting, rights);
  }

  support::TemporaryFolder folder_;
};

TEST_F(ReplaceFile, LeavesTheNewContentAndNothingBeside) {
  ASSERT_TRUE(replace("file", "a longer first text"));
  ASSERT_TRUE(replace("file", std::string("b\0c", 3)));
  EXPECT_EQ(contentOf(folder_.path("file")), std::string("b\0c", 3));
  EXPECT_EQ(namesIn(folder_.path("")), Names{"file"});
}

TEST_F(ReplaceFile, GivesANewFileItsRightsAndKeepsThoseOfAnOldOne) {
  ASSERT_TRUE(replace("file", "new", {.file = 0600}));
  EXPECT_EQ(modeOf(folder_.path("file")), 0600U);
  ASSERT_EQ(chmod(folder_.path("file").c_str(), 0640), 0);
  ASSERT_TRUE(replace("file", "newer", {.file = 0600}));
  EXPECT_EQ(modeOf(folder_.path("file")), 0640U);
}

TEST_F(ReplaceFile, KeepsTheOwner) {
  // Only root can give a file away; everybody else's file is their own before and after.
  const bool root = geteuid() == 0;
  const uid_t user = root ? 1234 : geteuid();
  const gid_t group = root ? 1235 : getegid();
  folder_.write("file", "old");
  ASSERT_EQ(chown(folder_.path("file").c_str(), user, group), 0);
  ASSERT_TRUE(replace("file", "new"));
  struct stat status{};
  ASSERT_EQ(stat(folder_.path("file").c_str(), &status), 0);
  EXPECT_EQ(status.st_uid, user);
  EXPECT_EQ(status.st_gid, group);
}

TEST_F(ReplaceFile, WritesBehindLinksAlsoWhereNothingIsYet) {
  std::filesystem::create_directory(folder_.path("real"));
  std::filesystem::create_symlink("real/file", folder_.path("second"));
  std::filesystem::create_symlink(folder_.path("second"), folder_.path("first"));
  for (const char* text : {"new", "newer"}) {
    ASSERT_TRUE(replace("first", text));
    EXPECT_EQ(contentOf(folder_.path("real/file")), text);
    EXPECT_TRUE(std::filesystem::is_symlink(folder_.path("first")));
    EXPECT_TRUE(std::filesystem::is_symlink(folder_.path("second")));
  }
}

TEST_F(ReplaceFile, KeepsTheOldContentWhenTheDiskIsFull) {
  folder_.write("file", "old");
  const support::FileSizeLimit full(1000);
  EXPECT_EQ(replace("file", std::string(2000, 'x')).error(), "File too large");
  EXPECT_EQ(contentOf(folder_.path("file")), "old");
  EXPECT_EQ(namesIn(folder_.path("")), Names{"file"});
}

TEST_F(ReplaceFile, SaysWhyItCannot) {
  folder_.write("file", "old");
  std::filesystem::create_symlink("loop", folder_.path("loop"));
  const struct {
    const char* name;
    const char* reason;
  } cases[] = {{"no/folder", "No such file or directory"},
               {"file/below", "Not a directory"},
               {"loop", "Too many levels of symbolic links"},
               {"", "it is not a regular file"}};
  for (const auto& [name, reason] : cases) EXPECT_EQ(replace(name, "x").error(), reason) << name;
  EXPECT_EQ(replaceFile("/dev/null", "x", Durability::fast).error(), "it is not a regular file");
  EXPECT_EQ(namesIn(folder_.path("")), (Names{"file", "loop"}));
}

TEST_F(ReplaceFile, IsNotInTheWayOfWhatAKilledProcessLeft) {
  const std::string left = "file.new-" + std::to_string(getpid()) + "-0";
  folder_.write(left, "half of");
  ASSERT_TRUE(replace("file", "whole"));
  EXPECT_EQ(contentOf(folder_.path("file")), "whole");
  EXPECT_EQ(contentOf(folder_.path(left)), "half of");
}

TEST_F(ReplaceFile, MakesTheFoldersThatAreMissing) {
  ASSERT_TRUE(makeFolders(folder_.path("a/b/c")));
  EXPECT_EQ(modeOf(folder_.path("a")), 0700U);
  EXPECT_EQ(modeOf(folder_.path("a/b/c")), 0700U);
  EXPECT_TRUE(makeFolders(folder_.path("a/b/c")));
  EXPECT_TRUE(makeFolders(folder_.path("a/b/d/")));
  folder_.write("file", "");
  EXPECT_EQ(makeFolders(folder_.path("file")).error(), "Not a directory");
  EXPECT_EQ(makeFolders(folder_.path("file/below")).error(), "Not a directory");
}

}  // namespace
}  // namespace base
