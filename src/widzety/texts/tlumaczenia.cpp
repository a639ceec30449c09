#include "widzety/texts/tlumaczenia.hpp"

#include <algorithm>
#include <cstdlib>
#include <memory>
#include <optional>

#include <utf8proc.h>

namespace widzety {
namespace {

using MapaJezykow = std::unordered_map<Jezyk, const MapaTlumaczen*>;

const MapaTlumaczen& mapaAngielska() {
  static const MapaTlumaczen mapa = zbudujMape(wierszeAngielskie);
  return mapa;
}

const MapaTlumaczen& mapaLitewska() {
  static const MapaTlumaczen mapa = zbudujMape(wierszeLitewskie);
  return mapa;
}

const MapaJezykow& mapaJezykow() {
  static const MapaJezykow mapa = [] {
    MapaJezykow jezyki;
    jezyki.reserve(2);
    jezyki.emplace(Jezyk::en, &mapaAngielska());
    jezyki.emplace(Jezyk::lt, &mapaLitewska());
    return jezyki;
  }();
  return mapa;
}

/// The text in normalisation form C; absent where its bytes are not UTF-8.
std::optional<std::string> znormalizowany(std::string_view tekst) {
  utf8proc_uint8_t* bajty = nullptr;
  const auto dlugosc =
      utf8proc_map(reinterpret_cast<const utf8proc_uint8_t*>(tekst.data()), static_cast<utf8proc_ssize_t>(tekst.size()),
                   &bajty, static_cast<utf8proc_option_t>(UTF8PROC_STABLE | UTF8PROC_COMPOSE));
  const std::unique_ptr<utf8proc_uint8_t, decltype(&std::free)> wlasciciel(bajty, &std::free);
  if (dlugosc < 0) return std::nullopt;
  return std::string(reinterpret_cast<const char*>(bajty), static_cast<std::size_t>(dlugosc));
}

bool jestAscii(std::string_view tekst) {
  return std::ranges::all_of(tekst, [](char znak) { return static_cast<unsigned char>(znak) < 0x80; });
}

}  // namespace

MapaTlumaczen zbudujMape(std::span<const Tlumaczenie> wiersze) {
  MapaTlumaczen mapa;
  mapa.reserve(liczbaWierszy);
  for (const auto& [klucz, tekst] : wiersze) {
    if (!mapa.emplace(klucz, tekst).second) std::abort();
  }
  return mapa;
}

std::string tlumacz(std::string_view tekst, Jezyk jezyk) {
  if (jezyk == Jezyk::pl) return std::string(tekst);
  const auto mapa = mapaJezykow().find(jezyk);
  if (mapa == mapaJezykow().end()) return std::string(tekst);

  const auto& tlumaczenia = *mapa->second;
  auto wiersz = tlumaczenia.find(tekst);
  // The keys are in NFC and so are nearly all texts that come here. Only a text that may be another spelling of a key
  // is normalised.
  if (wiersz == tlumaczenia.end() && !jestAscii(tekst)) {
    if (const auto nfc = znormalizowany(tekst)) wiersz = tlumaczenia.find(*nfc);
  }
  return std::string(wiersz == tlumaczenia.end() ? tekst : wiersz->second);
}

}  // namespace widzety
