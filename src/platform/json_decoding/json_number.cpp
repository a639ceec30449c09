#include "platform/json_decoding/json_number.hpp"

#include <cstddef>
#include <limits>

namespace platform {
namespace {

bool isDigit(char c) { return c >= '0' && c <= '9'; }

/// Takes the digits at the front of `rest` off it.
std::string_view takeDigits(std::string_view& rest) {
  std::size_t count = 0;
  while (count < rest.size() && isDigit(rest[count])) ++count;
  const std::string_view digits = rest.substr(0, count);
  rest.remove_prefix(count);
  return digits;
}

struct NumberParts {
  bool negative = false;
  std::string_view whole;
  std::string_view fraction;
  bool negativeExponent = false;
  std::string_view exponent;
};

std::optional<NumberParts> split(std::string_view rest) {
  NumberParts parts;
  if (rest.starts_with('-')) {
    parts.negative = true;
    rest.remove_prefix(1);
  }
  parts.whole = takeDigits(rest);
  if (parts.whole.empty() || (parts.whole.size() > 1 && parts.whole.front() == '0')) return std::nullopt;
  if (rest.starts_with('.')) {
    rest.remove_prefix(1);
    parts.fraction = takeDigits(rest);
    if (parts.fraction.empty()) return std::nullopt;
  }
  if (rest.starts_with('e') || rest.starts_with('E')) {
    rest.remove_prefix(1);
    parts.negativeExponent = rest.starts_with('-');
    if (rest.starts_with('-') || rest.starts_with('+')) rest.remove_prefix(1);
    parts.exponent = takeDigits(rest);
    if (parts.exponent.empty()) return std::nullopt;
  }
  if (!rest.empty()) return std::nullopt;
  return parts;
}

/// The exponent, held at a value beyond which no body is long enough for it to matter.
std::int64_t exponentOf(const NumberParts& parts) {
  constexpr std::int64_t limit = std::int64_t{1} << 60;
  std::int64_t exponent = 0;
  for (const char digit : parts.exponent) {
    exponent = exponent * 10 + (digit - '0');
    if (exponent > limit / 10) exponent = limit / 10;
  }
  return parts.negativeExponent ? -exponent : exponent;
}

std::string_view withoutTrailingZeros(std::string_view digits) {
  return digits.substr(0, digits.find_last_not_of('0') + 1);
}

}  // namespace

bool isJsonNumber(std::string_view text) { return split(text).has_value(); }

std::optional<std::int64_t> integerOfJsonNumber(std::string_view number) {
  const std::optional<NumberParts> parts = split(number);
  if (!parts) return std::nullopt;

  // The value is `digits` times ten to the power of `scale`, with no zero at the end of `digits`.
  const std::string_view fraction = withoutTrailingZeros(parts->fraction);
  std::string_view whole = parts->whole;
  std::int64_t scale = exponentOf(*parts) - static_cast<std::int64_t>(fraction.size());
  if (fraction.empty()) {
    whole = withoutTrailingZeros(parts->whole);
    scale += static_cast<std::int64_t>(parts->whole.size() - whole.size());
  }
  if (whole.find_first_not_of('0') == std::string_view::npos && fraction.empty()) return 0;
  if (scale < 0) return std::nullopt;

  // Summed up below zero, where there is room for one more value.
  constexpr std::int64_t lowest = std::numeric_limits<std::int64_t>::min();
  std::int64_t value = 0;
  const auto append = [&value](int digit) {
    if (value < lowest / 10) return false;
    value *= 10;
    if (value < lowest + digit) return false;
    value -= digit;
    return true;
  };
  for (const std::string_view digits : {whole, fraction}) {
    for (const char digit : digits) {
      if (!append(digit - '0')) return std::nullopt;
    }
  }
  for (; scale > 0; --scale) {
    if (!append(0)) return std::nullopt;
  }
  if (parts->negative) return value;
  if (value == lowest) return std::nullopt;
  return -value;
}

}  // namespace platform
