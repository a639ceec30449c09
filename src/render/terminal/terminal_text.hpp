// Text in a terminal's cells: which characters are shown, how many columns they take and where lines are broken. Widths
// come from utf8proc and match most terminals. Terminals differ for joined emoji and variation selectors; two columns
// is the most common width.
#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace render::terminal {

/// An extended grapheme cluster (UAX #29), which readers perceive as one character, and its width in columns.
struct Cluster {
  std::size_t begin;  ///< byte offsets in the text
  std::size_t end;
  int width;
};

/// A text that is safe to show, in clusters.
struct ShownText {
  std::string text;
  std::vector<Cluster> clusters;
  int width = 0;  ///< of all clusters
};

/// One line of a text broken or cut for a width.
struct Line {
  std::string text;
  int width = 0;
};

/// The text made safe to show, as valid UTF-8. Line ends, tabs and separators become a blank (CR LF two). Other control
/// characters, direction overrides and isolates, noncharacters and each byte of invalid UTF-8 become U+FFFD. Invisible
/// format characters (direction marks, byte order marks, soft hyphens) are removed. A leading mark gets U+25CC before
/// it, so that it does not combine with the text around: "a\tb\x1b[0m" becomes "a b\uFFFD[0m".
ShownText shown(std::string_view text);

/// The columns that the text takes after `shown`.
int displayWidth(std::string_view text);

/// The text in lines of at most `width` columns. Lines are broken at blanks and beside wide characters; a word that is
/// too long is broken at the end of the line. With a limit, the last line ends in "…" if text is left over. An empty
/// text or a width below 1 gives no lines. A cluster wider than `width` becomes "…".
std::vector<Line> brokenIntoLines(const ShownText& text, int width, std::optional<int> lineLimit);

}  // namespace render::terminal
