// The Secret Service reader against a real gnome-keyring-daemon on a real bus.
#include <atomic>
#include <chrono>
#include <fstream>
#include <string>
#include <thread>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <signal.h>
#include <sys/time.h>

#include "platform/keychain/keychain_queries.hpp"
#include "platform/keychain/secret_service_keychain.hpp"
#include "support/secret_service_session.hpp"
#include "support/waiting.hpp"

namespace platform::testing {
namespace {

using namespace std::chrono_literals;
using std::chrono::steady_clock;
using support::SecretServiceSession;

SecretServiceSession::Attributes attributesOf(const std::string& account) {
  return {{"class", "generic-password"},
          {"service", "org.example.app"},
          {"account", account},
          {"access-group", "TEAM.org.example.app"}};
}

SecretServiceKeychain keychainOf(const SecretServiceSession& session, steady_clock::duration limit = 20s) {
  SecretServiceKeychain::Settings settings;
  settings.busAddress = [address = session.busAddress()] { return address; };
  settings.longestCall = limit;
  return SecretServiceKeychain(std::move(settings));
}

class GnomeKeyringTest : public ::testing::Test {
 protected:
  GnomeKeyringTest() { session.startKeyring(); }

  KeychainResult read(const std::string& account = "token") { return keychain.copyMatching(readQuery(account)); }

