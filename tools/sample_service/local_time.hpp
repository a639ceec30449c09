// Wall-clock times of the device's zone, written in the date forms that the service uses.
//
// The C library answers for the zone, so that TZ means here what it means to every other program of the machine.
#pragma once

#include <ctime>
#include <string>

namespace sample {

enum class DateForm {
  Day,          // 2025-03-14
  Utc,          // 2025-03-14T09:30:00Z
  UtcFraction,  // 2025-03-14T09:30:00.250Z
  Offset,       // 2025-03-14T10:30:00+01:00, in the device's zone
};

// The instant, in seconds since 1970 UTC, at which clocks show hour:minute on the day `days` after that of `now`.
// A time that clocks skip that day comes out an hour beside it.
std::time_t atHour(std::time_t now, int days, int hour, int minute);

// `Day` writes the device's calendar day of the instant.
std::string written(std::time_t instant, DateForm form);

}  // namespace sample
