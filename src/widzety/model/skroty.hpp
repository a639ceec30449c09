// Hashing of the records: every field in the order of its declaration, as equality takes them.
#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <optional>

#include <absl/time/time.h>

#include "widzety/model/rekordy.hpp"

namespace widzety {

/// Feeds an optional field to `odbiorca`: the marker 0 where it is absent, else the marker 1 and the value.
template <typename Odbiorca, typename T>
void zasilOpcjonalnym(Odbiorca& odbiorca, const std::optional<T>& pole) {
  odbiorca(static_cast<std::uint8_t>(pole ? 1 : 0));
  if (pole) odbiorca(*pole);
}

// zasil() calls `odbiorca` with the fields of a record one after another.

template <typename Odbiorca>
void zasil(Odbiorca& odbiorca, const ZadanieMoje& zadanie) {
  odbiorca(zadanie.id);
  odbiorca(zadanie.numer);
  odbiorca(zadanie.tytul);
  zasilOpcjonalnym(odbiorca, zadanie.termin);
  odbiorca(zadanie.status);
  odbiorca(zadanie.projektNazwa);
}

template <typename Odbiorca>
void zasil(Odbiorca& odbiorca, const SpotkaniePlanowane& spotkanie) {
  odbiorca(spotkanie.id);
  odbiorca(spotkanie.tytul);
  odbiorca(spotkanie.kiedy);
  odbiorca(spotkanie.czasTrwaniaMin);
  zasilOpcjonalnym(odbiorca, spotkanie.projektNazwa);
}

template <typename Odbiorca>
void zasil(Odbiorca& odbiorca, const PozycjaSkrzynki& pozycja) {
  odbiorca(pozycja.id);
  odbiorca(pozycja.tytul);
}

/// Folds values into one number that depends on their order.
class Skrot {
 public:
  template <typename T>
  void operator()(const T& wartosc) {
    dolacz(std::hash<T>{}(wartosc));
  }
  void operator()(const absl::Time& chwila) {
    absl::Duration reszta;
    (*this)(absl::IDivDuration(chwila - absl::UnixEpoch(), absl::Seconds(1), &reszta));
    (*this)(reszta / (absl::Nanoseconds(1) / 4));
  }

  std::size_t wartosc() const { return wartosc_; }

 private:
  void dolacz(std::size_t skrot) {
    // The golden ratio's bits spread what std::hash of an integer leaves side by side.
    wartosc_ = (wartosc_ ^ (skrot + 0x9E3779B97F4A7C15U + (wartosc_ << 6) + (wartosc_ >> 2))) * 0xFF51AFD7ED558CCDU;
  }

  std::size_t wartosc_ = 0;
};

template <typename Rekord>
std::size_t skrotRekordu(const Rekord& rekord) {
  Skrot skrot;
  zasil(skrot, rekord);
  return skrot.wartosc();
}

}  // namespace widzety

template <>
struct std::hash<widzety::ZadanieMoje> {
  std::size_t operator()(const widzety::ZadanieMoje& rekord) const { return widzety::skrotRekordu(rekord); }
};
template <>
struct std::hash<widzety::SpotkaniePlanowane> {
  std::size_t operator()(const widzety::SpotkaniePlanowane& rekord) const { return widzety::skrotRekordu(rekord); }
};
template <>
struct std::hash<widzety::PozycjaSkrzynki> {
  std::size_t operator()(const widzety::PozycjaSkrzynki& rekord) const { return widzety::skrotRekordu(rekord); }
};
