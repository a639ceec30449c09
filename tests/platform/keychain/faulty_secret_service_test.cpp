#include <algorithm>
#include <chrono>
#include <functional>
#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/socket.h>
#include <sys/un.h>

#include "base/descriptors/file_descriptor.hpp"
#include "platform/keychain/fake_secret_service.hpp"
#include "platform/keychain/keychain_queries.hpp"
#include "platform/keychain/secret_service_keychain.hpp"
#include "support/secret_service_session.hpp"
#include "support/temporary_folder.hpp"
#include "support/waiting.hpp"

namespace platform::testing {
namespace {

using namespace std::chrono_literals;
using std::chrono::steady_clock;
using support::SecretServiceSession;
using ::testing::AnyOf;
using ::testing::Contains;
using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::Not;

// A wait without its limit would end by the test's time limit, or with another status than `timedOut`.
constexpr auto shortLimit = 200ms;
// For tests in which nothing is slow.
constexpr auto ampleLimit = 20s;

SecretServiceKeychain::Settings settingsFor(const std::string& address, steady_clock::duration limit = shortLimit) {
  SecretServiceKeychain::Settings settings;
  settings.busAddress = [address] { return address; };
  settings.longestCall = limit;
  return settings;
}

struct Fault {
  const char* name;
  FakeBehaviour behaviour;
  KeychainStatus onRead;
  KeychainStatus onDelete;
};

const std::vector<Fault>& faultTable() {
  using enum KeychainStatus;
  const std::map<std::string, FakeItem> one{{"one", {.bytes = "token"}}};
  const std::string noSuchObject = "org.freedesktop.Secret.Error.NoSuchObject";
  const std::string isLocked = "org.freedesktop.Secret.Error.IsLocked";
  static const std::vector<Fault> table{
      {"Healthy", {.items = one}, success, success},
      {"Empty", {}, itemNotFound, itemNotFound},
      {"CollectionLocked", {.items = one, .collectionLocked = true}, locked, locked},
      {"ItemLocked", {.items = {{"one", {.bytes = "token", .locked = true}}}}, locked, locked},
      {"ItemLockedMeanwhile",
       {.items = one, .errors = {{"GetSecret", isLocked}, {"Delete", isLocked}}},
       locked,
       locked},
      {"ItemGoneMeanwhile",
       {.items = one, .errors = {{"GetSecret", noSuchObject}, {"Delete", noSuchObject}}},
       itemNotFound,
       itemNotFound},
      {"UnknownMethodOnceAtCollections", {.items = one, .unknownMethod = {{"Collections", 1}}}, success, success},
      {"UnknownMethodOnceAtSearch", {.items = one, .unknownMethod = {{"SearchItems", 1}}}, success, success},
      {"UnknownMethodOnceAtItem", {.items = one, .unknownMethod = {{"GetSecret", 1}, {"Delete", 1}}}, success, success},
      {"UnknownMethodTwice", {.items = one, .unknownMethod = {{"SearchItems", 2}}}, failed, failed},
      {"WrongSignatureOfCollections", {.items = one, .wrongSignature = {"Collections"}}, failed, failed},
      {"WrongSignatureOfLocked", {.items = one, .wrongSignature = {"Locked"}}, failed, failed},
      {"WrongSignatureOfSearch", {.items = one, .wrongSignature = {"SearchItems"}}, failed, failed},
      {"WrongSignatureOfSession", {.items = one, .wrongSignature = {"OpenSession"}}, failed, success},
      {"WrongSignatureOfItem", {.items = one, .wrongSignature = {"GetSecret", "Delete"}}, failed, failed},
      {"SessionRefused",
       {.items = one, .errors = {{"OpenSession", "org.freedesktop.DBus.Error.NotSupported"}}},
       failed,
       success},
      {"DeletePrompts", {.items = one, .deletePrompts = true}, success, needsPrompt},
      {"LargestItem", {.items = {{"one", {.bytes = std::string(largestItem, 'x')}}}}, success, success},
      {"LargerThanAnItem", {.items = {{"one", {.bytes = std::string(largestItem + 1, 'x')}}}}, failed, success},
      {"Huge", {.items = {{"one", {.bytes = std::string(30'000'000, 'x')}}}}, failed, success},
  };
  return table;
}

class FaultySecretServiceTest : public ::testing::TestWithParam<Fault> {
 protected:
  SecretServiceSession session;
  FakeSecretService service{session.busAddress(), GetParam().behaviour};
  SecretServiceKeychain keychain{settingsFor(session.busAddress(), ampleLimit)};

