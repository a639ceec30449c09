#include "widzety/api/klient.hpp"

#include "base/text/utf8.hpp"

namespace widzety {

std::string KlientApi::adresBazowy() const {
  const auto adres = pek_.czytaj(kontoAdresu);
  return std::string(adres ? adres->text() : adresDomyslny);
}

std::expected<platform::UrlRequest, BladApi> KlientApi::przygotuj(std::string_view sciezka) const {
  const auto token = pek_.czytaj(kontoTokenu);
  if (!token || token->empty()) return std::unexpected(BladApi::brakPoswiadczenia());

  auto url = platform::Url::parse(adresBazowy().append(sciezka));
  if (!url) return std::unexpected(BladApi::serwer(0, std::string(zlyAdres) + adresBazowy()));

  platform::UrlRequest zapytanie{.url = std::move(*url),
                                 .cachePolicy = platform::CachePolicy::useProtocolCachePolicy,
                                 .timeoutInterval = absl::Seconds(60),
                                 .deadline = termin_};
  zapytanie.setValue({"Bearer ", token->text()}, "Authorization");
  zapytanie.setValue("application/json", "Accept");
  return zapytanie;
}

std::expected<std::string, BladApi> KlientApi::pobierzTresc(const platform::UrlRequest& zapytanie,
                                                            std::stop_token stop) const {
  auto wynik = wspolnaSesja().data(zapytanie, std::move(stop));
  if (!wynik) return std::unexpected(BladApi::siec(std::move(wynik).error()));

  auto& [tresc, odpowiedz] = *wynik;
  if (!odpowiedz.statusCode) return std::unexpected(BladApi::serwer(0, "Odpowiedź bez statusu"));
  const auto status = *odpowiedz.statusCode;
  if (status == 401) {
    pek_.usun(kontoTokenu);
    return std::unexpected(BladApi::wygaslo());
  }
  if (status < 200 || status > 299) {
    if (!base::isUtf8(tresc)) tresc.clear();
    return std::unexpected(BladApi::serwer(status, std::move(tresc)));
  }
  return std::move(tresc);
}

}  // namespace widzety
