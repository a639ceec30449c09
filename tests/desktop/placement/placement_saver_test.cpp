#include "desktop/placement/placement_saver.hpp"

#include <atomic>

#include <gtest/gtest.h>

#include "support/file_content.hpp"
#include "support/temporary_folder.hpp"
#include "support/waiting.hpp"

namespace desktop {
namespace {

class PlacementSaverTest : public testing::Test {
 protected:
  static Placements copies(int count) {
    Placements placements;
    for (int i = 0; i < count; ++i)
      placements.add("Dzien", protocol::WidgetFamily::systemSmall, {{}, Corner::topLeft, {20, 20 * i}});
    return placements;
  }
  std::size_t kept() const {
    PlacementStore store(file_);
    return store.load().state.placements.all().size();
  }
  void fail(const std::string& why) { failure_ = why; }

  support::TemporaryFolder folder_;
  std::filesystem::path file_ = folder_.path("vamba/placements.json");
  std::string failure_;
};

TEST_F(PlacementSaverTest, SavesTheLastOfSeveralChangesWhenItEnds) {
  {
    PlacementSaver saver{PlacementStore(file_), [this](const std::string& why) { fail(why); }};
    for (int i = 1; i <= 50; ++i) saver.save({copies(i)});
  }
  EXPECT_EQ(kept(), 50U);
  EXPECT_EQ(failure_, "");
}

TEST_F(PlacementSaverTest, SavesWhileItLivesAndMoreThanOnce) {
  PlacementSaver saver{PlacementStore(file_), [](const std::string&) {}};
  for (int count = 1; count <= 2; ++count) {
    saver.save({copies(count)});
    EXPECT_TRUE(support::eventually([&] { return std::filesystem::exists(file_) && kept() == std::size_t(count); }));
  }
}

TEST_F(PlacementSaverTest, WritesNothingThatDidNotChange) {
  {
    const PlacementSaver saver{PlacementStore(file_), [](const std::string&) {}};
  }
  EXPECT_FALSE(std::filesystem::exists(file_));
}

TEST_F(PlacementSaverTest, WritesTheSameStateOnlyOnce) {
  {
    PlacementSaver saver{PlacementStore(file_), [](const std::string&) {}};
    saver.save({copies(1)});
    ASSERT_TRUE(support::eventually([&] { return std::filesystem::exists(file_); }));
    std::filesystem::remove(file_);
    saver.save({copies(1)});
  }
  EXPECT_FALSE(std::filesystem::exists(file_));
}

TEST_F(PlacementSaverTest, WritesTheSameStateAgainAfterAFailure) {
  folder_.write("vamba", "not a folder");
  std::atomic failures = 0;
  {
    PlacementSaver saver{PlacementStore(file_), [&](const std::string&) { ++failures; }};
    saver.save({copies(1)});
    ASSERT_TRUE(support::eventually([&] { return failures == 1; }));
    std::filesystem::remove(folder_.path("vamba"));
    support::eventually([&] {
      saver.save({copies(1)});
      return std::filesystem::exists(file_);
    });
  }
  EXPECT_EQ(kept(), 1U);
}

TEST_F(PlacementSaverTest, TellsWhyItCouldNotSave) {
  folder_.write("vamba", "not a folder");
  {
    PlacementSaver saver{PlacementStore(file_), [this](const std::string& why) { fail(why); }};
    saver.save({copies(1)});
  }
  EXPECT_NE(failure_.find("can't write " + file_.string()), std::string::npos) << failure_;
}

}  // namespace
}  // namespace desktop
