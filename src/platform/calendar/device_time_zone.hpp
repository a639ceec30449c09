// The device's time zone, read anew each time, so that a change takes effect in a running process.
#pragma once

#include <absl/time/time.h>

namespace platform {

/// The zone that `TZ` names, else the one of /etc/localtime, as the system's C library reads them: a zone's name, with
/// a leading colon or without, a path, or a POSIX rule such as `CET-1CEST,M3.5.0,M10.5.0/3`. What the C library can't
/// read is UTC, as there, and so is a pipe or a device, which is not opened.
absl::TimeZone deviceTimeZone();

}  // namespace platform
