#include "platform/calendar/instant.hpp"

#include <array>
#include <charconv>

#include <absl/strings/str_format.h>

namespace platform {
namespace {

/// Reads a text from its front, piece by piece; once a piece is missing, every later one is.
class Scanner {
 public:
  explicit Scanner(std::string_view text) : rest_(text) {}

  bool failed() const { return failed_; }
  bool done() const { return !failed_ && rest_.empty(); }
  char peek() const { return rest_.empty() ? '\0' : rest_.front(); }

  void expect(char c) {
    if (peek() != c || rest_.empty()) failed_ = true;
    if (!failed_) rest_.remove_prefix(1);
  }

  /// `count` digits as a number within `low` and `high`.
  int number(std::size_t count, int low, int high) {
    int value = 0;
    if (rest_.size() < count) failed_ = true;
    for (std::size_t i = 0; i < count && !failed_; ++i) {
      const char c = rest_[i];
      if (c < '0' || c > '9') failed_ = true;
      value = value * 10 + (c - '0');
    }
    if (value < low || value > high) failed_ = true;
    if (!failed_) rest_.remove_prefix(count);
    return value;
  }

  std::string_view digits() {
    std::size_t count = 0;
    while (count < rest_.size() && rest_[count] >= '0' && rest_[count] <= '9') ++count;
    const auto result = rest_.substr(0, count);
    rest_.remove_prefix(count);
    if (count == 0) failed_ = true;
    return result;
  }

 private:
  std::string_view rest_;
  bool failed_ = false;
};

/// A fraction's digits as a duration, cut to whole quarters of a nanosecond.
absl::Duration fraction(std::string_view digits) {
  constexpr std::size_t kept = 12;
  std::int64_t picoseconds = 0;
  for (std::size_t i = 0; i < kept; ++i) picoseconds = picoseconds * 10 + (i < digits.size() ? digits[i] - '0' : 0);
  return absl::Nanoseconds(1) / 4 * (picoseconds / 250);
}

/// A year of four digits, or with a sign and at least four (at most nine, to stay within the calendar).
std::int64_t year(Scanner& scanner) {
  const char sign = scanner.peek();
  if (sign != '-' && sign != '+') return scanner.number(4, 0, 9999);
  scanner.expect(sign);
  const auto digits = scanner.digits();
  if (digits.size() < 4 || digits.size() > 9) return scanner.number(1, 1, 0);
  std::int64_t value = 0;
  std::from_chars(digits.data(), digits.data() + digits.size(), value);
  return sign == '-' ? -value : value;
}

absl::Duration offset(Scanner& scanner) {
  const char sign = scanner.peek();
  if (sign == 'Z') {
    scanner.expect('Z');
    return absl::ZeroDuration();
  }
  scanner.expect(sign == '-' ? '-' : '+');
  const int hours = scanner.number(2, 0, 23);
  scanner.expect(':');
  const int minutes = scanner.number(2, 0, 59);
  const auto size = absl::Hours(hours) + absl::Minutes(minutes);
  return sign == '-' ? -size : size;
}

}  // namespace

std::string formatInstant(absl::Time instant) {
  const auto civil = absl::ToCivilSecond(instant, absl::UTCTimeZone());
  const std::int64_t year = civil.year();
  const std::string years = year < 0      ? absl::StrFormat("-%04d", -year)
                            : year > 9999 ? absl::StrFormat("+%d", year)
                                          : absl::StrFormat("%04d", year);
  return years + absl::FormatTime("-%m-%d%ET%H:%M:%E*SZ", instant, absl::UTCTimeZone());
}

std::optional<absl::Time> parseInstant(std::string_view text) {
  Scanner scanner(text);
  const std::int64_t years = year(scanner);
  scanner.expect('-');
  const int month = scanner.number(2, 1, 12);
  scanner.expect('-');
  const int day = scanner.number(2, 1, 31);
  scanner.expect('T');
  const int hour = scanner.number(2, 0, 23);
  scanner.expect(':');
  const int minute = scanner.number(2, 0, 59);
  scanner.expect(':');
  const int second = scanner.number(2, 0, 59);
  absl::Duration part = absl::ZeroDuration();
  if (scanner.peek() == '.') {
    scanner.expect('.');
    part = fraction(scanner.digits());
  }
  const absl::Duration east = offset(scanner);
  if (!scanner.done()) return std::nullopt;

  const absl::CivilSecond civil(years, month, day, hour, minute, second);
  if (civil.day() != day) return std::nullopt;  // 30 February rolls over into March
  return absl::FromCivil(civil, absl::UTCTimeZone()) + part - east;
}

}  // namespace platform
