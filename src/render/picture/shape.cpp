#include "render/picture/shape.hpp"

namespace render {
namespace {

constexpr double reach = 1.28;            ///< distance from the corner, in radii, at which the bend begins
constexpr double middle = 0.29289321881;  ///< distance of a quarter circle's middle from either side, in radii

/// The control point of a bend that begins at `begin`, chosen so that its middle is the circle's. The middle of the
/// cubic is (begin + 3 * control) / 8 from the side.
double control(double begin, double radius) { return (8 * middle * radius - begin) / 3; }

}  // namespace

std::array<Corner, 4> continuousCorners(const Rect& rect, double radius) {
  const double round = std::min({radius, rect.width / 2, rect.height / 2});
  const double across = std::min(reach * round, rect.width / 2);
  const double down = std::min(reach * round, rect.height / 2);
  const double acrossControl = control(across, round);
  const double downControl = control(down, round);
  const double left = rect.x;
  const double top = rect.y;
  const double right = rect.right();
  const double bottom = rect.bottom();
  return {
      {{{left, top + down}, {left, top + downControl}, {left + acrossControl, top}, {left + across, top}},
       {{right - across, top}, {right - acrossControl, top}, {right, top + downControl}, {right, top + down}},
       {{right, bottom - down},
        {right, bottom - downControl},
        {right - acrossControl, bottom},
        {right - across, bottom}},
       {{left + across, bottom}, {left + acrossControl, bottom}, {left, bottom - downControl}, {left, bottom - down}}}};
}

}  // namespace render
