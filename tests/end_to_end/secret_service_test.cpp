// The token in a real keyring: gnome-keyring-daemon on a bus of the test's own.
#include "end_to_end/extension_fixture.hpp"
#include "support/secret_service_session.hpp"

namespace end_to_end {
namespace {

using support::SecretServiceSession;

SecretServiceSession::Attributes attributesOf(const std::string& account) {
  return {{"class", "generic-password"},
          {"service", "pl.ferol.vamba"},
          {"account", account},
          {"access-group", "QX4R2M7K9A.pl.ferol.vamba"}};
}

class ExtensionSecretServiceTest : public ServiceTest {
 protected:
  ExtensionSecretServiceTest() {
    session.startKeyring();
    session.store(attributesOf("token-urzadzenia"), "z-pęku");
    session.store(attributesOf("adres-api"), service.url("/api"));
    environment.erase("VAMBA_KEYCHAIN_DIR");
    environment["DBUS_SESSION_BUS_ADDRESS"] = session.busAddress();
  }

  SecretServiceSession session;
};

TEST_F(ExtensionSecretServiceTest, TokenAndAddressComeFromTheKeyring) {
  EXPECT_EQ(loadSentence(), "");
  ASSERT_EQ(service.requests().size(), 3);
  for (const auto& request : service.requests()) EXPECT_EQ(request.header("Authorization"), "Bearer z-pęku");
}

TEST_F(ExtensionSecretServiceTest, LockedKeyringAsksToSignIn) {
  session.lock();
  EXPECT_EQ(loadSentence(), signIn);
  EXPECT_EQ(service.connectionCount(), 0);
}

TEST_F(ExtensionSecretServiceTest, FrozenKeyringIsGivenUpAndSaysSo) {
  session.keyring().freeze();
  EXPECT_EQ(loadSentence(), signIn);
  EXPECT_THAT(extension().diagnostics(), testing::HasSubstr("the Secret Service does not answer"));
  session.keyring().thaw();
}

TEST_F(ExtensionSecretServiceTest, RefusedTokenIsDeletedFromKeyringAndFolder) {
  // The folder of last resort, which the person's other sign-in left behind.
  const ItemFolder lastResort(privateFolder() / "XDG_DATA_HOME" / "vamba" / "keychain");
  lastResort.store("token-urzadzenia", "z-folderu");
  lastResort.store("adres-api", service.url("/api"));
  const auto released = std::make_shared<support::Event>();
  everyAnswer({support::Await{released}, support::Send{support::HttpAnswer{.status = 401}.bytes()}});
  const int loading = extension().ask("timeline", boardParams());
  ASSERT_TRUE(service.waitForRequests(3));
  released->set();
  EXPECT_EQ(extension().answerTo(loading)["result"]["entries"][0]["blad"], expired);
  EXPECT_FALSE(lastResort.holds("token-urzadzenia"));
  EXPECT_TRUE(lastResort.holds("adres-api"));
  EXPECT_EQ(loadSentence(), signIn);

  session.store(attributesOf("token-urzadzenia"), "nowe");
  everyAnswer({support::Send{support::HttpAnswer{.status = 500}.bytes()}});
  EXPECT_EQ(loadSentence(), serverError(500)) << "the address is still in the keyring";
  std::filesystem::remove_all(privateFolder() / "XDG_DATA_HOME" / "vamba");
}

TEST_F(ExtensionSecretServiceTest, FolderOfLastResortServesWhereNoKeyringRuns) {
  session.endKeyring();
  const ItemFolder lastResort(privateFolder() / "XDG_DATA_HOME" / "vamba" / "keychain");
  lastResort.store("token-urzadzenia", "z-folderu");
  lastResort.store("adres-api", service.url("/api"));
  EXPECT_EQ(loadSentence(), "");
  EXPECT_EQ(service.requests().at(0).header("Authorization"), "Bearer z-folderu");
  std::filesystem::remove_all(privateFolder() / "XDG_DATA_HOME" / "vamba");
}

}  // namespace
}  // namespace end_to_end
