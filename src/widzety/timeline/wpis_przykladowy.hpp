// The sample day that stands for the widget in the host's gallery and while nothing is known.
#pragma once

#include "platform/calendar/clock.hpp"
#include "widzety/texts/jezyk.hpp"
#include "widzety/timeline/wpis.hpp"

namespace widzety {

/// Built anew on every call: fresh identifiers, times relative to now, words in the given language. It holds a task
/// without a deadline, which a loaded entry never does.
Wpis wpisPrzykladowy(const platform::Clock& zegar, Jezyk jezyk = biezacyJezyk());

}  // namespace widzety
