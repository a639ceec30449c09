// Makes text from outside safe to draw: valid UTF-8, without control characters and of limited length.
#pragma once

#include <string>
#include <string_view>

namespace render {

/// The line separator within a text that is ready to be drawn: U+2028, which does not end the paragraph.
inline constexpr std::string_view lineSeparator = "\u2028";

/// `text` with each invalid byte replaced by U+FFFD, tabs by blanks, and other control characters removed. Line ends
/// become `lineSeparator`, or blanks if `maxLines` is 1. Text that is longer than `maxLines` lines of the largest board
/// is cut with an ellipsis, so that a huge title costs nothing. With `maxLines` 1, "a\r\nb\tc" becomes "a b c".
std::string visibleText(std::string_view text, int maxLines);

}  // namespace render
