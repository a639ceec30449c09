// One board as it is drawn in windows: laid out once, painted whenever a window needs it.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include <cairo.h>

#include "desktop/placement/geometry.hpp"
#include "protocol/view_tree/node.hpp"
#include "protocol/view_tree/widget_family.hpp"
#include "render/picture/drawing.hpp"
#include "render/picture/picture.hpp"

namespace desktop {

/// The desktop's settings that change how boards look.
struct BoardLook {
  render::Appearance appearance = render::Appearance::light;
  std::optional<render::Colour> accent;
  render::Backdrop backdrop = render::Backdrop::solid;  ///< where windows can be transparent
  std::string language;                                 ///< of the texts, as in BCP 47
  bool operator==(const BoardLook&) const = default;
};

/// What a board shows. Texts with keys have already been replaced by localised ones.
struct BoardContent {
  protocol::Node view;
  render::Redaction redaction = render::Redaction::none;
  bool operator==(const BoardContent&) const = default;
};

class BoardPicture {
 public:
  BoardPicture(protocol::WidgetFamily family, BoardContent content, BoardLook look);
  BoardPicture(const BoardPicture&) = delete;
  BoardPicture& operator=(const BoardPicture&) = delete;

  /// Paints the board in this size at the origin, over the existing content, with `scale` device pixels a unit. The
  /// pixels equal those of a picture file: a medium board painted with {480, 320} and scale 2 is the same as
  /// `show --format png --scale 2`. Without compositing, `backdrop` can only be solid.
  void paint(cairo_t* cairo, Size size, int scale, render::Backdrop backdrop = render::Backdrop::solid);

  /// The radius of the corners of a board painted in this size.
  double radiusAt(Size size) const;

  /// The rows of the board as they are read aloud; empty for a redacted board. Their frames are in points of `width`.
  const std::vector<render::ReadRow>& rows() const { return rows_; }
  double width() const { return options_.form.size.width; }
  /// The rows, one a line.
  std::string aloud() const { return render::readAloud(rows_); }

  const BoardContent& content() const { return content_; }
  const BoardLook& look() const { return look_; }
  protocol::WidgetFamily family() const { return family_; }

 private:
  protocol::WidgetFamily family_;
  BoardContent content_;
  BoardLook look_;
  render::PictureOptions options_;
  std::expected<render::Drawing, render::PictureError> drawing_;
  std::vector<render::ReadRow> rows_;
};

}  // namespace desktop
