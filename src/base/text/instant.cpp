#include "base/text/instant.hpp"

#include <cassert>
#include <cstddef>
#include <cstdint>

namespace base {
namespace {

bool isDigit(char c) { return c >= '0' && c <= '9'; }

// Each take...() takes what it reads off the front of `rest`; absent where `rest` begins otherwise.

bool take(std::string_view& rest, char c) {
  if (!rest.starts_with(c)) return false;
  rest.remove_prefix(1);
  return true;
}

/// Exactly `count` digits.
std::optional<int> takeNumber(std::string_view& rest, std::size_t count) {
  if (rest.size() < count) return std::nullopt;
  int number = 0;
  for (const char c : rest.substr(0, count)) {
    if (!isDigit(c)) return std::nullopt;
    number = number * 10 + (c - '0');
  }
  rest.remove_prefix(count);
  return number;
}

std::optional<absl::CivilDay> takeDay(std::string_view& rest) {
  const auto year = takeNumber(rest, 4);
  if (!year || !take(rest, '-')) return std::nullopt;
  const auto month = takeNumber(rest, 2);
  if (!month || !take(rest, '-')) return std::nullopt;
  const auto dayOfMonth = takeNumber(rest, 2);
  if (!dayOfMonth) return std::nullopt;
  // absl moves a day out of range into the next month, so a date that comes back changed does not exist.
  const absl::CivilDay day(*year, *month, *dayOfMonth);
  if (day.month() != *month || day.day() != *dayOfMonth) return std::nullopt;
  return day;
}

/// "HH:mm", for the time of day and for an offset alike.
std::optional<absl::Duration> takeHourAndMinute(std::string_view& rest) {
  const auto hour = takeNumber(rest, 2);
  if (!hour || *hour > 23 || !take(rest, ':')) return std::nullopt;
  const auto minute = takeNumber(rest, 2);
  if (!minute || *minute > 59) return std::nullopt;
  return absl::Hours(*hour) + absl::Minutes(*minute);
}

/// Nothing, or "." and at least one digit.
std::optional<absl::Duration> takeFraction(std::string_view& rest) {
  if (!take(rest, '.')) return absl::ZeroDuration();
  if (rest.empty() || !isDigit(rest.front())) return std::nullopt;
  // Twelve digits hold a quarter of a nanosecond exactly; later ones could only be cut.
  constexpr int countedDigits = 12;
  std::int64_t picoseconds = 0;
  for (int i = 0; i < countedDigits; ++i) {
    picoseconds *= 10;
    if (rest.empty() || !isDigit(rest.front())) continue;
    picoseconds += rest.front() - '0';
    rest.remove_prefix(1);
  }
  while (!rest.empty() && isDigit(rest.front())) rest.remove_prefix(1);
  return picoseconds / 250 * (absl::Nanoseconds(1) / 4);
}

std::optional<absl::Duration> takeOffset(std::string_view& rest) {
  if (take(rest, 'Z')) return absl::ZeroDuration();
  const bool west = rest.starts_with('-');
  if (!west && !rest.starts_with('+')) return std::nullopt;
  rest.remove_prefix(1);
  const auto offset = takeHourAndMinute(rest);
  if (!offset) return std::nullopt;
  return west ? -*offset : *offset;
}

}  // namespace

bool hasWrittenForm(absl::Time instant) {
  const auto year = absl::ToCivilYear(instant, absl::UTCTimeZone()).year();
  return year >= 0 && year <= 9999;
}

std::string formatInstant(absl::Time instant) {
  assert(hasWrittenForm(instant));
  return absl::FormatTime("%E4Y-%m-%d%ET%H:%M:%E*SZ", instant, absl::UTCTimeZone());
}

std::optional<absl::Time> parseInstant(std::string_view text) {
  const auto day = takeDay(text);
  if (!day || !take(text, 'T')) return std::nullopt;
  const auto hourAndMinute = takeHourAndMinute(text);
  if (!hourAndMinute || !take(text, ':')) return std::nullopt;
  const auto second = takeNumber(text, 2);
  if (!second || *second > 59) return std::nullopt;
  const auto fraction = takeFraction(text);
  if (!fraction) return std::nullopt;
  const auto offset = takeOffset(text);
  if (!offset || !text.empty()) return std::nullopt;

  const absl::Time instant =
      absl::FromCivil(*day, absl::UTCTimeZone()) + *hourAndMinute + absl::Seconds(*second) + *fraction - *offset;
  if (!hasWrittenForm(instant)) return std::nullopt;
  return instant;
}

std::optional<absl::CivilDay> parseDay(std::string_view text) {
  const auto day = takeDay(text);
  if (!text.empty()) return std::nullopt;
  return day;
}

}  // namespace base
