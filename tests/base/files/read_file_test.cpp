#include "base/files/read_file.hpp"

#include <gtest/gtest.h>
#include <sys/stat.h>

#include "support/temporary_folder.hpp"

namespace base {
namespace {

using Kind = ReadFailure::Kind;

class ReadFile : public testing::Test {
 protected:
  Kind failureOf(const std::string& name) const {
    const auto read = readFile(folder_.path(name), 10);
    EXPECT_FALSE(read);
    return read ? Kind{} : read.error().kind;
  }

  support::TemporaryFolder folder_;
};

TEST_F(ReadFile, GivesEveryByteUpToTheLimit) {
  folder_.write("ten", std::string("0123\0\n6789", 10));
  EXPECT_EQ(readFile(folder_.path("ten"), 10), std::string("0123\0\n6789", 10));
  EXPECT_EQ(readFile(folder_.path("ten"), 9).error().reason, "it holds more than 9 bytes");
}

TEST_F(ReadFile, TellsWhatIsMissingFromWhatIsUnusable) {
  std::filesystem::create_symlink("nowhere", folder_.path("dangling"));
  std::filesystem::create_symlink("loop", folder_.path("loop"));
  folder_.write("file", "");
  EXPECT_EQ(failureOf("missing"), Kind::missing);
  EXPECT_EQ(failureOf("no/folder"), Kind::missing);
  EXPECT_EQ(failureOf("dangling"), Kind::missing);
  EXPECT_EQ(failureOf("loop"), Kind::unusable);
  EXPECT_EQ(failureOf("file/below"), Kind::unusable);
  EXPECT_EQ(failureOf(""), Kind::unusable);
}

TEST_F(ReadFile, DoesNotWaitForTheOtherEndOfAPipe) {
  ASSERT_EQ(mkfifo(folder_.path("pipe").c_str(), 0600), 0);
  EXPECT_EQ(readFile(folder_.path("pipe"), 10).error().reason, "it is not a regular file");
}

}  // namespace
}  // namespace base
