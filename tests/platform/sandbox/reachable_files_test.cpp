#include "platform/sandbox/reachable_files.hpp"

#include <algorithm>
#include <string>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "support/environment.hpp"
#include "support/temporary_folder.hpp"

namespace platform {
namespace {

namespace fs = std::filesystem;
using Right = ReachableFile::Right;
using testing::ElementsAre;
using testing::IsEmpty;

MATCHER_P2(Reaches, path, right, "") { return arg.path == path && arg.right == right; }

class ReachableFilesTest : public testing::Test {
 protected:
  fs::path home(const std::string& path) const { return (fs::path(folder_.path("home")) / path).lexically_normal(); }
  std::vector<ReachableFile> ofKeychain() const {
    return filesOfKeychain({home("data/vamba"), home("data/vamba/keychain")});
  }

  support::TemporaryFolder folder_;
  support::ScopedEnvironment environment_;
};

TEST_F(ReachableFilesTest, AreTheItemsOfTheKeychainAndTheFoldersAboveThem) {
  environment_.set("HOME", home("."));
  fs::create_directories(home("data/vamba/keychain"));
  EXPECT_THAT(ofKeychain(), ElementsAre(Reaches(home("data/vamba"), Right::list),
                                        Reaches(home("data/vamba/keychain"), Right::readAndRemove)));
}

TEST_F(ReachableFilesTest, AreBelowTheNearestFolderWhereTheKeychainIsMissing) {
  environment_.set("HOME", home("."));
  fs::create_directories(home("data"));
  EXPECT_THAT(ofKeychain(),
              ElementsAre(Reaches(home("data/vamba"), Right::list), Reaches(home("data"), Right::readAndRemove)));
}

TEST_F(ReachableFilesTest, NeverIncludeTheHomeFolderOrOneAboveIt) {
  environment_.set("HOME", home("."));
  EXPECT_THAT(ofKeychain(), IsEmpty());
  fs::create_directories(home("."));
  EXPECT_THAT(ofKeychain(), IsEmpty());
  EXPECT_THAT(filesOfKeychain({"/missing-folder/keychain"}), IsEmpty());
  EXPECT_THAT(filesOfKeychain({}), IsEmpty());
}

TEST_F(ReachableFilesTest, IncludeWhatTheEnvironmentNames) {
  environment_.set("SSL_CERT_FILE", "/elsewhere/roots.pem");
  environment_.set("TZ", ":/elsewhere/zone");
  std::vector<fs::path> paths;
  for (const auto& file : filesOfTheSystem()) {
    EXPECT_EQ(file.right, Right::read);
    paths.push_back(file.path);
  }
  EXPECT_THAT(paths, testing::IsSupersetOf({"/usr", "/etc", "/elsewhere/roots.pem", "/elsewhere/zone"}));
}

}  // namespace
}  // namespace platform
