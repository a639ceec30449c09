#include "render/picture/shape.hpp"

namespace render {
namespace {

constexpr double reach = 1.28;            ///< how many radii from the corner the bend begins, where there is room
constexpr double middle = 0.29289321881;  ///< radii from either side to the middle of a quarter circle

/// The control point of a bend that begins at `begin`, such that its middle lies where the circle's would: a cubic's
/// middle is (begin + 3 * control) / 8 from the side.
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
