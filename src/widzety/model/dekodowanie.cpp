#include "widzety/model/dekodowanie.hpp"

#include <array>
#include <string_view>

#include "platform/json_decoding/keyed_record.hpp"
#include "widzety/model/data_serwera.hpp"
#include "widzety/model/klucze.hpp"

namespace widzety {
namespace {

template <auto Pole>
constexpr auto pole(Klucz<decltype(platform::recordOf(Pole))> klucz) {
  return platform::keyedField<Pole>(tekstKlucza<decltype(platform::recordOf(Pole))>(klucz));
}

}  // namespace

platform::Decoded decodeInto(const platform::JsonValue& wartosc, ZadanieMoje& zadanie) {
  using enum Klucz<ZadanieMoje>;
  static constexpr std::array pola{
      pole<&ZadanieMoje::id>(id),         pole<&ZadanieMoje::numer>(numer),
      pole<&ZadanieMoje::tytul>(tytul),   pole<&ZadanieMoje::termin>(termin),
      pole<&ZadanieMoje::status>(status), pole<&ZadanieMoje::projektNazwa>(projektNazwa),
  };
  return platform::decodeKeyed(wartosc, pola, zadanie);
}

platform::Decoded decodeInto(const platform::JsonValue& wartosc, SpotkaniePlanowane& spotkanie) {
  using enum Klucz<SpotkaniePlanowane>;
  static constexpr std::array pola{
      pole<&SpotkaniePlanowane::id>(id),
      pole<&SpotkaniePlanowane::tytul>(tytul),
      pole<&SpotkaniePlanowane::kiedy>(kiedy),
      pole<&SpotkaniePlanowane::czasTrwaniaMin>(czasTrwaniaMin),
      pole<&SpotkaniePlanowane::projektNazwa>(projektNazwa),
  };
  return platform::decodeKeyed(wartosc, pola, spotkanie);
}

platform::Decoded decodeInto(const platform::JsonValue& wartosc, PozycjaSkrzynki& pozycja) {
  using enum Klucz<PozycjaSkrzynki>;
  static constexpr std::array pola{pole<&PozycjaSkrzynki::id>(id), pole<&PozycjaSkrzynki::tytul>(tytul)};
  return platform::decodeKeyed(wartosc, pola, pozycja);
}

platform::Decoded decodeInto(const platform::JsonValue& wartosc, Skrzynka& skrzynka) {
  static constexpr std::array pola{pole<&Skrzynka::zadania>(Klucz<Skrzynka>::zadania)};
  return platform::decodeKeyed(wartosc, pola, skrzynka);
}

platform::JsonDecoder zrobDekoder() {
  return platform::JsonDecoder(
      [strefa = strefaDatySerwera()](std::string_view tekst) { return wczytajDate(tekst, strefa); });
}

}  // namespace widzety
