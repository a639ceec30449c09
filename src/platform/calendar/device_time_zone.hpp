// The device's time zone, read anew each time, so that a change takes effect in a running process.
#pragma once

#include <absl/time/time.h>

namespace platform {

/// The zone that `TZ` names, else the one of /etc/localtime, as the system's C library reads them: a zone's name, with
/// a leading colon or without, a path, or a POSIX rule such as `CET-1CEST,M3.5.0,M10.5.0/3`. A value that the C library
/// cannot read means UTC, as it does there. A pipe or a device is not opened and means UTC too.
absl::TimeZone deviceTimeZone();

}  // namespace platform
