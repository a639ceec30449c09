// The coding keys of each record: one for each field, in the order of the fields, with its text in the service's JSON.
// A key is looked up by its text only; there is no integer form.
#pragma once

#include <algorithm>
#include <array>
#include <cstddef>
#include <optional>
#include <string_view>

namespace widzety {

struct ZadanieMoje;
struct SpotkaniePlanowane;
struct PozycjaSkrzynki;
struct Skrzynka;

template <typename Rekord>
struct KluczeKodowania;

template <>
struct KluczeKodowania<ZadanieMoje> {
  enum class Klucz { id, numer, tytul, termin, status, projektNazwa };
  static constexpr std::array<std::string_view, 6> teksty{"id", "numer", "tytul", "termin", "status", "projekt_nazwa"};
};

template <>
struct KluczeKodowania<SpotkaniePlanowane> {
  enum class Klucz { id, tytul, kiedy, czasTrwaniaMin, projektNazwa };
  static constexpr std::array<std::string_view, 5> teksty{"id", "tytul", "kiedy", "czas_trwania_min", "projekt_nazwa"};
};

template <>
struct KluczeKodowania<PozycjaSkrzynki> {
  enum class Klucz { id, tytul };
  static constexpr std::array<std::string_view, 2> teksty{"id", "tytul"};
};

template <>
struct KluczeKodowania<Skrzynka> {
  enum class Klucz { zadania };
  static constexpr std::array<std::string_view, 1> teksty{"zadania"};
};

template <typename Rekord>
using Klucz = typename KluczeKodowania<Rekord>::Klucz;

/// The key's text in the service's JSON.
template <typename Rekord>
constexpr std::string_view tekstKlucza(Klucz<Rekord> klucz) {
  return KluczeKodowania<Rekord>::teksty[static_cast<std::size_t>(klucz)];
}

/// The record's key of this very text; absent where the record has none.
template <typename Rekord>
constexpr std::optional<Klucz<Rekord>> kluczOTekscie(std::string_view tekst) {
  constexpr auto& teksty = KluczeKodowania<Rekord>::teksty;
  const auto znaleziony = std::ranges::find(teksty, tekst);
  if (znaleziony == teksty.end()) return std::nullopt;
  return static_cast<Klucz<Rekord>>(znaleziony - teksty.begin());
}

}  // namespace widzety
