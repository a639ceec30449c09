// The one rule by which the dates of all the service's fields are read: a calendar date alone, or a date and time with
// a zone, with or without fractions of a second.
#pragma once

#include <expected>
#include <string_view>

#include <absl/time/time.h>

#include "platform/json_decoding/decoding_error.hpp"

namespace widzety {

/// The zone in which a date without a time starts: Europe/Warsaw, or the device's zone where the system lacks it.
absl::TimeZone strefaDatySerwera();

/// Reads the whole text by the first of these forms that fits:
///   2025-03-14                     the first instant of that day in `strefaDaty`
///   2025-03-14T09:30:00.250+01:00  digits finer than absl::Time's quarter of a nanosecond are cut
///   2025-03-14T09:30:00Z
/// Dates and times are read as base::parseInstant() reads them. What lies outside of the years 0000 to 9999 in UTC is
/// no date, so that every entry can be written: 0000-01-01 begins in Warsaw in the year before. The error is
/// data-corrupted, "Nie rozpoznaję daty: " and the text as it came.
std::expected<absl::Time, platform::DecodingError> wczytajDate(std::string_view tekst, absl::TimeZone strefaDaty);

}  // namespace widzety
