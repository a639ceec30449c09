// The device's credential: the widget's whole access to the keychain items that the main app writes. It reads them and
// deletes the token once the service has refused it; it never creates or changes an item, and keeps nothing.
#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "base/tasks/deadline.hpp"
#include "base/text/secret_text.hpp"
#include "platform/keychain/keychain.hpp"

namespace widzety {

/// The device token: sent with every request, never logged or shown.
inline constexpr std::string_view kontoTokenu = "token-urzadzenia";
/// The service's base address, where it is not the built-in one.
inline constexpr std::string_view kontoAdresu = "adres-api";

class PekKluczy {
 public:
  /// No operation waits past `termin`, except that a deletion is given a quarter of a second more.
  explicit PekKluczy(platform::Keychain& magazyn, base::Deadline termin = base::Deadline::never())
      : magazyn_(&magazyn), termin_(termin) {}

  /// The query that identifies an item: class, service, account, access group.
  static platform::KeychainQuery zapytanie(std::string_view konto);

  /// The item's text exactly as stored (an item of no bytes is the empty text). Absent where there is none, where its
  /// bytes are not UTF-8, and where the keychain fails in any way.
  std::optional<base::SecretText> czytaj(std::string_view konto) const;

  /// Deletes the item. It is no error where there is none, and a failure is not reported.
  void usun(std::string_view konto) const;

 private:
  platform::Keychain* magazyn_;
  base::Deadline termin_;
};

}  // namespace widzety
