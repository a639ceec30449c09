#include "render/layout/layout.hpp"

#include "render/layout/measure.hpp"
#include "render/layout/place.hpp"
#include "render/layout/sentence.hpp"
#include "render/layout/stack_room.hpp"

namespace render {

Board layOut(const protocol::Node& root, const BoardForm& form, TextMeasurer& measurer) {
  constexpr double tolerance = 1e-6;
  const Size box{form.size.width / form.magnification, form.size.height / form.magnification};
  const double unit = 1 / form.magnification;
  auto measured = measure(root, {.width = box.width}, measurer, unit);
  const bool whole = measured.size.height <= box.height + tolerance;
  if (!whole || growsDown(root)) measured = measure(root, {box.width, box.height}, measurer, unit);
  Board board{form.magnification, box, root.containerBackground.has_value(), whole, place(measured)};
  centreSentence(root, board, unit);
  return board;
}

}  // namespace render
