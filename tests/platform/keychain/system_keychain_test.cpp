#include "platform/keychain/system_keychain.hpp"

#include <chrono>
#include <filesystem>
#include <fstream>
#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "platform/keychain/fake_secret_service.hpp"
#include "platform/keychain/keychain_environment.hpp"
#include "platform/keychain/keychain_queries.hpp"
#include "support/environment.hpp"
#include "support/secret_service_session.hpp"
#include "support/temporary_folder.hpp"

namespace platform::testing {
namespace {

namespace fs = std::filesystem;
using namespace std::chrono_literals;
using support::SecretServiceSession;
using ::testing::ElementsAre;
using ::testing::HasSubstr;

const FakeBehaviour serviceWithToken{.items = {{"one", {.bytes = "from the service"}}}};

class SystemKeychainTest : public ::testing::Test {
 protected:
  SystemKeychainTest() {
    for (const auto& [name, value] : session.environment()) environment.set(name, value);
    environment.unset("EXAMPLE_KEYCHAIN_DIR");
    store(session.dataHome() / "example" / "keychain", "from a file");
  }

  static fs::path fileIn(const fs::path& root) { return root / "TEAM.org.example.app" / "org.example.app" / "token"; }

  static void store(const fs::path& root, const std::string& bytes) {
    const auto file = fileIn(root);
    fs::create_directories(file.parent_path());
    for (auto folder = file.parent_path(); folder != root.parent_path().parent_path(); folder = folder.parent_path()) {
      fs::permissions(folder, fs::perms::owner_all);
    }
    std::ofstream(file) << bytes;
    fs::permissions(file, fs::perms::owner_read | fs::perms::owner_write);
  }

  SystemKeychain::Settings settings() {
    return {.folderVariable = "EXAMPLE_KEYCHAIN_DIR",
            .folderBelowDataHome = "example/keychain",
            .diagnostics = [this](std::string_view line) { said.emplace_back(line); },
            .secretService = {.longestCall = 20s}};
  }

  std::optional<base::SecretText> read() { return keychain.copyMatching(readQuery("token")).data; }
  fs::path defaultFile() const { return fileIn(session.dataHome() / "example" / "keychain"); }

