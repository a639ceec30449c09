#include "render/layout/layout.hpp"

#include <cmath>
#include <utility>

#include "render/layout/measure.hpp"
#include "render/layout/place.hpp"
#include "render/layout/stack_room.hpp"

namespace render {
namespace {

constexpr double tolerance = 1e-6;
constexpr double fitStep = 1.0 / 256;  ///< fits are whole multiples, so that the last bits of a sum change no picture

double roundedDown(double fit) { return std::floor(fit / fitStep) * fitStep; }

/// A great scale at which the whole board is no higher than the box; `smallestFit` if none is found.
double largestFit(const protocol::Node& root, Size box, double naturalHeight, TextMeasurer& measurer) {
  const auto heightAt = [&](double fit) { return measure(root, {.width = box.width / fit}, measurer).size.height; };
  const auto fits = [&](double height, double fit) { return height <= box.height / fit + tolerance; };
  // Scaled by the ratio of heights it fits; where a line more fits beside another it would do so at a larger scale.
  double low = std::max(smallestFit, roundedDown(box.height / naturalHeight));
  double high = 1;
  const double lowHeight = heightAt(low);
  if (lowHeight == naturalHeight) return low;
  if (!fits(lowHeight, low)) {
    // A line that has more room shows more of its text, which may be higher there.
    high = std::exchange(low, smallestFit);
    if (low >= high || !fits(heightAt(low), low)) return smallestFit;
  }
  while (high - low > fitStep) {
    const double middle = roundedDown((low + high) / 2);
    if (middle <= low) break;
    (fits(heightAt(middle), middle) ? low : high) = middle;
  }
  return low;
}

}  // namespace

Board layOut(const protocol::Node& root, const BoardForm& form, TextMeasurer& measurer) {
  const Size box{form.size.width / form.magnification, form.size.height / form.magnification};
  auto measured = measure(root, {.width = box.width}, measurer);
  double fit = 1;
  if (measured.size.height > box.height + tolerance) {
    fit = largestFit(root, box, measured.size.height, measurer);
    measured = measure(root, {.width = box.width / fit, .height = box.height / fit}, measurer);
  } else if (growsDown(root)) {
    measured = measure(root, {.width = box.width, .height = box.height}, measurer);
  }
  return {fit * form.magnification,
          {box.width / fit, box.height / fit},
          root.containerBackground.has_value(),
          place(measured)};
}

}  // namespace render
