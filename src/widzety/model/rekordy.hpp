// The records that the service's three resources hold: plain values, unchanged once decoded. dekodowanie.hpp reads them
// from JSON; timeline/wybor.hpp chooses those that the board may show.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include <absl/time/time.h>

#include "base/text/uuid.hpp"

namespace widzety {

/// One of the user's own tasks.
struct ZadanieMoje {
  base::Uuid id;
  std::int64_t numer = 0;  ///< as the service shows it to people
  std::string tytul;
  std::optional<absl::Time> termin;  ///< absent: no deadline
  std::string status;                ///< the service's own word, kept even where it is unknown here
  std::string projektNazwa;

  friend bool operator==(const ZadanieMoje&, const ZadanieMoje&) = default;
};

/// One planned meeting.
struct SpotkaniePlanowane {
  base::Uuid id;
  std::string tytul;
  absl::Time kiedy;
  std::int64_t czasTrwaniaMin = 0;
  std::optional<std::string> projektNazwa;  ///< a meeting, unlike a task, may stand outside any project

  friend bool operator==(const SpotkaniePlanowane&, const SpotkaniePlanowane&) = default;
};

/// One inbox item that awaits the user's decision.
struct PozycjaSkrzynki {
  base::Uuid id;
  std::string tytul;

  friend bool operator==(const PozycjaSkrzynki&, const PozycjaSkrzynki&) = default;
};

/// The inbox summary.
struct Skrzynka {
  std::vector<PozycjaSkrzynki> zadania;
};

}  // namespace widzety
