// Text from outside, made fit to be shown: valid UTF-8, no control characters, no longer than could ever be seen.
#pragma once

#include <string>
#include <string_view>

namespace render {

/// What parts two lines within a text that is ready to be shown: U+2028, so that the text stays one paragraph.
inline constexpr std::string_view lineSeparator = "\u2028";

/// `text` with each broken byte as U+FFFD, tabs as blanks and other control characters left out. Line ends become
/// `lineSeparator`, or blanks where only one line is shown. Beyond what `maxLines` lines of the largest board can hold
/// the text is cut with an ellipsis, so that a title of megabytes costs nothing.
std::string visibleText(std::string_view text, int maxLines);

}  // namespace render
