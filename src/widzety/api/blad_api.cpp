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

}  // namespace

std::string BladApi::opis(Jezyk jezyk) const { return std::visit(Opis{jezyk}, przypadek_); }

}  // namespace widzety
