// `vamba-host sign-in` and `sign-out` with the real extension, a scripted service and a real keyring.
#include <algorithm>
#include <filesystem>
#include <fstream>

#include <gmock/gmock.h>
#include <sys/wait.h>
#include <unistd.h>

#include "end_to_end/extension_fixture.hpp"
#include "host/commands/host_process.hpp"
#include "host/credentials/credential_store.hpp"
#include "support/file_content.hpp"
#include "support/secret_service_session.hpp"
#include "support/system_call_faults.hpp"

namespace host {
namespace {

using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;

class SignIn : public testing::Test {
 protected:
  SignIn() {
    environment_.set("VAMBA_KEYCHAIN_DIR", keychain());
    environment_.set("XDG_DATA_HOME", folder_.path("data"));
    environment_.set("XDG_RUNTIME_DIR", folder_.path("run"));
    environment_.set("LANGUAGE", "en");
    environment_.set("no_proxy", "127.0.0.1");
    environment_.unset("DBUS_SESSION_BUS_ADDRESS");
    std::filesystem::create_directory(folder_.path("run"));
    answerAll({.body = "[]"});
    service_.answer(end_to_end::inboxTarget, {.body = R"({"zadania": []})"});
  }
  ~SignIn() override {
    // The trial's folder is removed whatever the result.
    EXPECT_THAT(support::namesIn(folder_.path("run")), IsEmpty());
  }

  void answerAll(const support::HttpAnswer& answer) {
    for (const auto& target : {end_to_end::tasksTarget, end_to_end::inboxTarget, end_to_end::meetingsTarget}) {
      service_.answer(target, answer);
    }
  }

  std::string keychain() const { return folder_.path("keychain"); }
  Outcome signIn(const std::string& token) {
    return runHost({"sign-in", "--address", service_.url("/api")}, token, VAMBA_EXTENSION);
  }
  std::string kept(const char* account) const { return support::contentOf(itemFile(keychain(), account)); }

