// What of the loaded records may appear on the board, and in which order. The view only cuts the lists to its size.
#pragma once

#include <vector>

#include <absl/time/time.h>

#include "platform/calendar/calendar.hpp"
#include "widzety/model/rekordy.hpp"

namespace widzety {

/// The open tasks whose deadline day is today or earlier, by that day; tasks of one day keep the service's order. A
/// task without a deadline never gets on the board.
std::vector<ZadanieMoje> wybierzZadania(std::vector<ZadanieMoje> zadania, absl::Time teraz,
                                        const platform::Calendar& kalendarz);

/// The meetings from now to the end of tomorrow, earliest first; those at one instant keep the service's order. A
/// meeting that has begun is dropped, even if it is still running.
std::vector<SpotkaniePlanowane> wybierzSpotkania(std::vector<SpotkaniePlanowane> spotkania, absl::Time teraz,
                                                 const platform::Calendar& kalendarz);

}  // namespace widzety
