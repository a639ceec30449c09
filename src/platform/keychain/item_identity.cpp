#include "platform/keychain/item_identity.hpp"

#include <algorithm>
#include <array>

namespace platform {
namespace {

bool hasRightKind(KeychainKey key, const KeychainValue& value) {
  switch (key) {
    case KeychainKey::returnData:
      return std::holds_alternative<bool>(value);
    case KeychainKey::matchLimit:
      return std::holds_alternative<MatchLimit>(value);
    default:
      return std::holds_alternative<std::string>(value);
  }
}

}  // namespace

bool ItemIdentity::canExist() const {
  const std::array attributes{&itemClass, &service, &account, &accessGroup};
  return std::ranges::none_of(attributes, [](const std::string* text) { return text->contains('\0'); });
}

std::optional<ItemIdentity> itemIdentity(const KeychainQuery& query) {
  std::array<const std::string*, 4> attributes{};
  for (auto entry = query.begin(); entry != query.end(); ++entry) {
    const auto& [key, value] = *entry;
    const bool repeated = std::any_of(query.begin(), entry, [&](const auto& before) { return before.first == key; });
    if (repeated || !hasRightKind(key, value)) return std::nullopt;
    const auto* text = std::get_if<std::string>(&value);
    if (key == KeychainKey::itemClass) attributes[0] = text;
    if (key == KeychainKey::service) attributes[1] = text;
    if (key == KeychainKey::account) attributes[2] = text;
    if (key == KeychainKey::accessGroup) attributes[3] = text;
  }
  if (std::ranges::count(attributes, nullptr) != 0) return std::nullopt;
  return ItemIdentity{*attributes[0], *attributes[1], *attributes[2], *attributes[3]};
}

bool asksForData(const KeychainQuery& query) {
  return std::ranges::any_of(query, [](const auto& entry) {
    const auto* wanted = std::get_if<bool>(&entry.second);
    return entry.first == KeychainKey::returnData && wanted != nullptr && *wanted;
  });
}

}  // namespace platform
