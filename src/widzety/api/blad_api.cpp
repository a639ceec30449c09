#include "widzety/api/blad_api.hpp"

#include "widzety/texts/tlumaczenia.hpp"

namespace widzety {
namespace {

struct Opis {
  Jezyk jezyk;

  std::string operator()(const BladApi::Serwer& serwer) const {
    return "Serwer odpowiedział błędem " + std::to_string(serwer.status) + ".";
  }
  std::string operator()(const BladApi::Siec&) const { return tlumacz("Brak połączenia z Vambą.", jezyk); }
  std::string operator()(const BladApi::BrakPoswiadczenia&) const {
    return tlumacz("Zaloguj się w aplikacji Vamba.", jezyk);
  }
  std::string operator()(const BladApi::Wygaslo&) const {
    return tlumacz("Poświadczenie wygasło — zaloguj się ponownie.", jezyk);
  }
};

struct Przyczyna {
  std::string operator()(const BladApi::Serwer& serwer) const {
    if (serwer.status != 0) return "the service answered with status " + std::to_string(serwer.status);
    return serwer.tresc.starts_with(zlyAdres) ? "the service's address is not a URL" : "the answer has no HTTP status";
  }
  std::string operator()(const BladApi::Siec& siec) const { return siec.blad.description; }
  std::string operator()(const BladApi::BrakPoswiadczenia&) const { return "no device token in the keychain"; }
  std::string operator()(const BladApi::Wygaslo&) const { return "the service refused the device token (status 401)"; }
};

}  // namespace

std::string BladApi::opis(Jezyk jezyk) const { return std::visit(Opis{jezyk}, przypadek_); }

std::string BladApi::przyczyna() const { return std::visit(Przyczyna{}, przypadek_); }

}  // namespace widzety
