// The clocks of a process that runs under a shifted clock.
#pragma once

#include <cstdint>
#include <ctime>

#include "support/shifted_clock/clock_page.hpp"

namespace shifted_clock {

/// The page in the folder that the environment names; null where there is none, and then every clock is the machine's
/// own.
const ClockPage* page();

/// That folder, or null.
const char* folder();

/// How far this clock is ahead of the machine's, in nanoseconds.
std::int64_t shiftOf(clockid_t clock);

/// What this clock says, in nanoseconds.
std::int64_t now(clockid_t clock);

}  // namespace shifted_clock