  support::TemporaryFolder folder_;
  support::ScopedEnvironment environment_;
  support::ScriptedHttpServer service_;
};

TEST_F(SignIn, TriesTheTokenAndKeepsItInPrivateFilesWithoutItsLineEnd) {
  const auto outcome = signIn("tajne-7\n");
  EXPECT_EQ(outcome.status, 0) << outcome.errors;
  EXPECT_EQ(outcome.output,
            "The service answered with your day. The token is kept in the folder " + keychain() + ".\n");
  EXPECT_EQ(kept(tokenAccount), "tajne-7");
  EXPECT_EQ(kept(addressAccount), service_.url("/api"));
  ASSERT_EQ(service_.requests().size(), 3U);
  for (const auto& request : service_.requests()) EXPECT_EQ(request.header("Authorization"), "Bearer tajne-7");
  namespace fs = std::filesystem;
  EXPECT_EQ(fs::status(itemFile(keychain(), tokenAccount)).permissions(), fs::perms(0600));
  for (auto folder = itemFile(keychain(), tokenAccount).parent_path(); folder != folder_.path("");) {
    EXPECT_EQ(fs::status(folder).permissions(), fs::perms(0700)) << folder;
    if (folder == keychain()) break;
    folder = folder.parent_path();
  }
  EXPECT_EQ(runHost({"sign-in", "--status"}).output,
            "token: in the folder " + keychain() + "\naddress: in the folder " + keychain() + "\n");
}

TEST_F(SignIn, StatusAndSignOutClearTheTokenThatAKilledSaveLeft) {
  ASSERT_EQ(signIn("tajne-7").status, 0);
  const auto file = itemFile(keychain(), tokenAccount);
  const pid_t killed = fork();
  if (killed == 0) _exit(0);
  waitpid(killed, nullptr, 0);
  for (const auto& command : {std::vector<std::string>{"sign-in", "--status"}, {"sign-out"}}) {
    const auto left = file.string() + ".new-" + std::to_string(killed) + "-0";
    std::ofstream(left) << "tajne-8";
    EXPECT_EQ(runHost(command).status, 0);
    EXPECT_FALSE(std::filesystem::exists(left)) << command.front();
  }
}

TEST_F(SignIn, TriesALaterTokenAtTheAddressThatIsKept) {
  ASSERT_EQ(signIn("tajne-7").status, 0);
  const auto again = runHost({"sign-in"}, "tajne-8", VAMBA_EXTENSION);
  EXPECT_EQ(again.status, 0) << again.errors;
  EXPECT_EQ(kept(tokenAccount), "tajne-8");
  EXPECT_EQ(service_.requests().size(), 6U);
}

TEST_F(SignIn, KeepsNothingOfATokenThatIsRefusedOrCannotBeTried) {
  answerAll({.status = 401});
  const auto refused = signIn("stare");
  EXPECT_EQ(refused.status, 1);
  EXPECT_EQ(refused.output, "");
  EXPECT_THAT(refused.errors, HasSubstr("vamba-host: the service refused the token; nothing was stored\n"));
  answerAll({.status = 503});
  const auto broken = signIn("nowe");
  EXPECT_EQ(broken.status, 1);
  EXPECT_THAT(broken.errors, HasSubstr("503"));
  EXPECT_THAT(broken.errors, HasSubstr("Nothing was stored."));
  for (const auto& outcome : {refused, broken}) EXPECT_THAT(outcome.errors, Not(HasSubstr("stare")));
  EXPECT_FALSE(std::filesystem::exists(keychain()));
}

TEST_F(SignIn, RefusesWhatNoTokenOrAddressIs) {
  for (const std::string token : {"", "\n", "two\nlines", "a\x1b[1m", "\xff"}) {
    const auto outcome = signIn(token);
    EXPECT_EQ(outcome.status, 2) << token;
    EXPECT_THAT(outcome.errors, HasSubstr("vamba-host: ")) << token;
  }
  for (const char* address : {"vamba.example.org", "ftp://vamba.example.org", "https://", "https://a b"}) {
    EXPECT_EQ(runHost({"sign-in", "--address", address}, "tajne").status, 2) << address;
  }
  EXPECT_THAT(service_.requests(), IsEmpty());
}

TEST_F(SignIn, ReadsFromATerminalWithoutEcho) {
  HostProcess host({"sign-in", "--address", service_.url("/api")}, OnTerminal{}, VAMBA_EXTENSION);
  host.readUntil("Device token (it is not shown): ");
  host.type("tajne-7\n");
  const std::string rest = host.rest();
  EXPECT_THAT(rest, HasSubstr("The service answered with your day."));
  EXPECT_THAT(rest, Not(HasSubstr("tajne")));
  EXPECT_EQ(host.status(), 0);
  EXPECT_EQ(kept(tokenAccount), "tajne-7");
}

TEST_F(SignIn, IsRefusedWhereOthersCouldReadTheFolder) {
  std::filesystem::create_directory(keychain());
  std::filesystem::permissions(keychain(), std::filesystem::perms(0755));
  const auto outcome = signIn("tajne-7");
  EXPECT_EQ(outcome.status, 1);
  EXPECT_THAT(outcome.errors, HasSubstr("0700"));
  EXPECT_FALSE(std::filesystem::exists(itemFile(keychain(), tokenAccount)));
}

TEST_F(SignIn, IsRefusedWhereOthersCouldReadAFolderAboveTheOneOfLastResort) {
  environment_.unset("VAMBA_KEYCHAIN_DIR");
  const auto above = std::filesystem::path(folder_.path("data")) / "vamba";
  std::filesystem::create_directories(above);
  std::filesystem::permissions(above, std::filesystem::perms(0755));
  const auto outcome = signIn("tajne-7");
  EXPECT_EQ(outcome.status, 1) << "the extension would not read the token";
  EXPECT_THAT(outcome.errors, HasSubstr("0700"));
  EXPECT_FALSE(std::filesystem::exists(itemFile(above / "keychain", tokenAccount)));
  std::filesystem::permissions(above, std::filesystem::perms(0700));
  const auto again = signIn("tajne-7");
  EXPECT_EQ(again.status, 0) << again.errors;
  EXPECT_THAT(again.output, HasSubstr("The token is kept in the folder " + (above / "keychain").string()));
  EXPECT_EQ(runHost({"show", "--format", "line"}, "", VAMBA_EXTENSION).output, "Nothing for today.\n");
}

TEST_F(SignIn, TakesAnAddressWhoseSchemeIsInCapitals) {
  const auto outcome =
      runHost({"sign-in", "--address", "HTTP" + service_.url("/api").substr(4)}, "tajne-7", VAMBA_EXTENSION);
  EXPECT_EQ(outcome.status, 0) << outcome.errors;
}

// The trial writes a token and an address, and so does the store: each file takes its name by rename(2).
TEST_F(SignIn, NeverLeavesATokenBesideAnAddressThatItWasNotTriedAt) {
  if (const auto reason = support::reasonNotToTrace()) GTEST_SKIP() << *reason;
  support::ScriptedHttpServer other;
  for (const auto& target : {end_to_end::tasksTarget, end_to_end::meetingsTarget}) other.answer(target, {.body = "[]"});
  other.answer(end_to_end::inboxTarget, {.body = R"({"zadania": []})"});
  folder_.write("token", "nowe");
  const support::TracedCommand command{
      .words = {"/bin/sh", "-c",
                "exec " VAMBA_HOST " --extension " VAMBA_EXTENSION " sign-in --address " + other.url("/api") + " <" +
                    folder_.path("token")},
      .environment = {"PATH=/usr/bin:/bin", "LANGUAGE=en", "no_proxy=127.0.0.1", "VAMBA_KEYCHAIN_DIR=" + keychain(),
                      "XDG_RUNTIME_DIR=" + folder_.path("run")}};
  ASSERT_EQ(signIn("stare").status, 0);
  const auto calls = support::systemCallsOf(command);
  // Some machines have renameat2 alone.
  const auto call = std::ranges::find_if(calls, [](const auto& each) { return each.first.starts_with("rename"); });
  ASSERT_NE(call, calls.end());
  const int renames = call->second;
  EXPECT_GE(renames, 4);
  for (int at = 1; at <= renames + 1; ++at) {
    ASSERT_EQ(signIn("stare").status, 0);
    const auto status = support::statusWith({call->first, "EIO", at}, command);
    EXPECT_EQ(status, at <= renames ? 1 : 0) << at;
    const std::string token = kept(tokenAccount);
    const std::string address = kept(addressAccount);
    EXPECT_TRUE(token.empty() || address == (token == "stare" ? service_.url("/api") : other.url("/api")))
        << at << ": " << token << " at " << address;
  }
}

TEST_F(SignIn, OutRemovesTokenAndAddress) {
  EXPECT_EQ(runHost({"sign-out"}).output, "Nobody was signed in.\n");
  ASSERT_EQ(signIn("tajne-7").status, 0);
  const auto out = runHost({"sign-out"});
  EXPECT_EQ(out.status, 0) << out.errors;
  EXPECT_EQ(out.output, "Signed out: the token and the address are removed.\n");
  EXPECT_THAT(support::namesIn(itemFile(keychain(), tokenAccount).parent_path()), IsEmpty());
  EXPECT_EQ(runHost({"sign-in", "--status"}).output,
            "token: none; sign in with \"vamba-host sign-in\"\naddress: the built-in one\n");
}

TEST_F(SignIn, KeepsTheTokenInASecretServiceAndRemovesItFromBothStores) {
  support::SecretServiceSession session;
  session.startKeyring();
  environment_.unset("VAMBA_KEYCHAIN_DIR");
  environment_.set("DBUS_SESSION_BUS_ADDRESS", session.busAddress());
  for (const std::string token : {"pierwszy", "drugi"}) {
    const auto outcome = signIn(token);
    EXPECT_EQ(outcome.status, 0) << outcome.errors;
    EXPECT_EQ(outcome.output, "The service answered with your day. The token is kept in the Secret Service.\n");
    EXPECT_EQ(service_.requests().back().header("Authorization"), "Bearer " + token);
  }
  CredentialStore store;
  EXPECT_EQ(store.find(tokenAccount).value().value().bytes.text(), "drugi");
  EXPECT_EQ(store.find(addressAccount).value().value().bytes.text(), service_.url("/api"));
  const auto show = runHost({"show", "--format", "line"}, "", VAMBA_EXTENSION);
  EXPECT_EQ(show.output, "Nothing for today.\n") << show.errors;

  const auto lastResort = std::filesystem::path(folder_.path("data")) / "vamba/keychain";
  ASSERT_TRUE(writeItemFile(lastResort, tokenAccount, "z-folderu"));
  EXPECT_EQ(runHost({"sign-out"}).status, 0);
  EXPECT_FALSE(std::filesystem::exists(itemFile(lastResort, tokenAccount)));
  EXPECT_FALSE(store.find(tokenAccount).value().has_value());
  session.lock();
  const auto locked = signIn("trzeci");
  EXPECT_EQ(locked.status, 1);
  EXPECT_THAT(locked.errors, HasSubstr("locked"));
}

/// A board that asks to sign in shows the day as soon as somebody has signed in.
TEST_F(SignIn, IsNoticedByAWatchThatAsksForIt) {
  HostProcess watch({"watch", "--format", "line"}, Onto::pipe, "", VAMBA_EXTENSION);
  EXPECT_EQ(watch.line(), "⚠ Sign in to the Vamba app.\n");
  ASSERT_EQ(signIn("tajne-7").status, 0);
  EXPECT_EQ(watch.line(), "Nothing for today.\n") << "before the reload date, a quarter of an hour away";
}

}  // namespace
}  // namespace host
