// Instants as text: RFC 3339 in UTC, the form in which the extension and its host exchange them.
#pragma once

#include <optional>
#include <string>
#include <string_view>

#include <absl/time/time.h>

namespace platform {

/// "2025-03-14T09:30:00.25Z": UTC, with only the fraction digits needed to read the same instant back. Years outside
/// 0000 to 9999, which RFC 3339 has no form for, get a sign (ISO 8601's expanded years: "-0001-12-31T22:36:00Z").
std::string formatInstant(absl::Time instant);

/// Reads RFC 3339 with any offset, and the expanded years of `formatInstant`. Fractions finer than absl::Time's quarter
/// of a nanosecond are cut. Absent for anything else.
std::optional<absl::Time> parseInstant(std::string_view text);

}  // namespace platform
