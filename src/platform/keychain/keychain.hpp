// A keychain of generic passwords: items are found and deleted by a query, an ordered map from attribute to value.
// The stores behind it are the session's Secret Service and a folder of private files; system_keychain.hpp chooses
// between them. Nothing here creates or changes an item, and nothing is cached: each call reads the store again.
#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <utility>
#include <variant>
#include <vector>

#include "base/tasks/deadline.hpp"
#include "base/text/secret_text.hpp"

namespace platform {

enum class KeychainKey { itemClass, service, account, accessGroup, returnData, matchLimit };
enum class MatchLimit { one };
using KeychainValue = std::variant<std::string, bool, MatchLimit>;

/// What to look for, in the given order. A search names all four attributes of an item (class, service, account,
/// access group) as texts; `returnData` (bool) asks for its bytes, `matchLimit` allows for one item only.
using KeychainQuery = std::vector<std::pair<KeychainKey, KeychainValue>>;

/// The class of every item here, a value of `KeychainKey::itemClass`.
inline constexpr const char* genericPasswordClass = "generic-password";

/// The largest item that is read, in bytes, from whichever store.
inline constexpr std::size_t largestItem = 1024 * 1024;

enum class KeychainStatus {
  success = 0,
  itemNotFound,
  locked,       // the item, or every collection that could hold it, is locked; nobody was asked to unlock it
  unavailable,  // no such store on this machine
  timedOut,     // the store did not answer in time, or has lately not done so
  needsPrompt,  // the store would have asked the person; the question was dismissed
  insecure,     // others could have read or written the item; refused
  badQuery,     // an attribute is missing, named twice or of the wrong kind
  failed,       // the store answered nonsense or an error, or the item is larger than an item may be
};

struct KeychainResult {
  KeychainStatus status = KeychainStatus::failed;
  std::optional<base::SecretText> data;  // the item's bytes exactly as stored, when found and asked for
};

/// Both operations may be called from many threads at once, never throw for an outside failure and never ask the
/// person anything. What they wait for, they wait for no longer than to the deadline; their answer is then `timedOut`.
class Keychain {
 public:
  virtual ~Keychain() = default;

  /// Finds the item; of several that match, the one changed last.
  KeychainResult copyMatching(const KeychainQuery& query, base::Deadline deadline = base::Deadline::never()) {
    return find(query, deadline);
  }

  /// Deletes every item that matches; `returnData` and `matchLimit` do not matter. An item that is already gone is
  /// `itemNotFound`.
  KeychainStatus deleteItems(const KeychainQuery& query, base::Deadline deadline = base::Deadline::never()) {
    return erase(query, deadline);
  }

 private:
  virtual KeychainResult find(const KeychainQuery& query, base::Deadline deadline) = 0;
  virtual KeychainStatus erase(const KeychainQuery& query, base::Deadline deadline) = 0;
};

}  // namespace platform
