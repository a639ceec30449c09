// Sets texts in real fonts: measures them for layout and gives them to painters line by line. Each text is shaped once.
// Advances are not rounded to pixels, so a board has the same layout at every scale.
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

/// A line of a placed text, in the board's points. Valid until the text is measured again.
struct ShapedLine {
  PangoLayoutLine* line = nullptr;
  double x = 0;         ///< of the left edge
  double baseline = 0;  ///< from the board's top
  double width = 0;
  bool rightToLeft = false;
  std::string shown;  ///< the readable text of the line, with its ellipsis
};

/// Starts a thread that reads the system's font settings. The first text that is set waits for it. Call this if the
/// program has to wait for something else before it draws.
void beginLoadingFonts();

/// Typesets the texts of one tree. Texts are cached by address, so the tree must outlive the typesetter and not change.
class Typesetter final : public TextMeasurer {
 public:
  /// `language` (BCP 47) selects the forms of letters that differ between languages.
  static std::expected<Typesetter, NoFont> create(const std::string& language);

  TextExtent natural(const protocol::TextNode& text) override;
  std::optional<TextExtent> within(const protocol::TextNode& text, double width, int maxLines) override;

  std::vector<ShapedLine> lines(const PlacedText& text);

  /// The text as it is drawn, before any line is broken.
  std::string visible(const protocol::TextNode& text);

  /// The family of the font that the system gives for texts: "Inter" where that is installed.
  std::string family() const;

 private:
  struct Shaped {
    OwnedLayout layout;
    TextExtent natural;
    double width = 0;  ///< the current limits of `layout`; none if `maxLines` is 0
    int maxLines = 0;
  };

  explicit Typesetter(OwnedContext context) : context_(std::move(context)) {}
  Shaped& shaped(const protocol::TextNode& text);
  TextExtent limit(Shaped& shaped, double width, int maxLines);

  OwnedContext context_;
  std::unordered_map<const protocol::TextNode*, Shaped> shaped_;
};

}  // namespace render
