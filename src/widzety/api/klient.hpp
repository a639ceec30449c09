// One GET of the service, from the credential to the decoded records. Nothing is retried and nothing is kept.
// timeline/wczytywanie.hpp chooses the sentence for the failures of a whole load.
#pragma once

#include <expected>
#include <functional>
#include <stop_token>
#include <string_view>
#include <variant>

#include "platform/url_session/url_request.hpp"
#include "widzety/api/blad_api.hpp"
#include "widzety/api/pek_kluczy.hpp"
#include "widzety/api/wspolne.hpp"
#include "widzety/model/dekodowanie.hpp"

namespace widzety {

/// The production service's base address.
inline constexpr std::string_view adresDomyslny = "https://vamba.ferol.pl/api";

/// A foreseen failure with its sentence, or a body that is not what the service promised.
using BladPobrania = std::variant<BladApi, platform::DecodingError>;

class KlientApi {
 public:
  /// No request lasts past `termin`.
  explicit KlientApi(PekKluczy pek, base::Deadline termin = base::Deadline::never()) : pek_(pek), termin_(termin) {}

  /// Fetches `sciezka` (which begins with "/") below the effective base address and decodes the body as `Wynik`. Reads
  /// the keychain anew. On 401 the device token is deleted. Blocks; a stop ends the transfer, which is then reported as
  /// `siec`. Calls `poOdczycie` once after reading the keychain, even if that failed, and before it sends anything.
  template <typename Wynik>
  std::expected<Wynik, BladPobrania> pobierz(
      std::string_view sciezka, std::stop_token stop, const std::function<void()>& poOdczycie = [] {}) const {
    auto zapytanie = [&] {
      try {
        return przygotuj(sciezka);
      } catch (...) {  // no memory; the other requests wait all the same
        poOdczycie();
        throw;
      }
    }();
    poOdczycie();
    if (!zapytanie) return std::unexpected(BladPobrania(std::move(zapytanie).error()));
    auto tresc = pobierzTresc(*zapytanie, std::move(stop));
    if (!tresc) return std::unexpected(BladPobrania(std::move(tresc).error()));
    auto wynik = wspolnyDekoder().decode<Wynik>(*tresc);
    if (!wynik) return std::unexpected(BladPobrania(std::move(wynik).error()));
    return std::move(*wynik);
  }

 private:
  std::expected<platform::UrlRequest, BladApi> przygotuj(std::string_view sciezka) const;
  /// The body of an answer with a status from 200 to 299.
  std::expected<std::string, BladApi> pobierzTresc(const platform::UrlRequest& zapytanie, std::stop_token stop) const;
  std::string adresBazowy() const;

  PekKluczy pek_;
  base::Deadline termin_;
};

}  // namespace widzety
