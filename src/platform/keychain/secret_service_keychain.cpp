#include "platform/keychain/secret_service_keychain.hpp"

#include <algorithm>
#include <cstdint>
#include <string_view>
#include <utility>

#include "platform/keychain/item_identity.hpp"
#include "platform/keychain/secret_service.hpp"
#include "platform/keychain/service_activation.hpp"

namespace platform {
namespace {

KeychainStatus statusOf(const BusFailure& failure) {
  switch (failure.kind) {
    case BusFailure::Kind::absent:
      return KeychainStatus::unavailable;
    case BusFailure::Kind::timedOut:
      return KeychainStatus::timedOut;
    case BusFailure::Kind::broken:
      return KeychainStatus::failed;
    case BusFailure::Kind::error:
      break;
  }
  if (failure.errorName == "org.freedesktop.Secret.Error.IsLocked") return KeychainStatus::locked;
  if (failure.errorName == "org.freedesktop.Secret.Error.NoSuchObject") return KeychainStatus::itemNotFound;
  return KeychainStatus::failed;
}

// gnome-keyring answers about one first call in a thousand with this error while other clients come and go: it has not
// yet created the called object.
bool isWorthAnotherTry(const BusFailure& failure) {
  return failure.errorName == "org.freedesktop.DBus.Error.UnknownMethod";
}

BusResult<std::string> newestOf(SecretService& service, const std::vector<std::string>& items) {
  if (items.size() == 1) return items.front();
  std::string newest;
  std::uint64_t newestTime = 0;
  for (const auto& item : items) {
    const auto time = service.modified(item);
    if (!time) return std::unexpected(time.error());
    if (newest.empty() || *time > newestTime) {
      newest = item;
      newestTime = *time;
    }
  }
  return newest;
}

KeychainStatus statusWhereNoneIsUnlocked(const SecretService::Found& found) {
  return found.locked.empty() ? KeychainStatus::itemNotFound : KeychainStatus::locked;
}

BusResult<KeychainResult> findItem(SecretService& service, const ItemIdentity& item, bool withData) {
  const auto unlocked = service.anyCollectionUnlocked();
  if (!unlocked) return std::unexpected(unlocked.error());
  if (!*unlocked) return KeychainResult{KeychainStatus::locked, std::nullopt};
  const auto found = service.searchItems(item);
  if (!found) return std::unexpected(found.error());
  if (found->unlocked.empty()) return KeychainResult{statusWhereNoneIsUnlocked(*found), std::nullopt};
  if (!withData) return KeychainResult{KeychainStatus::success, std::nullopt};
  const auto newest = newestOf(service, found->unlocked);
  if (!newest) return std::unexpected(newest.error());
  auto secret = service.secretOf(*newest);
  if (!secret) return std::unexpected(secret.error());
  return KeychainResult{KeychainStatus::success, *std::move(secret)};
}

BusResult<KeychainStatus> removeItems(SecretService& service, const ItemIdentity& item) {
  const auto unlocked = service.anyCollectionUnlocked();
  if (!unlocked) return std::unexpected(unlocked.error());
  if (!*unlocked) return KeychainStatus::locked;
  const auto found = service.searchItems(item);
  if (!found) return std::unexpected(found.error());
  auto status = statusWhereNoneIsUnlocked(*found);
  if (status == KeychainStatus::itemNotFound && !found->unlocked.empty()) status = KeychainStatus::success;
  for (const auto& path : found->unlocked) {
    const auto deletion = service.deleteItem(path);
    if (!deletion) return std::unexpected(deletion.error());
    if (*deletion == SecretService::Deletion::dismissedPrompt) status = KeychainStatus::needsPrompt;
  }
  return status;
}

// Runs `work` on a connection of its own. Tries again once if nobody served the name and the bus could start a service
// that does, and once if the service had not created its objects yet.
template <class Work>
auto converse(const SecretServiceKeychain::Settings& settings, ServiceActivation& activation, base::Deadline deadline,
              const Work& work) -> decltype(work(std::declval<SecretService&>())) {
  const auto address = settings.busAddress();
  if (!address) return std::unexpected(BusFailure{BusFailure::Kind::absent, {}});
  bool activated = false;
  bool repeated = false;
  while (true) {
    auto bus = SessionBus::connect(*address, deadline);
    if (!bus) return std::unexpected(bus.error());
    SecretService service(*bus, deadline);
    auto outcome = work(service);
    if (outcome) return outcome;
    if (outcome.error().kind == BusFailure::Kind::absent && !activated) {
      const auto started = activation.startOnce(*bus, secretServiceName, deadline);
      if (!started) return std::unexpected(started.error());
      if (!*started) return outcome;
      activated = true;
    } else if (isWorthAnotherTry(outcome.error()) && !repeated) {
      repeated = true;
    } else {
      return outcome;
    }
  }
}

}  // namespace

SecretServiceKeychain::SecretServiceKeychain(Settings settings)
    : settings_(std::move(settings)),
      breaker_(settings_.pauseAfterTimeout, settings_.clock),
      activation_(std::make_unique<ServiceActivation>()) {}

SecretServiceKeychain::~SecretServiceKeychain() = default;

// Only the keychain's own limit counts against the service. If the caller's deadline came first, the service may still
// answer the next call.
KeychainStatus SecretServiceKeychain::statusOfFailure(const BusFailure& failure, base::Deadline deadline) {
  const auto status = statusOf(failure);
  if (status == KeychainStatus::timedOut && !deadline.passed()) {
    breaker_.trip();
    settings_.diagnostics("keychain: the Secret Service does not answer; it is not asked again for a minute");
  }
  return status;
}

KeychainResult SecretServiceKeychain::find(const KeychainQuery& query, base::Deadline deadline) {
  const auto item = itemIdentity(query);
  if (!item) return {KeychainStatus::badQuery, std::nullopt};
  if (!item->canExist()) return {KeychainStatus::itemNotFound, std::nullopt};
  if (breaker_.open()) return {KeychainStatus::timedOut, std::nullopt};
  auto outcome = converse(settings_, *activation_, std::min(base::Deadline::after(settings_.longestCall), deadline),
                          [&](SecretService& service) { return findItem(service, *item, asksForData(query)); });
  if (outcome) return *std::move(outcome);
  return {statusOfFailure(outcome.error(), deadline), std::nullopt};
}

KeychainStatus SecretServiceKeychain::erase(const KeychainQuery& query, base::Deadline deadline) {
  const auto item = itemIdentity(query);
  if (!item) return KeychainStatus::badQuery;
  if (!item->canExist()) return KeychainStatus::itemNotFound;
  if (breaker_.open()) return KeychainStatus::timedOut;
  const auto outcome =
      converse(settings_, *activation_, std::min(base::Deadline::after(settings_.longestCall), deadline),
               [&](SecretService& service) { return removeItems(service, *item); });
  return outcome ? *outcome : statusOfFailure(outcome.error(), deadline);
}

}  // namespace platform
