#include "render/terminal/terminal_text.hpp"

#include <algorithm>
#include <array>

#include <utf8proc.h>

#include "base/text/utf8.hpp"

namespace render::terminal {
namespace {

constexpr char32_t replacement = 0xFFFD;
constexpr char32_t dottedCircle = 0x25CC;
constexpr char32_t joiner = 0x200D;
constexpr char32_t nonJoiner = 0x200C;
constexpr char32_t emojiVariation = 0xFE0F;
constexpr std::string_view ellipsis = "…";

const utf8proc_property_t& properties(char32_t c) { return *utf8proc_get_property(static_cast<utf8proc_int32_t>(c)); }

/// Removes one code point from the front and returns it; an invalid byte gives U+FFFD.
char32_t takeFirst(std::string_view& text) { return base::takeValidCharacter(text).value_or(replacement); }

void append(std::string& text, char32_t c) {
  std::array<utf8proc_uint8_t, 4> bytes{};
  const auto length = utf8proc_encode_char(static_cast<utf8proc_int32_t>(c), bytes.data());
  text.append(reinterpret_cast<const char*>(bytes.data()), static_cast<std::size_t>(length));
}

bool overridesDirection(char32_t c) { return (c >= 0x202A && c <= 0x202E) || (c >= 0x2066 && c <= 0x2069); }

bool isTag(char32_t c) { return c >= 0xE0020 && c <= 0xE007F; }  // tags spell the region in flags such as Scotland's

/// The code point shown for `c`; none if it is left out.
std::optional<char32_t> shownFor(char32_t c) {
  if (c == '\t' || c == '\n' || c == '\v' || c == '\f' || c == '\r' || c == 0x85) return U' ';
  if (overridesDirection(c) || base::isNoncharacter(c)) return replacement;
  switch (properties(c).category) {
    case UTF8PROC_CATEGORY_CC:
      return replacement;
    case UTF8PROC_CATEGORY_ZL:
    case UTF8PROC_CATEGORY_ZP:
      return U' ';
    case UTF8PROC_CATEGORY_CF:
      if (c == joiner || c == nonJoiner || isTag(c)) return c;
      if (properties(c).boundclass == UTF8PROC_BOUNDCLASS_PREPEND) return c;
      return std::nullopt;
    default:
      break;
  }
  // Unassigned, but reserved by Unicode for invisible characters.
  if (c >= 0xE0000 && c <= 0xE0FFF && properties(c).category == UTF8PROC_CATEGORY_CN) return std::nullopt;
  return c;
}

/// Columns of a code point by itself: none for marks. Prepended signs count as formats in the tables, but are visible.
int widthAlone(char32_t c) {
  const auto& property = properties(c);
  switch (property.category) {
    case UTF8PROC_CATEGORY_MN:
    case UTF8PROC_CATEGORY_MC:
    case UTF8PROC_CATEGORY_ME:
      return 0;
    default:
      break;
  }
  const int width = static_cast<int>(property.charwidth);
  return property.boundclass == UTF8PROC_BOUNDCLASS_PREPEND ? std::max(width, 1) : width;
}

/// Whether a code point would combine with the text before it.
bool continuesACharacter(char32_t c) {
  return !utf8proc_grapheme_break(' ', static_cast<utf8proc_int32_t>(c)) || widthAlone(c) == 0;
}

/// Columns that a code point adds to the cluster it continues. Hangul vowels and final consonants add none.
int widthContinuing(char32_t c) {
  const auto kind = properties(c).boundclass;
  return kind == UTF8PROC_BOUNDCLASS_V || kind == UTF8PROC_BOUNDCLASS_T ? 0 : widthAlone(c);
}

int clusterWidth(std::string_view cluster) {
  const char32_t first = takeFirst(cluster);
  const auto kind = properties(first).boundclass;
  const bool pictograph = kind == UTF8PROC_BOUNDCLASS_EXTENDED_PICTOGRAPHIC;
  const bool keycap = (first >= '0' && first <= '9') || first == '#' || first == '*';
  int width = widthAlone(first);
  while (!cluster.empty()) {
    const char32_t c = takeFirst(cluster);
    if (c == emojiVariation && (pictograph || keycap)) return 2;
    width += widthContinuing(c);
  }
  return pictograph || kind == UTF8PROC_BOUNDCLASS_REGIONAL_INDICATOR ? std::min(width, 2) : width;
}

/// The clusters of a text that is safe already. A cluster of width 0 is joined to the one before it, so that no line
/// begins with a mark that would combine with the text before it.
std::vector<Cluster> clustersOf(const std::string& text) {
  std::vector<Cluster> clusters;
  std::string_view rest = text;
  utf8proc_int32_t state = 0;
  std::size_t begin = 0;
  const auto close = [&](std::size_t end) {
    const int width = clusterWidth(std::string_view(text).substr(begin, end - begin));
    if (width == 0 && !clusters.empty()) {
      clusters.back().end = end;
    } else {
      clusters.push_back({begin, end, width});
    }
    begin = end;
  };
  std::optional<char32_t> before;
  while (!rest.empty()) {
    const std::size_t at = text.size() - rest.size();
    const char32_t c = takeFirst(rest);
    if (before && utf8proc_grapheme_break_stateful(static_cast<utf8proc_int32_t>(*before),
                                                   static_cast<utf8proc_int32_t>(c), &state)) {
      close(at);
    }
    before = c;
  }
  if (begin < text.size()) close(text.size());
  return clusters;
}

bool isBlank(const ShownText& text, std::size_t cluster) { return text.text[text.clusters[cluster].begin] == ' '; }

/// The clusters from `first` up to `last`, without trailing blanks.
Line lineOf(const ShownText& text, std::size_t first, std::size_t last) {
  while (last > first && isBlank(text, last - 1)) --last;
  Line line;
  if (first == last) return line;
  const std::size_t begin = text.clusters[first].begin;
  line.text = text.text.substr(begin, text.clusters[last - 1].end - begin);
  for (std::size_t i = first; i < last; ++i) line.width += text.clusters[i].width;
  return line;
}

Line cutLine(const ShownText& text, std::size_t first, int width) {
  std::size_t last = first;
  for (int used = 1; last < text.clusters.size(); ++last) {
    used += text.clusters[last].width;
    if (used > width) break;
  }
  Line line = lineOf(text, first, last);
  line.text += ellipsis;
  line.width += 1;
  return line;
}

bool fits(const ShownText& text, std::size_t first, int width) {
  int used = 0;
  for (std::size_t i = first; i < text.clusters.size() && used <= width; ++i) used += text.clusters[i].width;
  return used <= width;
}

/// Where a line ends, and whether it consists of one cluster that is wider than the line.
struct LineEnd {
  std::size_t last;
  bool tooWide;
};

LineEnd endOfLine(const ShownText& text, std::size_t first, int width) {
  const auto& clusters = text.clusters;
  std::size_t breakAt = first;
  int used = 0;
  for (std::size_t i = first; i < clusters.size(); ++i) {
    const bool besideWide = i > first && (clusters[i].width > 1 || clusters[i - 1].width > 1);
    if (isBlank(text, i) || besideWide) breakAt = i;
    used += clusters[i].width;
    if (used <= width) continue;
    if (breakAt > first) return {breakAt, false};
    return i > first ? LineEnd{i, false} : LineEnd{first + 1, true};
  }
  return {clusters.size(), false};
}

}  // namespace

ShownText shown(std::string_view text) {
  ShownText result;
  result.text.reserve(text.size());
  while (!text.empty()) {
    const auto c = shownFor(takeFirst(text));
    if (!c) continue;
    if (result.text.empty() && continuesACharacter(*c)) append(result.text, dottedCircle);
    append(result.text, *c);
  }
  result.clusters = clustersOf(result.text);
  for (const Cluster& cluster : result.clusters) result.width += cluster.width;
  return result;
}

int displayWidth(std::string_view text) { return shown(text).width; }

std::vector<Line> brokenIntoLines(const ShownText& text, int width, std::optional<int> lineLimit) {
  std::vector<Line> lines;
  if (width < 1) return lines;
  const std::size_t most = lineLimit ? static_cast<std::size_t>(std::max(*lineLimit, 1)) : text.clusters.size();
  for (std::size_t next = 0; next < text.clusters.size();) {
    if (lineLimit && lines.size() + 1 == most && !fits(text, next, width)) {
      lines.push_back(cutLine(text, next, width));
      break;
    }
    const auto [last, tooWide] = endOfLine(text, next, width);
    lines.push_back(tooWide ? Line{std::string(ellipsis), 1} : lineOf(text, next, last));
    next = last;
    while (next < text.clusters.size() && isBlank(text, next)) ++next;
  }
  return lines;
}

}  // namespace render::terminal
