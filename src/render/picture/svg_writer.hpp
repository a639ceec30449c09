// Writes the text of an SVG file: elements, attributes, escaping and numbers.
#pragma once

#include <string>
#include <string_view>

#include "render/colour/palette.hpp"

namespace render {

class SvgWriter {
 public:
  /// Opens `<name`; attributes follow, then `close`, `content` or `open`.
  SvgWriter& element(std::string_view name);
  SvgWriter& attribute(std::string_view name, std::string_view value);
  /// The number is rounded to a thousandth and written with a decimal point in any locale, without trailing zeros.
  SvgWriter& attribute(std::string_view name, double value);
  /// Writes a colour as `name` and, if it is not opaque, its opacity as `name`-opacity.
  SvgWriter& colour(std::string_view name, const Colour& colour);

  void close();                         ///< of an element without content: `/>`
  void content(std::string_view text);  ///< as its whole content, escaped, and its end
  void open();                          ///< for elements within
  void end(std::string_view name);      ///< of an element that was opened

  std::string take() && { return std::move(out_); }

 private:
  std::string out_;
  std::string name_;
};

/// A number as `SvgWriter::attribute` writes it, appended to path data.
void appendNumber(std::string& text, double value);

}  // namespace render
