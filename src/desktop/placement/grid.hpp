// The grid on which widgets are placed, in points.
#pragma once

namespace desktop {

inline constexpr int gridStep = 20;
/// The distance from the area's edges to the first widget and from one widget to the next.
inline constexpr int gap = 20;

}  // namespace desktop
