// The findings that need a session of their own; tests/host/commands/doctor_test.cpp has the rest.
#include "host/doctor/session_findings.hpp"

#include <gtest/gtest.h>

#include "host/doctor/printing.hpp"
#include "support/displays/stand_in_portal.hpp"
#include "support/environment.hpp"
#include "support/temporary_folder.hpp"

namespace host {
namespace {

TEST(PortalFinding, SaysWhetherThePortalTellsLightFromDark) {
  const support::SessionBus bus;
  support::ScopedEnvironment environment;
  environment.set("DBUS_SESSION_BUS_ADDRESS", bus.address());
  const auto settings = [](std::optional<support::ColourScheme> scheme) {
    return support::StandInPortal::Settings{.appearance = {.colourScheme = scheme, .accentColour = {}}};
  };
  {
    const support::StandInPortal portal(bus, settings(support::ColourScheme::dark));
    EXPECT_EQ(portalFinding(), (Finding{.subject = "portal",
                                        .what = "answers; boards on the desktop follow its light or dark setting"}));
  }
  const support::StandInPortal portal(bus, settings(std::nullopt));
  EXPECT_EQ(portalFinding(),
            (Finding{.subject = "portal",
                     .verdict = Verdict::note,
                     .what = "it does not tell light from dark; boards on the desktop follow the toolkit's settings",
                     .advice = "Install a backend of xdg-desktop-portal that suits your desktop."}));
}

class CredentialFindings : public testing::Test {
 protected:
  CredentialFindings() {
    environment_.unset("DBUS_SESSION_BUS_ADDRESS");
    environment_.unset("VAMBA_KEYCHAIN_DIR");
    environment_.set("XDG_RUNTIME_DIR", folder_.path("run"));
    environment_.set("XDG_DATA_HOME", folder_.path("data"));
  }

  support::TemporaryFolder folder_;
  support::ScopedEnvironment environment_;
};

TEST_F(CredentialFindings, KeychainIsAFaultWhereThereIsNoPlaceForOne) {
  environment_.unset("XDG_DATA_HOME");
  environment_.unset("HOME");
  CredentialStore store;
  EXPECT_EQ(keychainFinding(store),
            (Finding{.subject = "keychain",
                     .verdict = Verdict::fault,
                     .what = "there is no Secret Service, and neither XDG_DATA_HOME nor HOME names a folder",
                     .advice = "Set HOME."}));
}

TEST_F(CredentialFindings, EmptyTokenIsAFault) {
  CredentialStore store;
  const auto folder = store.folder();
  ASSERT_TRUE(folder);
  EXPECT_EQ(folder->path.string(), folder_.path("data") + "/vamba/keychain");
  ASSERT_TRUE(writeItemFile(folder->path, tokenAccount, ""));
  EXPECT_EQ(tokenFinding(store),
            (Finding{.subject = "token",
                     .verdict = Verdict::fault,
                     .what = "the one that is kept in the folder " + folder->path.string() + " is empty",
                     .advice = "Sign in with \"vamba-host sign-in\"."}));
}

TEST_F(CredentialFindings, OnlyAnAddressOfThisMachineMayDoWithoutEncryption) {
  CredentialStore store;
  const struct {
    std::string address;
    Verdict verdict;
  } cases[] = {
      {"http://localhost:8080/api", Verdict::works},
      {"http://127.0.0.1/api", Verdict::works},
      {"http://127.1.2.3/api", Verdict::works},
      {"http://[::1]:8080/api", Verdict::works},
      {"http://127.example.org/api", Verdict::note},
      {"http://128.0.0.1/api", Verdict::note},
      {"HTTPS://day.example.org/api", Verdict::works},
      {"ftp://localhost/api", Verdict::fault},
      {"https://a b", Verdict::fault},
      {"https:///api", Verdict::fault},
  };
  for (const auto& [address, verdict] : cases) {
    ASSERT_TRUE(writeItemFile(store.folder().value().path, addressAccount, address));
    EXPECT_EQ(addressFinding(store).finding.verdict, verdict) << address;
  }
}

}  // namespace
}  // namespace host
