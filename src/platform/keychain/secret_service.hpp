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

  /// Items whose attributes hold at least those of `item`. Only to be called where a collection is unlocked: some
  /// services open a dialog at a search otherwise.
  BusResult<Found> searchItems(const ItemIdentity& item);

  /// Seconds since 1970, by the service's clock.
  BusResult<std::uint64_t> modified(const std::string& item);

  /// The item's bytes. They cross the bus as they are ("plain"): the bus is the person's own, and whoever can listen
  /// in on it can ask for the item too. `broken` when it holds more than `largestItem` bytes.
  BusResult<base::SecretText> secretOf(const std::string& item);

  /// A prompt that the service wants to show first is dismissed.
  BusResult<Deletion> deleteItem(const std::string& item);

 private:
  BusResult<BusMessage> property(const std::string& path, const char* interface, const char* name);
  BusResult<std::string> openSession();

  SessionBus& bus_;
  const base::Deadline& deadline_;
};

}  // namespace platform
