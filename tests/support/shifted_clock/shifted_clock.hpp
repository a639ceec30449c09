// A real-time clock and a time zone of a test's own, which it sets while programs run under them: midnight comes, the
// machine sleeps, its owner travels. The machine's own clock and zone stay as they are.
//
// Programs that are started with `environment()`, and those that they start, see the clock through a library that is
// loaded before the C library (LD_PRELOAD): the time, timers and what cancels them (timerfd_create(2)), the zone behind
// the link /etc/localtime and its replacement. Between two settings time passes as ever.
#pragma once

#include <map>
#include <string>

#include <absl/time/time.h>

#include "support/shifted_clock/clock_page.hpp"
#include "support/temporary_folder.hpp"

namespace support {

class ShiftedClock {
 public:
  /// `zone` by its name, such as "Europe/Warsaw". Throws std::system_error.
  ShiftedClock(absl::Time now, const std::string& zone);
  ~ShiftedClock();
  ShiftedClock(const ShiftedClock&) = delete;
  ShiftedClock& operator=(const ShiftedClock&) = delete;

  /// What a program needs to run under it, beside variables of its own. `TZ` must not be one: it goes before the zone.
  std::map<std::string, std::string> environment() const;

  absl::Time now() const;
  /// As clock_settime(2): programs are told who asked for it, and timers for instants up to this one are due.
  void set(absl::Time now);
  /// As a suspended machine: time passes that only CLOCK_REALTIME and CLOCK_BOOTTIME count, and programs are told as of
  /// a set clock.
  void sleep(absl::Duration time);
  /// Replaces the link as a whole, as the system's settings do.
  void setZone(const std::string& zone);

 private:
  void announce();

  TemporaryFolder folder_;
  shifted_clock::ClockPage* page_;
};

}  // namespace support
