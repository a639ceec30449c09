#include "render/terminal/terminal_layout.hpp"

#include <algorithm>
#include <numeric>
#include <utility>

#include "protocol/view_tree/localized_key.hpp"

namespace render::terminal {
namespace {

constexpr int deepest = 512;
constexpr double mostCells = 20;  // limit of a single length, for trees with absurd values

/// A length in whole cells. NaN and values out of range are clamped.
int cells(double points, double cell) {
  return points >= cell ? static_cast<int>(std::min(points / cell, mostCells)) : 0;
}

int columnsOf(double padding) { return padding >= 6 ? std::max(1, cells(padding, 12)) : 0; }
int linesOf(double padding) { return cells(padding, 16); }

template <typename Stack>
const Stack* stack(const Box& box) {
  return std::get_if<Stack>(&box.node->kind);
}

bool isSpacer(const Box& box) { return std::holds_alternative<protocol::SpacerNode>(box.node->kind); }
bool isDivider(const Box& box) { return std::holds_alternative<protocol::DividerNode>(box.node->kind); }

/// Whether a child of a row neither shows nor separates anything, such as an empty text.
bool isAbsent(const Box& box) { return box.ideal == 0 && !box.expands && !isSpacer(box); }

/// Columns between a row's children; any spacing is at least one column.
int gapOf(const protocol::HStackNode& row) {
  const double spacing = row.spacing.value_or(8);
  return spacing > 0 ? std::max(1, cells(spacing, 12)) : 0;
}

/// Columns before each child of a row. There are none before a spacer, since its own width and the gap after it
/// suffice.
std::vector<int> gapsOf(const Box& row) {
  std::vector<int> gaps(row.children.size(), 0);
  const int gap = gapOf(*stack<protocol::HStackNode>(row));
  bool first = true;
  for (std::size_t i = 0; i < gaps.size(); ++i) {
    if (isAbsent(row.children[i])) continue;
    if (!first && !isSpacer(row.children[i])) gaps[i] = gap;
    first = false;
  }
  return gaps;
}

/// The leading text of a row if its digits are to line up with those of other rows, such as a time or a number.
Box* leadingFigure(Box& row) {
  const auto* stacked = stack<protocol::HStackNode>(row);
  if (stacked == nullptr || stacked->alignment != protocol::VerticalAlignment::firstTextBaseline) return nullptr;
  if (row.children.size() < 2) return nullptr;
  const auto* text = std::get_if<protocol::TextNode>(&row.children.front().node->kind);
  return text != nullptr && text->monospacedDigits ? &row.children.front() : nullptr;
}

Box measuredAt(const protocol::Node& node, Capsules capsules, int depth);

void measureChildren(Box& box, const std::vector<protocol::Node>& nodes, Capsules capsules, int depth) {
  if (depth == deepest) {
    box.text = shown(nodes.empty() ? "" : "…");
    box.ideal = box.text.width;
    return;
  }
  box.children.reserve(nodes.size());
  for (const auto& node : nodes) box.children.push_back(measuredAt(node, capsules, depth + 1));
}

Box measuredAt(const protocol::Node& node, Capsules capsules, int depth) {
  Box box;
  box.node = &node;
  const bool bare = node.background && capsules == Capsules::bare;
  if (node.padding && !bare) {
    box.padding = {linesOf(node.padding->top), columnsOf(node.padding->leading), linesOf(node.padding->bottom),
                   columnsOf(node.padding->trailing)};
  }
  if (const auto* vertical = std::get_if<protocol::VStackNode>(&node.kind)) {
    measureChildren(box, vertical->children, capsules, depth);
    for (const Box& child : box.children) {
      box.ideal = std::max(box.ideal, child.ideal);
      box.expands |= child.expands || isDivider(child);
      box.headline |= child.headline;
    }
  } else if (const auto* horizontal = std::get_if<protocol::HStackNode>(&node.kind)) {
    measureChildren(box, horizontal->children, capsules, depth);
    for (Box& child : box.children) {
      if (isDivider(child)) child.ideal = 1;
    }
    const auto gaps = gapsOf(box);
    box.ideal += std::accumulate(gaps.begin(), gaps.end(), 0);
    for (const Box& child : box.children) {
      box.ideal += child.ideal;
      box.expands |= child.expands || isSpacer(child);
      box.headline |= child.headline;
    }
  } else if (const auto* text = std::get_if<protocol::TextNode>(&node.kind)) {
    box.text = shown(protocol::asWritten(*text));
    box.ideal = box.text.width;
    box.headline = text->font == protocol::TextStyle::headline;
  } else if (const auto* spacer = std::get_if<protocol::SpacerNode>(&node.kind)) {
    box.ideal = cells(spacer->minLength, 12);
  }
  if (box.ideal > 0 || box.expands) box.ideal += box.padding.leading + box.padding.trailing;
  return box;
}

/// Gives the rows of a stack one leading column. It is as wide as the widest leading text, but very long ones are left
/// out, so a huge number indents only its own row.
void shareLeadingColumn(Box& column, int width) {
  const int widest = std::max(6, width / 4);
  int shared = 0;
  for (Box& child : column.children) {
    const Box* figure = leadingFigure(child);
    if (figure != nullptr && figure->ideal <= widest) shared = std::max(shared, figure->ideal);
  }
  for (Box& child : column.children) {
    if (leadingFigure(child) != nullptr) child.leadingColumn = shared;
  }
}

void placeColumn(Box& box, int width) {
  shareLeadingColumn(box, width);
  const int gap = linesOf(stack<protocol::VStackNode>(box)->spacing.value_or(8));
  int y = 0;
  bool first = true;
  bool hasText = false;
  bool afterHeadline = false;
  for (Box& child : box.children) {
    place(child, width);
    if (isSpacer(child)) child.height = linesOf(std::get<protocol::SpacerNode>(child.node->kind).minLength);
    child.y = y;
    if (child.height == 0) continue;
    if (!first) child.y += std::max(gap, afterHeadline ? 1 : 0);
    afterHeadline = child.headline;
    y = child.y + child.height;
    first = false;
    if (!hasText && !isDivider(child) && !isSpacer(child)) {
      hasText = true;
      box.baseline = child.y + child.baseline;
    }
    box.width = std::max(box.width, child.width);
  }
  box.height = y;
}

/// The ideal width of each child of a row, including the shared leading column.
int wish(const Box& row, std::size_t i) {
  const int ideal = row.children[i].ideal;
  return i == 0 ? std::max(ideal, row.leadingColumn) : ideal;
}

/// Columns for each child: the ideal width if there is room for all. Otherwise the narrow children get theirs and the
/// others share the rest equally, so a time is shown whole beside a shortened title.
std::vector<int> sharesOf(const Box& row, int room) {
  std::vector<int> shares(row.children.size(), 0);
  std::vector<std::size_t> order(row.children.size());
  std::iota(order.begin(), order.end(), std::size_t{0});
  std::sort(order.begin(), order.end(),
            [&](std::size_t a, std::size_t b) { return std::pair(wish(row, a), a) < std::pair(wish(row, b), b); });
  int waiting = static_cast<int>(
      std::count_if(row.children.begin(), row.children.end(), [](const Box& child) { return child.ideal > 0; }));
  for (const std::size_t i : order) {
    if (wish(row, i) == 0) continue;
    shares[i] = std::min(wish(row, i), room / std::max(waiting--, 1));
    room -= shares[i];
  }
  // Expanding children get what is left. Spacers get theirs later, when the widths of the texts are known.
  const bool hasSpacer = std::any_of(row.children.begin(), row.children.end(), isSpacer);
  if (!hasSpacer) {
    auto filling = static_cast<int>(
        std::count_if(row.children.begin(), row.children.end(), [](const Box& child) { return child.expands; }));
    for (std::size_t i = 0; i < shares.size(); ++i) {
      if (!row.children[i].expands) continue;
      const int more = room / filling--;
      shares[i] += more;
      room -= more;
    }
  }
  return shares;
}

void alignVertically(Box& box) {
  const bool onBaseline = stack<protocol::HStackNode>(box)->alignment == protocol::VerticalAlignment::firstTextBaseline;
  for (const Box& child : box.children) {
    box.height = std::max(box.height, child.height);
    if (child.height > 0) box.baseline = std::max(box.baseline, child.baseline);
  }
  int height = box.height;
  for (Box& child : box.children) {
    if (isDivider(child)) child.height = box.height;
    child.y = onBaseline ? std::max(0, box.baseline - child.baseline) : (box.height - child.height) / 2;
    if (isDivider(child)) child.y = 0;
    height = std::max(height, child.y + child.height);
  }
  box.height = height;
}

void placeRow(Box& box, int width) {
  auto gaps = gapsOf(box);
  const int gapsTogether = std::accumulate(gaps.begin(), gaps.end(), 0);
  if (gapsTogether > width) std::fill(gaps.begin(), gaps.end(), 0);
  const int room = width - std::accumulate(gaps.begin(), gaps.end(), 0);
  auto shares = sharesOf(box, room);

  int left = room;
  for (std::size_t i = 0; i < shares.size(); ++i) {
    Box& child = box.children[i];
    place(child, shares[i]);
    if (isDivider(child)) child.width = std::min(shares[i], 1);
    // Lines broken at words may be narrower than offered. A shared leading column keeps its width.
    if (!isSpacer(child) && !(i == 0 && box.leadingColumn > 0)) shares[i] = child.width;
    left -= shares[i];
  }
  auto spacers = static_cast<int>(std::count_if(box.children.begin(), box.children.end(), isSpacer));
  int x = 0;
  for (std::size_t i = 0; i < shares.size(); ++i) {
    if (isSpacer(box.children[i])) {
      const int more = left / spacers--;  // NOLINT(clang-analyzer-core.DivideZero): counts the spacers met here
      shares[i] += more;
      left -= more;
    }
    x += gaps[i];
    box.children[i].x = x;
    x += shares[i];
  }
  box.width = x;
  alignVertically(box);
}

}  // namespace

Box measured(const protocol::Node& node, Capsules capsules) { return measuredAt(node, capsules, 0); }

void place(Box& box, int width) {
  width = std::max(width, 0);
  if (box.padding.leading + box.padding.trailing > width) box.padding.leading = box.padding.trailing = 0;
  const int inner = width - box.padding.leading - box.padding.trailing;
  if (isDivider(box)) {
    box.width = inner;
    box.height = 1;
  } else if (const auto* text = std::get_if<protocol::TextNode>(&box.node->kind);
             text != nullptr || box.text.width > 0) {
    box.lines = brokenIntoLines(box.text, inner, text != nullptr ? text->lineLimit : 1);
    for (const Line& line : box.lines) box.width = std::max(box.width, line.width);
    box.height = static_cast<int>(box.lines.size());
  } else if (stack<protocol::VStackNode>(box) != nullptr) {
    placeColumn(box, inner);
  } else if (stack<protocol::HStackNode>(box) != nullptr) {
    placeRow(box, inner);
  }
  if (box.height == 0) return;
  box.width += box.padding.leading + box.padding.trailing;
  box.height += box.padding.top + box.padding.bottom;
  box.baseline += box.padding.top;
}

}  // namespace render::terminal
