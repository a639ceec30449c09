#include "host/schedule/zone_changes.hpp"

#include <filesystem>

#include <gtest/gtest.h>
#include <poll.h>

#include "support/environment.hpp"
#include "support/temporary_folder.hpp"

namespace host {
namespace {

namespace fs = std::filesystem;

class ZoneChangesTest : public testing::Test {
 protected:
  ZoneChangesTest() {
    environment_.unset("TZ");
    folder_.write("Warsaw", "");
    folder_.write("Vilnius", "");
    fs::create_symlink("Warsaw", folder_.path("localtime"));
  }

  static bool readable(const ZoneChanges& changes) {
    pollfd polled{.fd = changes.descriptor(), .events = POLLIN, .revents = 0};
    return poll(&polled, 1, 0) == 1;
  }

  support::ScopedEnvironment environment_;
  support::TemporaryFolder folder_;
};

TEST_F(ZoneChangesTest, TellsOfALinkThatIsReplaced) {
  ZoneChanges changes(folder_.path("."));
  EXPECT_FALSE(readable(changes));
  fs::create_symlink("Vilnius", folder_.path("localtime.new"));
  fs::rename(folder_.path("localtime.new"), folder_.path("localtime"));
  EXPECT_TRUE(readable(changes));
  EXPECT_TRUE(changes.take());
  EXPECT_FALSE(changes.take());
}

TEST_F(ZoneChangesTest, TellsOfAFileThatIsRewritten) {
  fs::remove(folder_.path("localtime"));
  folder_.write("localtime", "one");
  ZoneChanges changes(folder_.path("."));
  folder_.write("localtime", "another");
  EXPECT_TRUE(changes.take());
}

TEST_F(ZoneChangesTest, PassesOverOtherFiles) {
  ZoneChanges changes(folder_.path("."));
  folder_.write("hostname", "here");
  EXPECT_TRUE(readable(changes));
  EXPECT_FALSE(changes.take());
}

TEST_F(ZoneChangesTest, WatchesNothingWhereTheEnvironmentNamesAZone) {
  environment_.set("TZ", "Europe/Vilnius");
  ZoneChanges changes(folder_.path("."));
  EXPECT_EQ(changes.descriptor(), -1);
  EXPECT_FALSE(changes.take());
}

}  // namespace
}  // namespace host
