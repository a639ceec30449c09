// Texts in real fonts: measured for layout, and handed to painters line by line, shaped once for both. Advances are
// not rounded to pixels, so a board is laid out alike at every scale.
#pragma once

#include <expected>
#include <memory>
#include <string>
#include <unordered_map>
#include <vector>

#include "render/layout/layout.hpp"
#include "render/layout/text_measurer.hpp"
#include "render/type/owned.hpp"

namespace render {

/// The system has no font at all.
struct NoFont {};

/// A line of a placed text, in the board's points. Valid until the typesetter measures the text again.
struct ShapedLine {
  PangoLayoutLine* line = nullptr;
  double x = 0;         ///< of the left edge
  double baseline = 0;  ///< from the board's top
  double width = 0;
  bool rightToLeft = false;
  std::string shown;  ///< what is to be read of it, with the ellipsis that stands for the rest
};

/// Makes the text library begin to read the system's font settings, on a thread of its own; what typesets first waits
/// for it. For a program that has something else to wait for until it draws.
void beginLoadingFonts();

/// Remembers texts by their address: for the drawing of one tree.
class Typesetter final : public TextMeasurer {
 public:
  /// `language`, as in BCP 47, chooses between the forms that a letter has in several languages.
  static std::expected<Typesetter, NoFont> create(const std::string& language);

  TextExtent natural(const protocol::TextNode& text) override;
  std::optional<TextExtent> within(const protocol::TextNode& text, double width, int maxLines) override;

  std::vector<ShapedLine> lines(const PlacedText& text);

  /// The text as it is drawn, before any line is broken.
  std::string visible(const protocol::TextNode& text);

 private:
  struct Shaped {
    OwnedLayout layout;
    TextExtent natural;
    double width = 0;  ///< the limits that `layout` has now; 0 lines: none
    int maxLines = 0;
  };

  explicit Typesetter(OwnedContext context) : context_(std::move(context)) {}
  Shaped& shaped(const protocol::TextNode& text);
  TextExtent limit(Shaped& shaped, double width, int maxLines);

  OwnedContext context_;
  std::unordered_map<const protocol::TextNode*, Shaped> shaped_;
};

}  // namespace render
