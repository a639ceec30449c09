#include "platform/calendar/clock.hpp"

#include <absl/time/clock.h>

#include "platform/calendar/device_time_zone.hpp"

namespace platform {

absl::Time SystemClock::now() const { return absl::Now(); }

Calendar SystemClock::calendar() const { return Calendar(deviceTimeZone()); }

}  // namespace platform
