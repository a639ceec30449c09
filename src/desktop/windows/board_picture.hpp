// One board as it is drawn in windows: laid out once, painted as often as a window asks.
#pragma once

#include <optional>
#include <string>

#include <cairo.h>

#include "desktop/placement/geometry.hpp"
#include "protocol/view_tree/node.hpp"
#include "protocol/view_tree/widget_family.hpp"
#include "render/picture/drawing.hpp"
#include "render/picture/picture.hpp"

namespace desktop {

/// What the desktop says of how boards look.
struct BoardLook {
  render::Appearance appearance = render::Appearance::light;
  std::optional<render::Colour> accent;
  std::string language;  ///< of the texts, as in BCP 47
  bool operator==(const BoardLook&) const = default;
};

/// What a board shows. Its texts are localised already.
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

  /// Paints the board from the origin on, over what is there, in this size and with `scale` pixels for each unit: the
  /// same pixels as a picture file of that size has.
  void paint(cairo_t* cairo, Size size, int scale);

  /// Of the board's corners where it is so large.
  double radiusAt(Size size) const;

  /// The texts of the board, a line each, in the order in which they are read; empty for a redacted one.
  const std::string& aloud() const { return aloud_; }

  const BoardContent& content() const { return content_; }
  const BoardLook& look() const { return look_; }
  protocol::WidgetFamily family() const { return family_; }

 private:
  protocol::WidgetFamily family_;
  BoardContent content_;
  BoardLook look_;
  render::PictureOptions options_;
  std::expected<render::Drawing, render::PictureError> drawing_;
  std::string aloud_;
};

}  // namespace desktop
