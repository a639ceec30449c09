// Instants as text: RFC 3339, the form in which the extension, its host and the service write them.
#pragma once

#include <optional>
#include <string>
#include <string_view>

#include <absl/time/time.h>

namespace base {

/// "2025-03-14T09:30:00.25Z": UTC, with only the fraction digits needed to read the same instant back. The instant must
/// lie within the years 0000 to 9999, since RFC 3339 has no form for others.
std::string formatInstant(absl::Time instant);

/// Reads RFC 3339 without leap seconds: "T" and "Z" in upper case, real days only, offsets up to 23:59. Digits of a
/// fraction that are finer than absl::Time's quarter of a nanosecond are cut. Absent for anything else, also for an
/// instant that its offset moves out of the years 0000 to 9999 in UTC.
///
///   2025-03-14T09:30:00+01:00        08:30 in UTC
///   2025-03-14 09:30:00Z             absent: a blank instead of "T"
///   9999-12-31T23:30:00-01:00        absent: the year 10000 in UTC
std::optional<absl::Time> parseInstant(std::string_view text);

/// Reads "2025-03-14"; absent for anything else and for days that do not exist.
std::optional<absl::CivilDay> parseDay(std::string_view text);

/// Whether an instant lies within the years 0000 to 9999 in UTC, so that it can be written.
bool hasWrittenForm(absl::Time instant);

}  // namespace base
