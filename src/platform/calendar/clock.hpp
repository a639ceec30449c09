// The source of the time. It is passed in from main, so that a test can set the time.
#pragma once

#include <absl/time/time.h>

#include "platform/calendar/calendar.hpp"

namespace platform {

class Clock {
 public:
  virtual ~Clock() = default;
  virtual absl::Time now() const = 0;
  /// The user's current calendar: the device's zone at the moment of the call.
  virtual Calendar calendar() const = 0;
};

class SystemClock final : public Clock {
 public:
  absl::Time now() const override;
  Calendar calendar() const override;
};

}  // namespace platform
