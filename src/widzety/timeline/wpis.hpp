// The timeline's one entry: a person's day at one instant, or a sentence that says why there is none.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include <absl/time/time.h>

#include "widzety/model/rekordy.hpp"

namespace widzety {

struct Wpis {
  absl::Time date;                            ///< when it was built; shown from then on
  std::vector<ZadanieMoje> zadania;           ///< overdue and due today, in the order of the deadline days
  std::vector<SpotkaniePlanowane> spotkania;  ///< from now to the end of tomorrow, earliest first
  std::int64_t doDecyzji = 0;                 ///< inbox items that wait for a decision
  std::optional<std::string> blad;            ///< already translated; with it the rest is empty and 0

  bool operator==(const Wpis&) const = default;
};

}  // namespace widzety
