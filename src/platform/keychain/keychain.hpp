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

/// What to look for. A query names all four attributes of an item (class, service, account, access group) as texts.
/// `returnData` (bool) asks for the item's bytes; `matchLimit` can only be `one`.
///
///   keychain.copyMatching({{KeychainKey::itemClass, genericPasswordClass}, {KeychainKey::service, "org.example"},
///                          {KeychainKey::account, "token"}, {KeychainKey::accessGroup, "group"},
///                          {KeychainKey::returnData, true}})
///
///   an item "s3cret"        -> success, "s3cret"
///   no such item            -> itemNotFound
///   without `account`       -> badQuery
using KeychainQuery = std::vector<std::pair<KeychainKey, KeychainValue>>;

/// The class of every item here, a value of `KeychainKey::itemClass`.
inline constexpr const char* genericPasswordClass = "generic-password";

/// The largest item that is read, in bytes, from whichever store.
inline constexpr std::size_t largestItem = 1024 * 1024;

enum class KeychainStatus {
  success = 0,
  itemNotFound,
  locked,       // the item, or every collection that could hold it, is locked; the user was not asked to unlock it
  unavailable,  // no such store on this machine
  timedOut,     // the store did not answer in time, now or in the last minute
  needsPrompt,  // the store wanted to ask the user first; its prompt was dismissed
  insecure,     // refused: other users could have read or written the item
  badQuery,     // an attribute is missing, named twice or of the wrong kind
  failed,       // the store answered with an error or nonsense, or the item is larger than `largestItem`
};

struct KeychainResult {
  KeychainStatus status = KeychainStatus::failed;
  std::optional<base::SecretText> data;  // the item's bytes exactly as stored, when found and asked for
};

/// Both operations may be called from many threads at once, never throw for an outside failure and never show a
/// prompt. When the deadline passes they return `timedOut`.
class Keychain {
 public:
  virtual ~Keychain() = default;

  /// Finds the item; of several that match, the one changed last.
  KeychainResult copyMatching(const KeychainQuery& query, base::Deadline deadline = base::Deadline::never()) {
    return find(query, deadline);
  }

  /// Deletes every item that matches; `returnData` and `matchLimit` have no effect. Returns `itemNotFound` if there is
  /// none.
  KeychainStatus deleteItems(const KeychainQuery& query, base::Deadline deadline = base::Deadline::never()) {
    return erase(query, deadline);
  }

 private:
  virtual KeychainResult find(const KeychainQuery& query, base::Deadline deadline) = 0;
  virtual KeychainStatus erase(const KeychainQuery& query, base::Deadline deadline) = 0;
};

}  // namespace platform