  void expectNobodyWasAsked() {
    EXPECT_THAT(service.calls(), Not(Contains(AnyOf("Unlock", "Prompt", "CreateItem", "CreateCollection"))));
    if (GetParam().behaviour.collectionLocked) {
      EXPECT_THAT(service.calls(), Not(Contains("SearchItems")));
    }
  }
};

TEST_P(FaultySecretServiceTest, IsReadWithoutAskingThePerson) {
  const auto result = keychain.copyMatching(readQuery("token"));
  EXPECT_EQ(result.status, GetParam().onRead);
  EXPECT_EQ(result.data.has_value(), GetParam().onRead == KeychainStatus::success);
  if (result.data) {
    EXPECT_EQ(*result.data, GetParam().behaviour.items.at("one").bytes);
  }
  expectNobodyWasAsked();
}

TEST_P(FaultySecretServiceTest, IsDeletedFromWithoutAskingThePerson) {
  EXPECT_EQ(keychain.deleteItems(itemQuery("token")), GetParam().onDelete);
  if (GetParam().onDelete == KeychainStatus::success) {
    EXPECT_FALSE(service.holds("one"));
  }
  if (GetParam().onDelete == KeychainStatus::needsPrompt) {
    EXPECT_THAT(service.calls(), Contains("Dismiss"));
  }
  expectNobodyWasAsked();
}

INSTANTIATE_TEST_SUITE_P(Table, FaultySecretServiceTest, ::testing::ValuesIn(faultTable()),
                         [](const auto& fault) { return fault.param.name; });

TEST(SecretServiceTest, ItemChangedLastIsReadAndAllThatAreUnlockedAreDeleted) {
  SecretServiceSession session;
  FakeSecretService service(
      session.busAddress(),
      {.items = {{"a", {"old", 100}}, {"b", {"newest", 300}}, {"c", {"newer", 200}}, {"d", {"locked", 400, true}}}});
  SecretServiceKeychain keychain(settingsFor(session.busAddress(), ampleLimit));
  EXPECT_EQ(keychain.copyMatching(readQuery("token")).data, "newest");
  EXPECT_EQ(keychain.deleteItems(itemQuery("token")), KeychainStatus::locked);
  for (const char* item : {"a", "b", "c"}) EXPECT_FALSE(service.holds(item)) << item;
  EXPECT_TRUE(service.holds("d"));
}

TEST(SecretServiceTest, FetchesNoSecretWhenNoneIsAskedFor) {
  SecretServiceSession session;
  FakeSecretService service(session.busAddress(), {.items = {{"one", {.bytes = "token"}}}});
  SecretServiceKeychain keychain(settingsFor(session.busAddress(), ampleLimit));
  EXPECT_EQ(keychain.copyMatching(itemQuery("token")).status, KeychainStatus::success);
  EXPECT_THAT(service.calls(), ElementsAre("Collections", "Locked", "SearchItems"));
}

TEST(SecretServiceTest, AttributesThatNoItemCanBearReachNoService) {
  SecretServiceSession session;
  FakeSecretService service(session.busAddress(), {.items = {{"one", {.bytes = "token"}}}});
  SecretServiceKeychain keychain(settingsFor(session.busAddress(), ampleLimit));
  EXPECT_EQ(keychain.copyMatching(readQuery(std::string("token\0x", 7))).status, KeychainStatus::itemNotFound);
  EXPECT_EQ(keychain.deleteItems(itemQuery(std::string("token\0x", 7))), KeychainStatus::itemNotFound);
  EXPECT_EQ(keychain.copyMatching(readQuery("to\xffken")).status, KeychainStatus::failed);
  EXPECT_EQ(keychain.copyMatching({}).status, KeychainStatus::badQuery);
  EXPECT_THAT(service.calls(), Not(Contains("SearchItems")));
}

steady_clock::duration timeOf(const std::function<void()>& work) {
  const auto begin = steady_clock::now();
  work();
  return steady_clock::now() - begin;
}

class SilentSecretServiceTest : public ::testing::TestWithParam<const char*> {};

TEST_P(SilentSecretServiceTest, IsGivenUpAtTheLimit) {
  SecretServiceSession session;
  FakeSecretService service(session.busAddress(),
                            {.items = {{"one", {.bytes = "token"}}}, .deletePrompts = true, .silent = {GetParam()}});
  const bool onDelete = GetParam() == std::string("Delete") || GetParam() == std::string("Dismiss");
  SecretServiceKeychain keychain(settingsFor(session.busAddress()));
  auto status = KeychainStatus::success;
  const auto taken = timeOf([&] {
    status = onDelete ? keychain.deleteItems(itemQuery("token")) : keychain.copyMatching(readQuery("token")).status;
  });
  EXPECT_EQ(status, KeychainStatus::timedOut);
  EXPECT_GE(taken, shortLimit);
}

INSTANTIATE_TEST_SUITE_P(Table, SilentSecretServiceTest,
                         ::testing::Values("Collections", "Locked", "SearchItems", "OpenSession", "GetSecret", "Delete",
                                           "Dismiss"),
                         [](const auto& member) { return std::string(member.param); });

TEST(SecretServiceTest, AfterATimeOutIsLeftAloneForAMinute) {
  SecretServiceSession session;
  FakeSecretService service(session.busAddress(), {.silent = {"Collections"}});
  auto now = steady_clock::now();
  auto settings = settingsFor(session.busAddress(), 1s);
  settings.clock = [&now] { return now; };
  std::vector<std::string> said;
  settings.diagnostics = [&said](std::string_view line) { said.emplace_back(line); };
  SecretServiceKeychain keychain(std::move(settings));
  const auto hasBeenAsked = [&service](std::size_t times) {
    return support::eventually([&] { return service.calls().size() >= times; });
  };

  EXPECT_EQ(keychain.copyMatching(readQuery("token")).status, KeychainStatus::timedOut);
  ASSERT_TRUE(hasBeenAsked(1));
  now += 59s;
  EXPECT_EQ(keychain.copyMatching(readQuery("token")).status, KeychainStatus::timedOut);
  EXPECT_EQ(keychain.deleteItems(itemQuery("token")), KeychainStatus::timedOut);
  EXPECT_THAT(said, ElementsAre(HasSubstr("the Secret Service does not answer")));
  now += 1s;
  EXPECT_EQ(keychain.copyMatching(readQuery("token")).status, KeychainStatus::timedOut);
  ASSERT_TRUE(hasBeenAsked(2));
  EXPECT_EQ(service.calls().size(), 2U);
}

TEST(SecretServiceTest, IsAskedNoLongerThanToTheCallersDeadlineAndNotBlamedForThat) {
  SecretServiceSession session;
  FakeSecretService service(session.busAddress(), {.silent = {"SearchItems"}});
  auto settings = settingsFor(session.busAddress(), ampleLimit);
  settings.diagnostics = [](std::string_view line) { ADD_FAILURE() << line; };
  SecretServiceKeychain keychain(std::move(settings));
  for (int times = 0; times < 2; ++times) {
    EXPECT_EQ(keychain.copyMatching(readQuery("token"), base::Deadline::after(shortLimit)).status,
              KeychainStatus::timedOut);
  }
  EXPECT_EQ(keychain.copyMatching(readQuery("token"), base::Deadline::after(0s)).status, KeychainStatus::timedOut);
}

// A socket that a bus might be behind; `backlog` 0 takes one connection and no more.
class UnansweredSocket {
 public:
  explicit UnansweredSocket(int backlog) : socket_(::socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC | SOCK_NONBLOCK, 0)) {
    folder_.path("bus").copy(address_.sun_path, sizeof address_.sun_path - 1);
    EXPECT_EQ(bind(socket_.get(), generic(), sizeof address_), 0);
    EXPECT_EQ(listen(socket_.get(), backlog), 0);
  }

