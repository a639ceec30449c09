// A provider's answer: entries, each shown from its date on, and when the host asks again.
#pragma once

#include <concepts>
#include <vector>

#include <absl/time/time.h>

namespace platform {

/// A value with the instant from which the host shows it.
template <typename Entry>
concept TimelineEntry = std::copyable<Entry> && requires(const Entry& entry) {
  { entry.date } -> std::convertible_to<absl::Time>;
};

/// When the host asks for the next timeline: at `date` or later.
struct TimelineReloadPolicy {
  absl::Time date;

  static TimelineReloadPolicy after(absl::Time date) { return {date}; }
  bool operator==(const TimelineReloadPolicy&) const = default;
};

template <TimelineEntry Entry>
struct Timeline {
  std::vector<Entry> entries;
  TimelineReloadPolicy policy;
};

}  // namespace platform
