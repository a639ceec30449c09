// The calls of the Secret Service interface (org.freedesktop.secrets) that reading and deleting an item take, in the
// protocol's terms. None of them unlocks, asks the person or creates anything.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "base/text/secret_text.hpp"
#include "platform/keychain/item_identity.hpp"
#include "platform/keychain/session_bus.hpp"

namespace platform {

inline constexpr const char* secretServiceName = "org.freedesktop.secrets";
inline constexpr const char* secretServicePath = "/org/freedesktop/secrets";
inline constexpr const char* secretServiceInterface = "org.freedesktop.Secret.Service";

/// One conversation with the service, within one deadline. Objects are named by their D-Bus paths.
class SecretService {
 public:
  struct Found {
    std::vector<std::string> unlocked;
    std::vector<std::string> locked;
  };
  enum class Deletion { done, dismissedPrompt };

  /// Both must outlive this.
  SecretService(SessionBus& bus, const base::Deadline& deadline) : bus_(bus), deadline_(deadline) {}

  BusResult<bool> anyCollectionUnlocked();

  /// A session whose secrets are sent over the bus unencrypted ("plain"): the bus belongs to the user, and a program
  /// that can listen in on it can also ask for the item.
  BusResult<std::string> openSession();

  /// Items that have at least the attributes of `item`. Call it only where a collection is unlocked: otherwise some
  /// services open a dialog.
  BusResult<Found> searchItems(const ItemIdentity& item);

  /// Seconds since 1970, by the service's clock.
  BusResult<std::uint64_t> modified(const std::string& item);

  /// The item's bytes. `broken` when the item holds more than `largestItem` bytes.
  BusResult<base::SecretText> secretOf(const std::string& item);

  /// Dismisses the prompt if the service wants to show one first.
  BusResult<Deletion> deleteItem(const std::string& item);

 private:
  BusResult<BusMessage> property(const std::string& path, const char* interface, const char* name);

  SessionBus& bus_;
  const base::Deadline& deadline_;
};

}  // namespace platform
