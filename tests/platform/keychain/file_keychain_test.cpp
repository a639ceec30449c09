#include "platform/keychain/file_keychain.hpp"

#include <filesystem>
#include <fstream>
#include <functional>
#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/un.h>
#include <unistd.h>

#include "platform/keychain/keychain_queries.hpp"
#include "support/temporary_folder.hpp"

namespace platform::testing {
namespace {

namespace fs = std::filesystem;
using ::testing::AllOf;
using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::IsEmpty;
using ::testing::Not;

constexpr uid_t somebodyElse = 65534;
const std::string secret = "s3cret-token";

// A root with one item "token", as signing in creates it.
class FileKeychainTest : public ::testing::Test {
 protected:
  FileKeychainTest() {
    for (const auto& folder : {root, group, service}) {
      fs::create_directory(folder);
      fs::permissions(folder, fs::perms::owner_all);
    }
    write("token", secret);
  }

  void write(const std::string& account, const std::string& bytes) const {
    const auto path = service / account;
    std::ofstream(path, std::ios::binary) << bytes;
    fs::permissions(path, fs::perms::owner_read | fs::perms::owner_write);
  }

  KeychainResult read(const std::string& account = "token") { return keychain.copyMatching(readQuery(account)); }

  support::TemporaryFolder scratch;
  fs::path root = scratch.path("keychain");
  fs::path group = root / "TEAM.org.example.app";
  fs::path service = group / "org.example.app";
  std::vector<std::string> said;
  Refusals refusals{[this](std::string_view line) { said.emplace_back(line); }};
  FileKeychain keychain{root, refusals};
};

TEST_F(FileKeychainTest, ReadsBytesExactlyAsStored) {
  const std::vector<std::string> contents{
      "token", "line\n", "", " \t ", "ab\xff\xfe", std::string("a\0b", 3), std::string(largestItem, 'x'),
  };
  for (const auto& bytes : contents) {
    write("item", bytes);
    const auto result = read("item");
    EXPECT_EQ(result.status, KeychainStatus::success);
    EXPECT_EQ(result.data, bytes);
  }
  EXPECT_THAT(said, IsEmpty());
}

TEST_F(FileKeychainTest, AcceptsFileThatItsOwnerMayOnlyRead) {
  fs::permissions(service / "token", fs::perms::owner_read);
  EXPECT_EQ(read().data, secret);
}

TEST_F(FileKeychainTest, FindsWithoutDataWhenNoneIsAskedFor) {
  const auto result = keychain.copyMatching(itemQuery("token"));
  EXPECT_EQ(result.status, KeychainStatus::success);
  EXPECT_EQ(result.data, std::nullopt);
}

TEST_F(FileKeychainTest, FindsNothingAndSaysNothingWhereALevelIsMissing) {
  EXPECT_EQ(read("another").status, KeychainStatus::itemNotFound);
  for (const auto& level : {service, group, root}) {
    fs::remove_all(level);
    EXPECT_EQ(read().status, KeychainStatus::itemNotFound) << level;
  }
  EXPECT_THAT(said, IsEmpty());
}

TEST_F(FileKeychainTest, FollowsLinksAboveTheRoot) {
  fs::create_directory_symlink(".", scratch.path("link"));
  FileKeychain linked(scratch.path("link/keychain/"), refusals);
  EXPECT_EQ(linked.copyMatching(readQuery("token")).data, secret);
}

TEST_F(FileKeychainTest, ChecksEachFolderOfItsOwnAboveTheItems) {
  auto below = FileKeychain::below(scratch.path(""), "keychain/TEAM.org.example.app", refusals);
  fs::create_directories(group / "TEAM.org.example.app" / "org.example.app");
  fs::permissions(group / "TEAM.org.example.app", fs::perms::owner_all);
  fs::permissions(group / "TEAM.org.example.app" / "org.example.app", fs::perms::owner_all);
  fs::rename(service / "token", group / "TEAM.org.example.app" / "org.example.app" / "token");
  EXPECT_EQ(below.copyMatching(readQuery("token")).data, secret);
  for (const auto& folder : {root, group}) {
    fs::permissions(folder, fs::perms::group_write, fs::perm_options::add);
    EXPECT_EQ(below.copyMatching(readQuery("token")).status, KeychainStatus::insecure) << folder;
    fs::permissions(folder, fs::perms::owner_all);
  }
  EXPECT_THAT(said, ElementsAre(HasSubstr("/keychain refused: its mode is 0720"),
                                HasSubstr("/TEAM.org.example.app refused: its mode is 0720")));
}

TEST_F(FileKeychainTest, RefusesLinkAsRootHoweverItIsWritten) {
  fs::create_directory_symlink(root, scratch.path("link"));
  for (const char* written : {"link", "link/", "link//", "link/.", "link/./"}) {
    FileKeychain linked(scratch.path(written), refusals);
    EXPECT_EQ(linked.copyMatching(readQuery("token")).status, KeychainStatus::insecure) << written;
  }
}

struct Refusal {
  const char* name;
  std::function<void(const fs::path& root, const fs::path& group, const fs::path& service)> arrange;
  const char* place;  // the path's end
  const char* fault;
  KeychainStatus status = KeychainStatus::insecure;
};

void makeModeLooser(const fs::path& path, fs::perms more) { fs::permissions(path, more, fs::perm_options::add); }

void replaceByLink(const fs::path& path) {
  auto moved = path;
  moved += ".moved";
  fs::rename(path, moved);
  fs::create_symlink(moved, path);
}

void replaceByFile(const fs::path& path) {
  fs::remove_all(path);
  std::ofstream(path) << "x";
  fs::permissions(path, fs::perms::owner_all);
}

void replaceBySocket(const fs::path& path) {
  fs::remove(path);
  // A socket's path is short; the folder's may not be.
  const auto before = fs::current_path();
  fs::current_path(path.parent_path());
  const int number = socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0);
  sockaddr_un address{.sun_family = AF_UNIX, .sun_path = "token"};
  EXPECT_EQ(bind(number, reinterpret_cast<const sockaddr*>(&address), sizeof address), 0);
  close(number);
  fs::current_path(before);
}

const std::vector<Refusal>& refusalTable() {
  using enum fs::perms;
  static const std::vector<Refusal> table{
      {"RootOthersMayEnter", [](auto& r, auto&, auto&) { makeModeLooser(r, others_exec); }, "/keychain",
       "mode is 0701"},
      {"RootGroupMayWrite", [](auto& r, auto&, auto&) { makeModeLooser(r, group_write); }, "/keychain", "mode is 0720"},
      {"GroupFolderGroupMayRead", [](auto&, auto& g, auto&) { makeModeLooser(g, group_read); }, "/TEAM.org.example.app",
       "mode is 0740"},
      {"GroupFolderGroupMayWrite", [](auto&, auto& g, auto&) { makeModeLooser(g, group_write); },
       "/TEAM.org.example.app", "mode is 0720"},
      {"ServiceFolderOthersMayWrite", [](auto&, auto&, auto& s) { makeModeLooser(s, others_write); },
       "/org.example.app", "mode is 0702"},
      {"RootIsLink", [](auto& r, auto&, auto&) { replaceByLink(r); }, "/keychain", "symbolic link"},
      {"GroupFolderIsLink", [](auto&, auto& g, auto&) { replaceByLink(g); }, "/TEAM.org.example.app", "symbolic link"},
      {"ServiceFolderIsLink", [](auto&, auto&, auto& s) { replaceByLink(s); }, "/org.example.app", "symbolic link"},
      {"RootIsFile", [](auto& r, auto&, auto&) { replaceByFile(r); }, "/keychain", "not a folder"},
      {"GroupFolderIsFile", [](auto&, auto& g, auto&) { replaceByFile(g); }, "/TEAM.org.example.app", "not a folder"},
      {"ServiceFolderIsFile", [](auto&, auto&, auto& s) { replaceByFile(s); }, "/org.example.app", "not a folder"},
      {"FileGroupMayRead", [](auto&, auto&, auto& s) { makeModeLooser(s / "token", group_read); }, "/token",
       "mode is 0640"},
      {"FileOthersMayRead", [](auto&, auto&, auto& s) { makeModeLooser(s / "token", others_read); }, "/token",
       "mode is 0604"},
      {"FileGroupMayWrite", [](auto&, auto&, auto& s) { makeModeLooser(s / "token", group_write); }, "/token",
       "mode is 0620"},
      {"FileIsProgram", [](auto&, auto&, auto& s) { makeModeLooser(s / "token", owner_exec); }, "/token",
       "mode is 0700"},
      {"FileIsLink", [](auto&, auto&, auto& s) { replaceByLink(s / "token"); }, "/token", "symbolic link"},
      {"FileIsDanglingLink",
       [](auto&, auto&, auto& s) {
         fs::remove(s / "token");
         fs::create_symlink("nowhere", s / "token");
       },
       "/token", "symbolic link"},
      {"FileHasTwoNames", [](auto& r, auto&, auto& s) { fs::create_hard_link(s / "token", r / "other"); }, "/token",
       "has 2 names"},
      {"FileIsFolder",
       [](auto&, auto&, auto& s) {
         fs::remove(s / "token");
         fs::create_directory(s / "token");
       },
       "/token", "not a regular file"},
      {"FileIsPipe",
       [](auto&, auto&, auto& s) {
         fs::remove(s / "token");
         ASSERT_EQ(mkfifo((s / "token").c_str(), 0600), 0);
       },
       "/token", "not a regular file"},
      {"FileIsSocket", [](auto&, auto&, auto& s) { replaceBySocket(s / "token"); }, "/token", "not a regular file"},
      {"FileIsLargerThanAnItem", [](auto&, auto&, auto& s) { fs::resize_file(s / "token", largestItem + 1); }, "/token",
       "more than 1048576 bytes", KeychainStatus::failed},
  };
  return table;
}

class FileKeychainRefusalTest : public FileKeychainTest, public ::testing::WithParamInterface<Refusal> {};

TEST_P(FileKeychainRefusalTest, SaysPathAndFaultOnceAndNoSecret) {
  GetParam().arrange(root, group, service);
  for (int times = 0; times < 3; ++times) {
    const auto result = read();
    EXPECT_EQ(result.status, GetParam().status);
    EXPECT_EQ(result.data, std::nullopt);
  }
  EXPECT_THAT(said, ElementsAre(AllOf(HasSubstr(std::string(GetParam().place) + " refused: "),
                                      HasSubstr(GetParam().fault), Not(HasSubstr(secret)), Not(HasSubstr("\n")))));
}

INSTANTIATE_TEST_SUITE_P(Table, FileKeychainRefusalTest, ::testing::ValuesIn(refusalTable()),
                         [](const auto& refusal) { return refusal.param.name; });

TEST_F(FileKeychainTest, RefusesWhatBelongsToSomebodyElse) {
  if (geteuid() != 0) {  // only root can give a file away; the system's own root folder serves as well
    FileKeychain foreign("/", refusals);
    EXPECT_EQ(foreign.copyMatching(readQuery("token")).status, KeychainStatus::insecure);
    EXPECT_THAT(said, ElementsAre(HasSubstr("belongs to user 0")));
    return;
  }
  for (const auto& path : {root, group, service, service / "token"}) {
    said.clear();
    ASSERT_EQ(chown(path.c_str(), somebodyElse, somebodyElse), 0);
    EXPECT_EQ(read().status, KeychainStatus::insecure);
    EXPECT_THAT(said, ElementsAre(HasSubstr(path.native() + " refused: it belongs to user 65534")));
    ASSERT_EQ(chown(path.c_str(), 0, 0), 0);
  }
  EXPECT_EQ(read().data, secret);
}

TEST_F(FileKeychainTest, SaysEachFaultOfAPathAndShowsNoControlCharacters) {
  const auto path = service / "a\x1b[2Jb";
  write("a\x1b[2Jb", secret);
  makeModeLooser(path, fs::perms::group_read);
  read("a\x1b[2Jb");
  makeModeLooser(path, fs::perms::others_read);
  read("a\x1b[2Jb");
  EXPECT_THAT(said, ElementsAre(HasSubstr("a\\x1b[2Jb refused: its mode is 0640"), HasSubstr("its mode is 0644")));
}

TEST_F(FileKeychainTest, AttributesThatAreNoFileNamesReachNothing) {
  write("token", secret);
  std::ofstream(root / "token") << secret;
  fs::permissions(root / "token", fs::perms::owner_read);
  const std::vector<std::string> names{"",
                                       ".",
                                       "..",
                                       "../token",
                                       "../../token",
                                       "/etc/passwd",
                                       "token/",
                                       "a/b",
                                       std::string("token\0x", 7),
                                       std::string(256, 'a')};
  for (const auto& name : names) {
    for (const auto& query : {itemQuery(name), itemQuery("token", name), itemQuery("token", "org.example.app", name)}) {
      EXPECT_EQ(keychain.copyMatching(readQuery(query)).status, KeychainStatus::itemNotFound) << name;
      EXPECT_EQ(keychain.deleteItems(query), KeychainStatus::itemNotFound) << name;
    }
  }
  EXPECT_TRUE(fs::exists(root / "token"));
  EXPECT_EQ(read().data, secret);
}

TEST_F(FileKeychainTest, HoldsGenericPasswordsOnly) {
  auto query = readQuery("token");
  query[0].second = std::string("internet-password");
  EXPECT_EQ(keychain.copyMatching(query).status, KeychainStatus::itemNotFound);
}

TEST_F(FileKeychainTest, QueryThatNamesNoItemIsBad) {
  auto twice = readQuery("token");
  twice.emplace_back(KeychainKey::account, std::string("other"));
  auto wrongKind = readQuery("token");
  wrongKind[2].second = true;
  auto missing = readQuery("token");
  missing.erase(missing.begin() + 3);
  for (const auto& query : {twice, wrongKind, missing, KeychainQuery{}}) {
    EXPECT_EQ(keychain.copyMatching(query).status, KeychainStatus::badQuery);
    EXPECT_EQ(keychain.deleteItems(query), KeychainStatus::badQuery);
  }
}

TEST_F(FileKeychainTest, DeletesOneItemAndLeavesItsNeighbour) {
  write("address", "https://example.org");
  EXPECT_EQ(keychain.deleteItems(itemQuery("token")), KeychainStatus::success);
  EXPECT_EQ(read().status, KeychainStatus::itemNotFound);
  EXPECT_EQ(keychain.deleteItems(itemQuery("token")), KeychainStatus::itemNotFound);
  EXPECT_EQ(read("address").data, "https://example.org");
}

TEST_F(FileKeychainTest, DeletesLinkAndNotWhatItNames) {
  replaceByLink(service / "token");
  EXPECT_EQ(keychain.deleteItems(itemQuery("token")), KeychainStatus::success);
  EXPECT_FALSE(fs::is_symlink(service / "token"));
  EXPECT_TRUE(fs::exists(service / "token.moved"));
}

TEST_F(FileKeychainTest, DeletesNothingInAFolderThatOthersMayWrite) {
  makeModeLooser(group, fs::perms::group_write);
  EXPECT_EQ(keychain.deleteItems(itemQuery("token")), KeychainStatus::insecure);
  EXPECT_TRUE(fs::exists(service / "token"));
}

TEST_F(FileKeychainTest, DoesNotDeleteFolderThatBearsAnItemsName) {
  fs::create_directory(service / "folder");
  EXPECT_EQ(keychain.deleteItems(itemQuery("folder")), KeychainStatus::insecure);
  EXPECT_TRUE(fs::exists(service / "folder"));
}

}  // namespace
}  // namespace platform::testing
