#include "host/commands/output.hpp"

#include <filesystem>

#include <gtest/gtest.h>
#include <sys/stat.h>
#include <sys/wait.h>

#include "support/file_content.hpp"
#include "support/temporary_folder.hpp"

namespace host {
namespace {

std::size_t filesIn(const std::filesystem::path& folder) {
  return static_cast<std::size_t>(std::distance(std::filesystem::directory_iterator(folder), {}));
}

class WriteFile : public testing::Test {
 protected:
  support::TemporaryFolder folder_;
};

TEST_F(WriteFile, ReplacesTheWholeFileAndLeavesNothingBeside) {
  const auto file = folder_.path("board.png");
  ASSERT_TRUE(writeFile(file, std::string("a longer first text")));
  ASSERT_TRUE(writeFile(file, std::string("b\0c", 3)));
  EXPECT_EQ(support::contentOf(file), std::string("b\0c", 3));
  EXPECT_EQ(filesIn(folder_.path("")), 1U);
}

TEST_F(WriteFile, KeepsTheFilesRights) {
  const auto file = folder_.path("board.png");
  folder_.write("board.png", "old");
  ASSERT_EQ(chmod(file.c_str(), 0640), 0);
  ASSERT_TRUE(writeFile(file, "new"));
  struct stat status{};
  ASSERT_EQ(stat(file.c_str(), &status), 0);
  EXPECT_EQ(status.st_mode & 0777, 0640U);
}

TEST_F(WriteFile, WritesThroughALink) {
  folder_.write("real", "old");
  std::filesystem::create_symlink("real", folder_.path("link"));
  ASSERT_TRUE(writeFile(folder_.path("link"), "new"));
  EXPECT_EQ(support::contentOf(folder_.path("real")), "new");
  EXPECT_TRUE(std::filesystem::is_symlink(folder_.path("link")));
}

TEST_F(WriteFile, SaysWhyItCannotAndLosesNothing) {
  EXPECT_EQ(writeFile("/dev/full", "x").error(), "can't write /dev/full: No space left on device");
  const auto missing = folder_.path("no/folder");
  EXPECT_EQ(writeFile(missing, "x").error(), "can't write " + missing + ": No such file or directory");
  EXPECT_EQ(filesIn(folder_.path("")), 0U);
}

TEST_F(WriteFile, LeavesADeviceADevice) {
  EXPECT_TRUE(writeFile("/dev/null", "x"));
  EXPECT_TRUE(std::filesystem::is_character_file("/dev/null"));
}

TEST_F(WriteFile, LeavesNoDescriptorOpenWhereItFails) {
  const auto before = filesIn("/proc/self/fd");
  EXPECT_FALSE(writeFile("/dev/full", "x"));
  EXPECT_FALSE(readAll(folder_.path(""), 1000));
  EXPECT_EQ(filesIn("/proc/self/fd"), before);
}

TEST_F(WriteFile, ClearsWhatAKilledSaveLeftAndNothingElse) {
  const pid_t gone = fork();
  if (gone == 0) _exit(0);
  ASSERT_EQ(waitpid(gone, nullptr, 0), gone);
  const std::string ours = "board.png.new-" + std::to_string(getpid()) + "-7";
  folder_.write("board.png.new-" + std::to_string(gone) + "-0", "half");
  for (const auto& kept : {ours, std::string("board.png.new-idea"), "other.png.new-" + std::to_string(gone) + "-0"}) {
    folder_.write(kept, "kept");
  }
  ASSERT_TRUE(writeFile(folder_.path("board.png"), "whole"));
  EXPECT_EQ(
      support::namesIn(folder_.path("")),
      (std::set<std::string>{"board.png", ours, "board.png.new-idea", "other.png.new-" + std::to_string(gone) + "-0"}));
}

TEST_F(WriteFile, ReadsAWholeFileBackOrSaysWhyNot) {
  folder_.write("entry", "{}\n");
  EXPECT_EQ(readAll(folder_.path("entry"), 1000), "{}\n");
  const auto missing = folder_.path("missing");
  EXPECT_EQ(readAll(missing, 1000).error(), "can't read " + missing + ": No such file or directory");
  EXPECT_EQ(readAll(folder_.path(""), 1000).error(), "can't read " + folder_.path("") + ": Is a directory");
}

}  // namespace
}  // namespace host
