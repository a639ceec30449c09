// Text as a terminal's cells show it: what may be shown at all, how many columns it takes, where it breaks into lines.
// Widths follow Unicode by utf8proc and are what most terminals agree on; for joined emoji and variation selectors
// terminals differ among themselves, and two columns is the common answer.
#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace render::terminal {

/// What a reader takes for one character (UAX #29 extended grapheme cluster) and the columns it takes.
struct Cluster {
  std::size_t begin;  ///< bytes of the text it belongs to
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

/// The text made safe to show, in valid UTF-8: line ends, tabs and separators become a blank (CR LF two); other control
/// characters, what overrides or isolates the direction of text, noncharacters and each byte of invalid UTF-8 become
/// U+FFFD; invisible format characters (direction marks, byte order marks, soft hyphens) are left out. A mark without a
/// character to stand on gets U+25CC, so that it combines with nothing around the text.
ShownText shown(std::string_view text);

/// Columns that the text takes; it is measured as `shown` would show it.
int displayWidth(std::string_view text);

/// The text in lines of at most `width` columns, broken at blanks or beside wide characters, a longer word where it
/// ends. With a limit, what does not fit into that many lines is cut and the last ends in "…". No lines for an empty
/// text or without a column to show it in. A cluster wider than `width` shows as "…".
std::vector<Line> brokenIntoLines(const ShownText& text, int width, std::optional<int> lineLimit);

}  // namespace render::terminal
