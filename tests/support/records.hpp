// Records for tests that care about one or two of their fields.
#pragma once

#include <string>

#include "widzety/model/rekordy.hpp"

namespace support {

inline widzety::ZadanieMoje zadanie(std::int64_t numer, std::optional<absl::Time> termin,
                                    std::string status = "otwarte") {
  return {.id = base::Uuid::random(),
          .numer = numer,
          .tytul = "Zadanie " + std::to_string(numer),
          .termin = termin,
          .status = std::move(status),
          .projektNazwa = "Pracownia"};
}

inline widzety::SpotkaniePlanowane spotkanie(std::string tytul, absl::Time kiedy) {
  return {.id = base::Uuid::random(),
          .tytul = std::move(tytul),
          .kiedy = kiedy,
          .czasTrwaniaMin = 30,
          .projektNazwa = "Pracownia"};
}

}  // namespace support
