// The Gregorian calendar in one time zone: days and where they start. A value. device_time_zone.hpp finds the device's
// zone, clock.hpp tells the time.
#pragma once

#include <optional>

#include <absl/time/civil_time.h>
#include <absl/time/time.h>

namespace platform {

class Calendar {
 public:
  explicit Calendar(absl::TimeZone zone) : zone_(zone) {}

  const absl::TimeZone& timeZone() const { return zone_; }

  /// The day that holds `instant`.
  absl::CivilDay day(absl::Time instant) const { return absl::ToCivilDay(instant, zone_); }

  /// The first instant of a day. On the nights when the clocks jump over midnight that is the moment of the jump
  /// (Beirut, 31 March 2024: 01:00); where midnight comes twice it is the first one.
  absl::Time startOfDay(absl::CivilDay day) const;
  absl::Time startOfDay(absl::Time instant) const { return startOfDay(day(instant)); }

  bool isSameDay(absl::Time a, absl::Time b) const { return day(a) == day(b); }

  /// The start of the day that lies `days` calendar days after the one that holds `instant`; absent where the
  /// calendar has no such date (an infinite instant).
  std::optional<absl::Time> startOfDayAfter(absl::Time instant, int days) const;

  /// The instant `minutes` later; absent where there is none (an infinite instant).
  std::optional<absl::Time> addingMinutes(absl::Time instant, int minutes) const;

 private:
  absl::TimeZone zone_;
};

}  // namespace platform