  SecretServiceSession session;
  SecretServiceKeychain keychain = keychainOf(session);
};

TEST_F(GnomeKeyringTest, ReadsBytesExactlyAsStored) {
  EXPECT_EQ(read().status, KeychainStatus::itemNotFound);
  const std::vector<std::string> contents{
      "token", "line\n", "", "ab\xff\xfe", std::string("a\0b", 3), std::string(40'000, 'x')};
  for (std::size_t index = 0; index < contents.size(); ++index) {
    const auto account = "account-" + std::to_string(index);
    session.store(attributesOf(account), contents[index]);
    const auto result = read(account);
    EXPECT_EQ(result.status, KeychainStatus::success);
    EXPECT_EQ(result.data, contents[index]);
  }
}

TEST_F(GnomeKeyringTest, ReadsWhatThePasswordToolStored) {
  support::ChildProcess::Start start{{"secret-tool", "store", "--label=Example", "class", "generic-password", "service",
                                      "org.example.app", "account", "token", "access-group", "TEAM.org.example.app"},
                                     {"PATH=/usr/bin:/bin"},
                                     "by-hand"};
  for (const auto& [name, value] : session.environment()) start.environment.push_back(name + "=" + value);
  support::ChildProcess(start).firstLine();  // ends with the tool
  EXPECT_EQ(read().data, "by-hand");
}

TEST_F(GnomeKeyringTest, DeletesOneItemAndLeavesItsNeighbour) {
  session.store(attributesOf("token"), "token");
  session.store(attributesOf("address"), "https://example.org");
  EXPECT_EQ(keychain.deleteItems(itemQuery("token")), KeychainStatus::success);
  EXPECT_EQ(read().status, KeychainStatus::itemNotFound);
  EXPECT_EQ(keychain.deleteItems(itemQuery("token")), KeychainStatus::itemNotFound);
  EXPECT_EQ(read("address").data, "https://example.org");
}

TEST_F(GnomeKeyringTest, LockedItemIsLockedAndAnAbsentOneIsAbsent) {
  session.store(attributesOf("token"), "token");
  session.lock();
  EXPECT_EQ(read().status, KeychainStatus::locked);
  EXPECT_EQ(read().data, std::nullopt);
  EXPECT_EQ(read("another").status, KeychainStatus::itemNotFound);
  EXPECT_EQ(keychain.deleteItems(itemQuery("token")), KeychainStatus::locked);
}

TEST_F(GnomeKeyringTest, RestartedServiceIsReadAgain) {
  session.store(attributesOf("token"), "token");
  EXPECT_EQ(read().data, "token");
  session.endKeyring();
  EXPECT_EQ(read().status, KeychainStatus::unavailable);
  session.startKeyring();
  EXPECT_EQ(read().data, "token");
}

TEST_F(GnomeKeyringTest, FrozenServiceIsGivenUpAfterTwoSecondsAndThenLeftAlone) {
  session.store(attributesOf("token"), "token");
  SecretServiceKeychain::Settings settings;  // the limits that programs get
  settings.busAddress = [this] { return session.busAddress(); };
  auto now = steady_clock::now();
  settings.clock = [&now] { return now; };
  SecretServiceKeychain impatient(std::move(settings));
  session.keyring().freeze();

  const auto begin = steady_clock::now();
  EXPECT_EQ(impatient.copyMatching(readQuery("token")).status, KeychainStatus::timedOut);
  EXPECT_GE(steady_clock::now() - begin, 1900ms);
  EXPECT_EQ(impatient.copyMatching(readQuery("token")).status, KeychainStatus::timedOut);

  session.keyring().thaw();
  EXPECT_EQ(impatient.copyMatching(readQuery("token")).status, KeychainStatus::timedOut);
  // On a busy machine the keyring may still take longer than the limit, and is then not asked for another minute.
  EXPECT_TRUE(support::eventually([&] {
    now += 60s;
    return impatient.copyMatching(readQuery("token")).data == "token";
  }));
}

TEST_F(GnomeKeyringTest, ThreeThreadsReadAtOnce) {
  session.store(attributesOf("token"), "token");
  session.store(attributesOf("address"), "https://example.org");
  std::atomic<int> wrong = 0;
  std::vector<std::jthread> threads;
  for (int thread = 0; thread < 3; ++thread) {
    threads.emplace_back([&] {
      for (int times = 0; times < 60; ++times) {
        if (read("token").data != "token") ++wrong;
        if (read("address").data != "https://example.org") ++wrong;
      }
    });
  }
  threads.clear();
  EXPECT_EQ(wrong, 0);
}

TEST_F(GnomeKeyringTest, SignalsDoNotDisturbARead) {
  session.store(attributesOf("token"), "token");
  static std::atomic<int> signals = 0;
  struct sigaction before{};
  struct sigaction action{};
  action.sa_handler = [](int) { ++signals; };  // without SA_RESTART: waits are cut short
  sigaction(SIGALRM, &action, &before);
  const itimerval often{{0, 200}, {0, 200}};
  setitimer(ITIMER_REAL, &often, nullptr);
  int wrong = 0;
  for (int times = 0; times < 50; ++times) wrong += read().data == "token" ? 0 : 1;
  const itimerval never{};
  setitimer(ITIMER_REAL, &never, nullptr);
  sigaction(SIGALRM, &before, nullptr);
  EXPECT_EQ(wrong, 0);
  EXPECT_GT(signals, 0);
}

TEST_F(GnomeKeyringTest, NothingStaysOpenAfterReads) {
  const auto openDescriptors = [] {
    int count = 0;
    for ([[maybe_unused]] const auto& entry : std::filesystem::directory_iterator("/proc/self/fd")) ++count;
    return count;
  };
  read();
  const int before = openDescriptors();
  for (int times = 0; times < 20; ++times) read();
  EXPECT_EQ(openDescriptors(), before);
}

TEST(GnomeKeyringActivationTest, ServiceThatNobodyStartedIsStartedOnceAndRead) {
  SecretServiceSession session(SecretServiceSession::Activation::keyring);
  session.startKeyring();
  session.store(attributesOf("token"), "token");
  session.endKeyring();
  auto keychain = keychainOf(session);
  std::atomic<int> wrong = 0;
  {
    std::vector<std::jthread> threads;
    for (int thread = 0; thread < 3; ++thread) {
      threads.emplace_back([&] { wrong += keychain.copyMatching(readQuery("token")).data == "token" ? 0 : 1; });
    }
  }
  EXPECT_EQ(wrong, 0);
  EXPECT_TRUE(session.someoneServes());
}

}  // namespace
}  // namespace platform::testing
