#include "host/recovery/credential_changes.hpp"

#include <filesystem>

#include <gtest/gtest.h>
#include <poll.h>

#include "host/credentials/credential_store.hpp"
#include "support/environment.hpp"
#include "support/secret_service_session.hpp"
#include "support/temporary_folder.hpp"
#include "support/waiting.hpp"

namespace host {
namespace {

class CredentialChangesTest : public testing::Test {
 protected:
  /// Whether a change was noticed in time.
  static bool notices(CredentialChanges& changes) {
    return support::eventually([&] { return changes.take(); });
  }
  static bool readable(const CredentialChanges& changes) {
    for (const int descriptor : changes.descriptors()) {
      pollfd polled{.fd = descriptor, .events = POLLIN, .revents = 0};
      if (poll(&polled, 1, 0) == 1) return true;
    }
    return false;
  }

  support::TemporaryFolder folder_;
  support::ScopedEnvironment environment_;
};

TEST_F(CredentialChangesTest, NoticesATokenInFoldersThatAreMadeForIt) {
  environment_.set("VAMBA_KEYCHAIN_DIR", folder_.path("a/b/keychain"));
  CredentialChanges changes;
  EXPECT_FALSE(readable(changes));
  ASSERT_TRUE(writeItemFile(folder_.path("a/b/keychain"), tokenAccount, "tajne"));
  EXPECT_TRUE(notices(changes));
}

TEST_F(CredentialChangesTest, NoticesATokenThatIsReplacedInItsFolder) {
  environment_.set("VAMBA_KEYCHAIN_DIR", folder_.path("keychain"));
  ASSERT_TRUE(writeItemFile(folder_.path("keychain"), tokenAccount, "old"));
  CredentialChanges changes;
  EXPECT_FALSE(readable(changes));
  ASSERT_TRUE(writeItemFile(folder_.path("keychain"), tokenAccount, "new"));
  EXPECT_TRUE(notices(changes));
}

TEST_F(CredentialChangesTest, AnAddressWithoutATokenIsNoSign) {
  environment_.set("VAMBA_KEYCHAIN_DIR", folder_.path("keychain"));
  CredentialChanges changes;
  ASSERT_TRUE(writeItemFile(folder_.path("keychain"), addressAccount, "http://127.0.0.1"));
  EXPECT_FALSE(changes.take());
}

TEST_F(CredentialChangesTest, NoticesAnItemOfASecretServiceThatStartsLater) {
  support::SecretServiceSession session;
  environment_.unset("VAMBA_KEYCHAIN_DIR");
  environment_.set("XDG_DATA_HOME", folder_.path("data"));
  environment_.set("DBUS_SESSION_BUS_ADDRESS", session.busAddress());
  CredentialChanges changes;
  EXPECT_FALSE(readable(changes));
  EXPECT_FALSE(session.someoneServes()) << "no daemon is started for it";
  session.startKeyring();
  EXPECT_TRUE(notices(changes));
  while (changes.take()) {
  }
  session.store({{"class", "generic-password"}, {"service", "pl.ferol.vamba"}}, "tajne");
  EXPECT_TRUE(notices(changes));
}

TEST_F(CredentialChangesTest, ABusThatEndsIsForgotten) {
  environment_.unset("VAMBA_KEYCHAIN_DIR");
  environment_.set("XDG_DATA_HOME", folder_.path("data"));
  std::optional<support::SecretServiceSession> session(std::in_place);
  environment_.set("DBUS_SESSION_BUS_ADDRESS", session->busAddress());
  CredentialChanges changes;
  session.reset();
  EXPECT_TRUE(support::eventually([&] {
    changes.take();
    return changes.descriptors().back() == -1;
  }));
}

}  // namespace
}  // namespace host
