// Integers that came as floating-point numbers.
#pragma once

#include <cmath>
#include <cstdint>
#include <optional>

namespace base {

/// The integer that `number` is: 7.0 gives 7. Absent for fractions, NaN and numbers beyond 64 signed bits. -2^63 is
/// absent too: a text reader rounds every integer just below the range to it.
inline std::optional<std::int64_t> wholeNumber(double number) {
  constexpr double beyond = 0x1p63;
  if (!(number > -beyond && number < beyond) || std::trunc(number) != number) return std::nullopt;
  return static_cast<std::int64_t>(number);
}

}  // namespace base
