// How a hand moves a mouse: through the points between, with a pause at each.
#pragma once

#include <algorithm>
#include <cstdlib>
#include <vector>

#include <poll.h>

#include "support/displays/geometry.hpp"

namespace support {

/// Milliseconds: a client that draws sixty times a second sees about every second step.
inline constexpr int pauseOfAHand = 8;

/// Points at most 12 pixels apart, without `from`, ending at `to`.
inline std::vector<ScreenPoint> stepsBetween(ScreenPoint from, ScreenPoint to) {
  constexpr int stride = 12;
  const int distance = std::max(std::abs(to.x - from.x), std::abs(to.y - from.y));
  const int count = std::max(1, (distance + stride - 1) / stride);
  std::vector<ScreenPoint> points;
  for (int i = 1; i <= count; ++i) {
    points.push_back({from.x + (to.x - from.x) * i / count, from.y + (to.y - from.y) * i / count});
  }
  return points;
}

/// Moves a pointer that is at `from` as a hand does.
template <typename Input>
void moveInSteps(Input& input, ScreenPoint from, ScreenPoint to) {
  for (const auto& point : stepsBetween(from, to)) {
    poll(nullptr, 0, pauseOfAHand);
    input.moveTo(point);
  }
}

}  // namespace support
