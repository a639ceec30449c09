// A board as text, one line for each painted item, and a font with simple measures.
#pragma once

#include <string>

#include "render/layout/layout.hpp"

namespace render::testing {

/// "text 12,12 30x10 baseline 20 Vamba", "rule 12,40 200x1", "capsule 150,10 60x14", after a line with the board's
/// size and fit. Lengths to a tenth of a point.
std::string layoutText(const Board& board);

/// Every character is 6 points wide and a line 10 high with its baseline at 8; headline characters are 10 wide and a
/// line 16 high with its baseline at 12. Lines break at any character.
class PlainMeasurer final : public TextMeasurer {
 public:
  TextExtent natural(const protocol::TextNode& text) override;
  std::optional<TextExtent> within(const protocol::TextNode& text, double width, int maxLines) override;
};

/// The faults of a board: items that overlap or leave the box. Empty if there are none.
std::string layoutFaults(const Board& board);

}  // namespace render::testing
