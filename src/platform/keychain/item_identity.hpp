// The part of a keychain query that says which item is meant. What a store does with it is the store's own affair.
#pragma once

#include <optional>
#include <string>

#include "platform/keychain/keychain.hpp"

namespace platform {

struct ItemIdentity {
  std::string itemClass;
  std::string service;
  std::string account;
  std::string accessGroup;

  /// No item of either store can bear an attribute with a NUL byte: both cut the text there, and would find another.
  bool canExist() const;
};

/// Nothing when an attribute is missing, named twice or of the wrong kind.
std::optional<ItemIdentity> itemIdentity(const KeychainQuery& query);

bool asksForData(const KeychainQuery& query);

}  // namespace platform