  SecretServiceSession session;
  support::ScopedEnvironment environment;
  support::TemporaryFolder folder;
  std::vector<std::string> said;
  SystemKeychain keychain{settings()};
};

TEST_F(SystemKeychainTest, ReadsFilesWhereTheBusHasNoService) {
  EXPECT_EQ(read(), "from a file");
  environment.unset("XDG_DATA_HOME");  // ~/.local/share, which is the same folder
  EXPECT_EQ(read(), "from a file");
}

TEST_F(SystemKeychainTest, ReadsFilesWhereThereIsNoBus) {
  environment.unset("DBUS_SESSION_BUS_ADDRESS");
  environment.set("XDG_RUNTIME_DIR", folder.path("nothing"));
  EXPECT_EQ(read(), "from a file");
  environment.unset("XDG_RUNTIME_DIR");
  EXPECT_EQ(read(), "from a file");
}

TEST_F(SystemKeychainTest, FindsTheBusByTheRuntimeFolder) {
  FakeSecretService service(session.busAddress(), serviceWithToken);
  environment.unset("DBUS_SESSION_BUS_ADDRESS");
  EXPECT_EQ(read(), "from the service");
}

TEST_F(SystemKeychainTest, PrefersTheServiceAndLooksForItAtEachUse) {
  EXPECT_EQ(read(), "from a file");
  {
    FakeSecretService service(session.busAddress(), serviceWithToken);
    EXPECT_EQ(read(), "from the service");
  }
  EXPECT_EQ(read(), "from a file");
}

TEST_F(SystemKeychainTest, DoesNotReadFilesBehindAServiceThatIsThere) {
  const std::vector<FakeBehaviour> behaviours{
      {}, {.items = serviceWithToken.items, .collectionLocked = true}, {.wrongSignature = {"SearchItems"}}};
  for (const auto& behaviour : behaviours) {
    FakeSecretService service(session.busAddress(), behaviour);
    EXPECT_EQ(read(), std::nullopt);
  }
}

TEST_F(SystemKeychainTest, DoesNotReadFilesBehindAServiceThatIsSilent) {
  auto impatient = settings();
  impatient.secretService.longestCall = 200ms;
  SystemKeychain silent(std::move(impatient));
  FakeSecretService service(session.busAddress(), {.silent = {"Collections"}});
  for (int times = 0; times < 2; ++times) {
    EXPECT_EQ(silent.copyMatching(readQuery("token")).status, KeychainStatus::timedOut);
  }
}

TEST_F(SystemKeychainTest, NamedFolderIsUsedAloneFromTheNextUseOn) {
  FakeSecretService service(session.busAddress(), serviceWithToken);
  EXPECT_EQ(read(), "from the service");
  store(folder.path("named"), "from the named folder");
  environment.set("EXAMPLE_KEYCHAIN_DIR", folder.path("named"));
  EXPECT_EQ(read(), "from the named folder");
  EXPECT_EQ(keychain.deleteItems(itemQuery("token")), KeychainStatus::success);
  EXPECT_EQ(read(), std::nullopt);
  EXPECT_TRUE(service.holds("one"));
  EXPECT_TRUE(fs::exists(defaultFile()));
  environment.set("EXAMPLE_KEYCHAIN_DIR", "");
  EXPECT_EQ(read(), "from the service");
}

TEST_F(SystemKeychainTest, DeleteReachesBothStores) {
  {
    FakeSecretService service(session.busAddress(), serviceWithToken);
    EXPECT_EQ(keychain.deleteItems(itemQuery("token")), KeychainStatus::success);
    EXPECT_FALSE(service.holds("one"));
    EXPECT_EQ(read(), std::nullopt);
    EXPECT_EQ(keychain.deleteItems(itemQuery("token")), KeychainStatus::itemNotFound);
  }
  EXPECT_EQ(read(), std::nullopt);  // the service is gone, and the file does not bring the item back
}

TEST_F(SystemKeychainTest, DeleteReachesTheFileBehindAServiceThatCannotDelete) {
  FakeSecretService service(session.busAddress(), {.items = serviceWithToken.items, .deletePrompts = true});
  EXPECT_EQ(keychain.deleteItems(itemQuery("token")), KeychainStatus::needsPrompt);
  EXPECT_FALSE(fs::exists(defaultFile()));
}

TEST_F(SystemKeychainTest, DeleteOfAFileAloneSucceeds) {
  EXPECT_EQ(keychain.deleteItems(itemQuery("token")), KeychainStatus::success);
  EXPECT_EQ(keychain.deleteItems(itemQuery("token")), KeychainStatus::itemNotFound);
}

TEST_F(SystemKeychainTest, SaysARefusalOnceThoughStoresAreOpenedAnew) {
  fs::permissions(defaultFile(), fs::perms::others_read, fs::perm_options::add);
  for (int times = 0; times < 7; ++times) EXPECT_EQ(read(), std::nullopt);
  EXPECT_THAT(said, ElementsAre(HasSubstr("token refused: its mode is 0604")));
}

TEST_F(SystemKeychainTest, FindsNothingWithoutHomeOrBus) {
  for (const char* name : {"HOME", "XDG_DATA_HOME", "XDG_RUNTIME_DIR", "DBUS_SESSION_BUS_ADDRESS"}) {
    environment.unset(name);
  }
  EXPECT_EQ(keychain.copyMatching(readQuery("token")).status, KeychainStatus::unavailable);
  EXPECT_EQ(keychain.deleteItems(itemQuery("token")), KeychainStatus::itemNotFound);
}

TEST(KeychainEnvironmentTest, RuntimeFolderIsEscapedInTheBusAddress) {
  support::ScopedEnvironment environment;
  environment.unset("DBUS_SESSION_BUS_ADDRESS");
  environment.set("XDG_RUNTIME_DIR", "/run/a b,c;d%\xc4\x85");
  EXPECT_EQ(sessionBusAddress(), "unix:path=/run/a%20b%2cc%3bd%25%c4%85/bus");
  environment.set("DBUS_SESSION_BUS_ADDRESS", "unix:path=/x");
  EXPECT_EQ(sessionBusAddress(), "unix:path=/x");
}

}  // namespace
}  // namespace platform::testing