  std::string address() const { return "unix:path=" + folder_.path("bus"); }

  base::FileDescriptor connection() const {
    base::FileDescriptor client(::socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC | SOCK_NONBLOCK, 0));
    EXPECT_EQ(connect(client.get(), generic(), sizeof address_), 0);
    return client;
  }

 private:
  const sockaddr* generic() const { return reinterpret_cast<const sockaddr*>(&address_); }

  support::TemporaryFolder folder_;
  base::FileDescriptor socket_;
  sockaddr_un address_{.sun_family = AF_UNIX, .sun_path = {}};
};

TEST(SecretServiceTest, BusThatNeverSpeaksIsGivenUpAtTheLimit) {
  const UnansweredSocket socket(5);
  SecretServiceKeychain keychain(settingsFor(socket.address()));
  auto status = KeychainStatus::success;
  const auto taken = timeOf([&] { status = keychain.copyMatching(readQuery("token")).status; });
  EXPECT_EQ(status, KeychainStatus::timedOut);
  EXPECT_GE(taken, shortLimit);
}

TEST(SecretServiceTest, BusThatAcceptsNobodyHoldsNobodyUp) {
  const UnansweredSocket socket(0);
  const auto queued = socket.connection();
  SecretServiceKeychain keychain(settingsFor(socket.address()));
  EXPECT_EQ(keychain.copyMatching(readQuery("token")).status, KeychainStatus::timedOut);
}

