// A clock that a test holds: the time and zone are what it was told.
#pragma once

#include <atomic>
#include <string>

#include <gtest/gtest.h>

#include "platform/calendar/clock.hpp"

namespace support {

inline absl::TimeZone zone(const std::string& name) {
  absl::TimeZone result;
  EXPECT_TRUE(absl::LoadTimeZone(name, &result)) << name;
  return result;
}

/// "2025-03-14 09:30" in a zone.
inline absl::Time at(const std::string& civil, absl::TimeZone zone) {
  absl::Time result;
  std::string error;
  EXPECT_TRUE(absl::ParseTime("%Y-%m-%d %H:%M", civil, zone, &result, &error)) << civil << ": " << error;
  return result;
}

class FixedClock final : public platform::Clock {
 public:
  FixedClock(const std::string& civil, absl::TimeZone zone) : now_(at(civil, zone)), zone_(zone) {}
  FixedClock(absl::Time now, absl::TimeZone zone) : now_(now), zone_(zone) {}

  absl::Time now() const override { return now_; }
  platform::Calendar calendar() const override { return platform::Calendar(zone_); }

  void advance(absl::Duration by) { now_ = now_.load() + by; }

 private:
  std::atomic<absl::Time> now_;
  absl::TimeZone zone_;
};

}  // namespace support
