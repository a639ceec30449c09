// The errors of server access, each with the sentence that the user is shown.
#pragma once

#include <concepts>
#include <cstdint>
#include <string>
#include <string_view>
#include <variant>

#include "platform/url_session/load_result.hpp"
#include "widzety/texts/jezyk.hpp"

namespace widzety {

/// An error that knows its sentence for the user.
template <typename Blad>
concept BladZOpisem = requires(const Blad& blad) {
  { blad.opis() } -> std::same_as<std::string>;
};

/// The `tresc` of an address that is no URL begins with this; the address follows.
inline constexpr std::string_view zlyAdres = "Zły adres: ";

class BladApi {
 public:
  /// An answer that the client can't use: a status other than 2xx and 401, none at all, or an address that is no URL.
  /// `tresc` keeps the detail (the body as text, or the client's own words) and is never shown.
  struct Serwer {
    std::int64_t status;
    std::string tresc;
  };
  /// The request did not complete; the transport's own error, kept whole.
  struct Siec {
    platform::TransportError blad;
  };
  /// The keychain holds no device token, or an empty one.
  struct BrakPoswiadczenia {};
  /// The service refused the token (401); it is deleted by now.
  struct Wygaslo {};
  using Przypadek = std::variant<Serwer, Siec, BrakPoswiadczenia, Wygaslo>;

  static BladApi serwer(std::int64_t status, std::string tresc) { return BladApi(Serwer{status, std::move(tresc)}); }
  static BladApi siec(platform::TransportError blad) { return BladApi(Siec{std::move(blad)}); }
  static BladApi brakPoswiadczenia() { return BladApi(BrakPoswiadczenia{}); }
  static BladApi wygaslo() { return BladApi(Wygaslo{}); }

  const Przypadek& przypadek() const { return przypadek_; }

  /// The sentence for the user. That of `serwer` is Polish in every language, on purpose; the others are translated.
  std::string opis() const { return opis(biezacyJezyk()); }
  std::string opis(Jezyk jezyk) const;

  /// The cause in English, one line for a log. Holds no secret and no address.
  std::string przyczyna() const;

 private:
  explicit BladApi(Przypadek przypadek) : przypadek_(std::move(przypadek)) {}

  Przypadek przypadek_;
};

static_assert(BladZOpisem<BladApi>);

}  // namespace widzety
