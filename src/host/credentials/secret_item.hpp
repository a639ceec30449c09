// Storing an item in the session's Secret Service (org.freedesktop.secrets).
#pragma once

#include <expected>
#include <map>
#include <string>
#include <string_view>

namespace host {

/// Why the Secret Service gives or takes no item, as sentences for a person.
namespace keyring_fault {

inline constexpr const char* locked = "the keyring is locked; unlock it and try again";
inline constexpr const char* asksFirst = "the Secret Service wants to ask first; unlock the keyring and try again";
inline constexpr const char* silent = "the Secret Service does not answer";

}  // namespace keyring_fault

/// An item's attributes.
using SecretItem = std::map<std::string, std::string>;

/// Creates the item in the default collection, or replaces the one with the same attributes. A
/// service that wants to ask the person first is an error. Errors are sentences for a person.
std::expected<void, std::string> storeSecretItem(const std::string& label, const SecretItem& item,
                                                 std::string_view bytes);

}  // namespace host