TEST(SecretServiceTest, AddressBehindWhichIsNoBusIsUnavailable) {
  const support::TemporaryFolder folder;
  const std::vector<std::string> addresses{"",
                                           "garbage",
                                           ";;;",
                                           "unix:",
                                           "unix:path=",
                                           "unix:nonsense=1",
                                           "unix:path=" + folder.path("nothing-here"),
                                           "autolaunch:",
                                           "disabled:",
                                           "tcp:host=bus.invalid,port=1",
                                           "unixexec:path=/bin/false",
                                           "unix:path=%zz"};
  for (const auto& address : addresses) {
    SecretServiceKeychain keychain(settingsFor(address, ampleLimit));
    EXPECT_EQ(keychain.copyMatching(readQuery("token")).status, KeychainStatus::unavailable) << address;
  }
}

TEST(SecretServiceTest, NoBusIsUnavailable) {
  auto settings = settingsFor("");
  settings.busAddress = [] { return std::nullopt; };
  SecretServiceKeychain keychain(std::move(settings));
  EXPECT_EQ(keychain.copyMatching(readQuery("token")).status, KeychainStatus::unavailable);
  EXPECT_EQ(keychain.deleteItems(itemQuery("token")), KeychainStatus::unavailable);
}

TEST(SecretServiceTest, BusWithoutServiceIsUnavailable) {
  SecretServiceSession session;
  SecretServiceKeychain keychain(settingsFor(session.busAddress(), ampleLimit));
  EXPECT_EQ(keychain.copyMatching(readQuery("token")).status, KeychainStatus::unavailable);
}

TEST(SecretServiceTest, ServiceThatTheBusCannotBringUpIsGivenUpAtTheLimit) {
  SecretServiceSession session(SecretServiceSession::Activation::silent);
  SecretServiceKeychain keychain(settingsFor(session.busAddress()));
  const auto taken =
      timeOf([&] { EXPECT_EQ(keychain.copyMatching(readQuery("token")).status, KeychainStatus::timedOut); });
  EXPECT_GE(taken, shortLimit);
}

}  // namespace
}  // namespace platform::testing
