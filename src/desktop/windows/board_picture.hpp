// One board as it is drawn in windows: laid out once, painted as often as a window asks.
#pragma once

#include <optional>
#include <string>

#include <cairo.h>

#include "protocol/view_tree/node.hpp"
#include "render/picture/drawing.hpp"
#include "render/picture/picture.hpp"

namespace desktop {

/// What the desktop says of how boards look.
struct BoardLook {
  render::Appearance appearance = render::Appearance::light;
  std::optional<render::Colour> accent;
  double textScale = 1;
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
  BoardPicture(std::string family, BoardContent content, BoardLook look);
  // The drawing refers to the content.
  BoardPicture(const BoardPicture&) = delete;
  BoardPicture& operator=(const BoardPicture&) = delete;

  /// Paints the board from the origin on, a point for each unit, over what is there: the same pixels as a picture file
  /// of this scale, where a unit is as many pixels; where it is not, `smooth`.
  enum class Filter { exact, smooth };
  void paint(cairo_t* cairo, int scale, Filter filter = Filter::exact);

  /// The texts of the board, a line each, in the order in which they are read; empty for a redacted one.
  const std::string& aloud() const { return aloud_; }

  const BoardContent& content() const { return content_; }
  const BoardLook& look() const { return look_; }
  const std::string& family() const { return family_; }
  /// In points.
  render::Size size() const { return options_.form.size; }

 private:
  std::string family_;
  BoardContent content_;
  BoardLook look_;
  render::PictureOptions options_;
  std::expected<render::Drawing, render::PictureError> drawing_;
  std::string aloud_;
};

/// The size of a family in points; that of the medium one for a family that is not known.
render::Size boardSize(const std::string& family);

}  // namespace desktop
