// Zones of different rules, each with a day about which its clocks change, for tests on random data around that day.
#pragma once

#include <array>

namespace support {

struct ClockChangeDay {
  const char* zone;
  const char* noon;  ///< local time, "2025-03-30 12:00"
};

inline constexpr std::array<ClockChangeDay, 13> clockChangeDays{{
    {"Europe/Warsaw", "2025-03-30 12:00"},
    {"Europe/Warsaw", "2025-10-26 12:00"},
    {"Europe/Vilnius", "2025-03-30 12:00"},
    {"Europe/Vilnius", "2025-10-26 12:00"},
    {"America/Santiago", "2024-09-08 12:00"},
    {"America/Santiago", "2024-04-06 12:00"},
    {"Asia/Beirut", "2024-03-31 12:00"},
    {"Asia/Beirut", "2024-10-26 12:00"},
    {"Africa/Cairo", "2024-04-26 12:00"},
    {"Africa/Cairo", "2024-10-31 12:00"},
    {"Pacific/Apia", "2011-12-29 12:00"},
    {"Pacific/Apia", "2011-04-02 12:00"},
    {"UTC", "2024-02-29 12:00"},  // no change: a leap day
}};

}  // namespace support
