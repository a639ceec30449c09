// The attributes of a keychain query that identify an item.
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

  /// False where an attribute holds a NUL byte. Both stores cut the text there and would find another item.
  bool canExist() const;
};

/// Nothing when an attribute is missing, named twice or of the wrong kind.
std::optional<ItemIdentity> itemIdentity(const KeychainQuery& query);

bool asksForData(const KeychainQuery& query);

}  // namespace platform
