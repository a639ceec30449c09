// What a test and the programs under its clock share: a file that all of them map.
#pragma once

#include <atomic>
#include <cstdint>

namespace shifted_clock {

/// Names the folder that holds the page and the zone.
inline constexpr const char* folderVariable = "VAMBA_TEST_SHIFTED_CLOCK";
inline constexpr const char* pageFile = "page";
/// Stands for /etc where the zone's link is looked for.
inline constexpr const char* zoneFolder = "etc";

/// How many nanoseconds the clocks of the programs are ahead of the machine's own. Written by the test alone, which
/// counts `sets` up last and then wakes whoever waits for it (futex(2)).
struct ClockPage {
  std::atomic<std::int64_t> realTime;  ///< CLOCK_REALTIME
  std::atomic<std::int64_t> bootTime;  ///< CLOCK_BOOTTIME: what the machine has slept
  std::atomic<std::uint32_t> sets;     ///< how often a clock was set
};
static_assert(decltype(ClockPage::realTime)::is_always_lock_free && decltype(ClockPage::sets)::is_always_lock_free,
              "atomics with a lock are no good between processes");

}  // namespace shifted_clock
