// Queries as the programs above the keychain write them.
#pragma once

#include <string>

#include "platform/keychain/keychain.hpp"

namespace platform::testing {

inline KeychainQuery itemQuery(std::string account, std::string service = "org.example.app",
                               std::string accessGroup = "TEAM.org.example.app") {
  return {{KeychainKey::itemClass, std::string(genericPasswordClass)},
          {KeychainKey::service, std::move(service)},
          {KeychainKey::account, std::move(account)},
          {KeychainKey::accessGroup, std::move(accessGroup)}};
}

inline KeychainQuery readQuery(KeychainQuery query) {
  query.emplace_back(KeychainKey::returnData, true);
  query.emplace_back(KeychainKey::matchLimit, MatchLimit::one);
  return query;
}

inline KeychainQuery readQuery(const std::string& account) { return readQuery(itemQuery(account)); }

}  // namespace platform::testing
