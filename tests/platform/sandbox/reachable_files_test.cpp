#include "platform/sandbox/reachable_files.hpp"

#include <filesystem>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "support/environment.hpp"

namespace platform {
namespace {

namespace fs = std::filesystem;
using Right = ReachableFile::Right;
using testing::ElementsAre;
using testing::IsEmpty;

MATCHER_P2(Reaches, path, right, "") { return arg.path == path && arg.right == right; }

TEST(ReachableFiles, AreTheItemsOfTheKeychainAndTheFoldersAboveThem) {
  EXPECT_THAT(filesOfKeychain({"/data/vamba", "/data/vamba/keychain"}),
              ElementsAre(Reaches("/data/vamba", Right::list), Reaches("/data/vamba/keychain", Right::readAndRemove)));
  EXPECT_THAT(filesOfKeychain({}), IsEmpty());
}

TEST(ReachableFiles, IncludeWhatTheEnvironmentNames) {
  support::ScopedEnvironment environment;
  environment.set("SSL_CERT_FILE", "/elsewhere/roots.pem");
  environment.set("TZ", ":/elsewhere/zone");
  std::vector<fs::path> paths;
  for (const auto& file : filesOfTheSystem()) {
    EXPECT_EQ(file.right, Right::read);
    paths.push_back(file.path);
  }
  EXPECT_THAT(paths, testing::IsSupersetOf({"/usr", "/etc", "/elsewhere/roots.pem", "/elsewhere/zone"}));
}

}  // namespace
}  // namespace platform
