#include "desktop/placement/placement_store.hpp"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <nlohmann/json.hpp>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include "desktop/placement/printing.hpp"
#include "support/file_content.hpp"
#include "support/file_size_limit.hpp"
#include "support/temporary_folder.hpp"

namespace desktop {
namespace {

using support::contentOf;
using support::namesIn;
using testing::HasSubstr;
using Names = std::set<std::string>;

Placements samplePlacements() {
  Placements placements;
  placements.add("Dzien", protocol::WidgetFamily::systemMedium,
                 {{"Acme", "P27", "A1", "DP-1"}, Corner::topRight, {20, 40}});
  placements.add("Dzien", protocol::WidgetFamily::systemSmall,
                 {{"Acme", "P27", "A1", "DP-1"}, Corner::topLeft, {20, 20}});
  return placements;
}

class PlacementStoreTest : public testing::Test {
 protected:
  std::string path(const std::string& name = "placements.json") const { return folder_.path(name); }
  LoadedPlacements load() const { return PlacementStore(path()).load(); }

  support::TemporaryFolder folder_;
};

TEST_F(PlacementStoreTest, KeepsThePlacementsForTheNextStart) {
  const std::string file = path("config/vamba/placements.json");
  PlacementStore store(file);
  EXPECT_TRUE(store.load().firstStart);
  ASSERT_TRUE(store.save({samplePlacements()}));
  const auto loaded = PlacementStore(file).load();
  EXPECT_EQ(loaded.state.placements, samplePlacements());
  EXPECT_FALSE(loaded.firstStart);
  EXPECT_EQ(loaded.notice, std::nullopt);
  EXPECT_EQ(namesIn(path("config/vamba")), Names{"placements.json"});
  struct stat status{};
  ASSERT_EQ(stat(path("config/vamba").c_str(), &status), 0);
  EXPECT_EQ(status.st_mode & 0777, 0700U);
}

TEST_F(PlacementStoreTest, ClearsAtTheStartWhatAKilledSaveLeft) {
  ASSERT_TRUE(PlacementStore(path()).save({samplePlacements()}));
  const pid_t killed = fork();
  if (killed == 0) _exit(0);
  waitpid(killed, nullptr, 0);
  folder_.write("placements.json.new-" + std::to_string(killed) + "-0", "half of th");
  EXPECT_EQ(load().state.placements, samplePlacements());
  EXPECT_EQ(namesIn(folder_.path("")), Names{"placements.json"});
}

TEST_F(PlacementStoreTest, KnowsAStartWithEverythingRemovedFromTheFirstOne) {
  ASSERT_TRUE(PlacementStore(path()).save({}));
  EXPECT_FALSE(load().firstStart);
}

TEST_F(PlacementStoreTest, SetsADamagedFileAsideAndSaysSoOnce) {
  folder_.write("placements.json", "{ not json");
  const auto loaded = load();
  EXPECT_TRUE(loaded.state.placements.empty());
  EXPECT_FALSE(loaded.firstStart);
  ASSERT_TRUE(loaded.notice);
  EXPECT_THAT(*loaded.notice, HasSubstr(path() + " can't be used ("));
  EXPECT_THAT(*loaded.notice, HasSubstr("; it is kept as " + path("placements.json.damaged-1")));
  EXPECT_EQ(contentOf(path("placements.json.damaged-1")), "{ not json");
  EXPECT_EQ(load().notice, std::nullopt);
}

TEST_F(PlacementStoreTest, OverwritesNoEarlierFileThatWasSetAside) {
  PlacementStore store(path());
  for (const char* text : {"first", "second", "third"}) {
    folder_.write("placements.json", text);
    EXPECT_TRUE(store.load().notice);
    ASSERT_TRUE(store.save({samplePlacements()}));
  }
  EXPECT_EQ(contentOf(path("placements.json.damaged-1")), "first");
  EXPECT_EQ(contentOf(path("placements.json.damaged-2")), "second");
  EXPECT_EQ(contentOf(path("placements.json.damaged-3")), "third");
  EXPECT_EQ(load().state.placements, samplePlacements());
}

TEST_F(PlacementStoreTest, SetsAsideWhateverIsNoPlacementsFile) {
  const std::string file = path();
  const std::pair<const char*, std::function<void()>> cases[] = {
      {"a folder", [&] { std::filesystem::create_directory(file); }},
      {"a pipe", [&] { ASSERT_EQ(mkfifo(file.c_str(), 0600), 0); }},
      {"too large", [&] { folder_.write("placements.json", std::string((1U << 20U) + 1, ' ')); }},
      {"empty", [&] { folder_.write("placements.json", ""); }},
      {"a later version", [&] { folder_.write("placements.json", R"({"format":"vamba-placements","version":2})"); }},
      {"a link to itself", [&] { std::filesystem::create_symlink("placements.json", file); }},
  };
  std::size_t aside = 0;
  for (const auto& [what, make] : cases) {
    make();
    EXPECT_TRUE(load().notice) << what;
    ASSERT_EQ(namesIn(path("")).size(), ++aside) << what;
    ASSERT_FALSE(namesIn(path("")).contains("placements.json")) << what;
  }
  ASSERT_TRUE(PlacementStore(path()).save({samplePlacements()}));
  EXPECT_EQ(load().state.placements, samplePlacements());
}

TEST_F(PlacementStoreTest, GoesOnWithTheGoodEntriesAndKeepsTheWholeFileAside) {
  ASSERT_TRUE(PlacementStore(path()).save({samplePlacements()}));
  auto document = nlohmann::json::parse(contentOf(path()));
  document["widgets"].push_back({{"id", -1}, {"kind", "Later"}});
  folder_.write("placements.json", document.dump());
  const auto loaded = load();
  EXPECT_EQ(loaded.state.placements, samplePlacements());
  ASSERT_TRUE(loaded.notice);
  EXPECT_THAT(*loaded.notice, HasSubstr("(1 of its widgets can't be read); it is kept as "));
  EXPECT_EQ(contentOf(path("placements.json.damaged-1")), document.dump());
  const auto again = load();
  EXPECT_EQ(again.state.placements, samplePlacements());
  EXPECT_EQ(again.notice, std::nullopt);
}

TEST_F(PlacementStoreTest, KeepsKeysOfALaterVersionAcrossManySaves) {
  ASSERT_TRUE(PlacementStore(path()).save({samplePlacements()}));
  auto document = nlohmann::json::parse(contentOf(path()));
  document["widgets"][1]["locked"] = true;
  folder_.write("placements.json", document.dump());
  PlacementStore store(path());
  Placements placements = store.load().state.placements;
  for (int i = 0; i < 3; ++i) {
    placements.add("Dzien", protocol::WidgetFamily::systemLarge, {});
    ASSERT_TRUE(store.save({placements}));
  }
  EXPECT_EQ(nlohmann::json::parse(contentOf(path()))["widgets"][1]["locked"], true);
}

TEST_F(PlacementStoreTest, WritesThroughALinkAlsoWhenItsTargetIsSetAside) {
  std::filesystem::create_directory(path("dotfiles"));
  std::filesystem::create_symlink("dotfiles/day.json", path());
  PlacementStore store(path());
  EXPECT_TRUE(store.load().firstStart);
  ASSERT_TRUE(store.save({samplePlacements()}));
  EXPECT_EQ(load().state.placements, samplePlacements());
  folder_.write("dotfiles/day.json", "damaged");
  EXPECT_TRUE(store.load().notice);
  ASSERT_TRUE(store.save({samplePlacements()}));
  EXPECT_TRUE(std::filesystem::is_symlink(path()));
  EXPECT_EQ(namesIn(path("dotfiles")), (Names{"day.json", "day.json.damaged-1"}));
}

TEST_F(PlacementStoreTest, SetsADamagedFileAsideAtTheNextSaveIfItCouldNotBefore) {
  // A name that is too long with anything added to it.
  const std::string longName(250, 'p');
  folder_.write(longName, "damaged");
  std::filesystem::create_symlink(longName, path());
  PlacementStore store(path());
  const auto notice = store.load().notice;
  ASSERT_TRUE(notice);
  EXPECT_THAT(*notice, HasSubstr(" and could not be renamed: File name too long"));
  EXPECT_EQ(store.save({samplePlacements()}).error(), "can't write " + path() + ": File name too long");
  EXPECT_EQ(contentOf(path(longName)), "damaged");

  std::filesystem::rename(path(longName), path());
  ASSERT_TRUE(store.save({samplePlacements()}));
  EXPECT_EQ(contentOf(path("placements.json.damaged-1")), "damaged");
  EXPECT_EQ(load().state.placements, samplePlacements());
}

TEST_F(PlacementStoreTest, LosesNothingOnAFullDisk) {
  PlacementStore store(path());
  ASSERT_TRUE(store.save({samplePlacements()}));
  Placements more = samplePlacements();
  more.add("Dzien", protocol::WidgetFamily::systemLarge, {});
  {
    const support::FileSizeLimit full(100);
    EXPECT_EQ(store.save({more}).error(), "can't write " + path() + ": File too large");
  }
  EXPECT_EQ(load().state.placements, samplePlacements());
  ASSERT_TRUE(store.save({more}));
  EXPECT_EQ(load().state.placements, more);
}

TEST_F(PlacementStoreTest, SaysWhyItCannotWrite) {
  folder_.write("file", "");
  PlacementStore store(path("file/placements.json"));
  EXPECT_TRUE(store.load().notice);
  EXPECT_EQ(store.save({}).error(), "can't write " + path("file/placements.json") + ": Not a directory");
}

TEST_F(PlacementStoreTest, WritesNoNameThatItCouldNotReadBack) {
  Placements placements = samplePlacements();
  PlacementStore store(path());
  ASSERT_TRUE(store.save({placements}));
  placements.add(std::string(1000, 'k'), protocol::WidgetFamily::systemSmall, {});
  EXPECT_FALSE(store.save({placements}));
  EXPECT_EQ(load().state.placements, samplePlacements());
}

TEST(PlacementsFile, IsInTheUsersConfiguration) {
  const auto lookup = [](const char* name) -> const char* { return std::string(name) == "HOME" ? "/home/a" : nullptr; };
  EXPECT_EQ(placementsFile(lookup), "/home/a/.config/vamba/placements.json");
  EXPECT_EQ(placementsFile([](const char*) -> const char* { return nullptr; }), std::nullopt);
}

}  // namespace
}  // namespace desktop
