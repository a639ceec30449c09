// The middle one of a series of measurements.
#pragma once

#include <algorithm>
#include <cstddef>
#include <vector>

namespace bench {

/// The higher one of the two in the middle of an even number. `values` is not empty.
inline double median(std::vector<double> values) {
  const auto middle = values.begin() + static_cast<std::ptrdiff_t>(values.size() / 2);
  std::ranges::nth_element(values, middle);
  return *middle;
}

}  // namespace bench
