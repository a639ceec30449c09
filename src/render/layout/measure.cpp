#include "render/layout/measure.hpp"

#include <numeric>

#include "render/layout/stack_room.hpp"

namespace render {
namespace {

using protocol::EdgeInsets;
using protocol::Node;

constexpr double ruleThickness = 1;
constexpr double tolerance = 1e-6;  ///< rounding error of summed lengths
constexpr int deepestNesting = 64;  ///< nodes that are nested deeper are not shown

void shrinkToFit(double& near, double& far, double room) {
  const double sum = near + far;
  if (sum <= room) return;
  near = near / sum * room;
  far = room - near;
}

EdgeInsets paddingWithin(const Node& node, const Offer& offer) {
  if (!node.padding) return {};
  EdgeInsets padding{sensibleLength(node.padding->top), sensibleLength(node.padding->leading),
                     sensibleLength(node.padding->bottom), sensibleLength(node.padding->trailing)};
  shrinkToFit(padding.leading, padding.trailing, offer.width);
  shrinkToFit(padding.top, padding.bottom, offer.height);
  return padding;
}

double summedGaps(const std::vector<Measured>& children) {
  return std::accumulate(children.begin(), children.end(), 0.0,
                         [](double sum, const Measured& child) { return sum + child.gap; });
}

double summedHeights(const std::vector<Measured>& children) {
  return std::accumulate(children.begin(), children.end(), 0.0,
                         [](double sum, const Measured& child) { return sum + child.size.height; });
}

/// Measures one tree; keeps the measurer and the current depth.
class Pass {
 public:
  Pass(TextMeasurer& measurer, double unit) : measurer_(measurer), unit_(unit) {}

  Measured node(const Node& node, const Offer& offer);

 private:
  void text(Measured& result, const protocol::TextNode& text, const Offer& offer);
  void verticalStack(Measured& result, const protocol::VStackNode& stack, const Offer& offer);
  void horizontalStack(Measured& result, const protocol::HStackNode& stack, const Offer& offer);
  double leadingColumnOf(const protocol::VStackNode& stack, double width);
  void growDown(std::vector<Measured>& children, const Offer& offer);
  void cutAtBottom(std::vector<Measured>& children, const Offer& offer);
  std::vector<Measured> shareWidth(const protocol::HStackNode& stack, const Offer& offer);

  double nearestUnits(double length) const { return std::round(length / unit_) * unit_; }
  double enoughUnits(double length) const { return std::ceil(length / unit_ - tolerance) * unit_; }

  TextMeasurer& measurer_;
  double unit_;
  int depth_ = 0;
};

Measured Pass::node(const Node& node, const Offer& offer) {
  Measured result{.node = &node};
  if (depth_ == deepestNesting) {
    result.present = false;
    return result;
  }
  ++depth_;
  result.padding = paddingWithin(node, offer);
  const EdgeInsets& padding = result.padding;
  const Offer inner{std::max(0.0, offer.width - padding.leading - padding.trailing),
                    std::max(0.0, offer.height - padding.top - padding.bottom), offer.axis, offer.leadingColumn};

  // Each kind sets the size and baseline of its content; the padding is added below.
  if (const auto* kind = std::get_if<protocol::TextNode>(&node.kind)) {
    text(result, *kind, inner);
  } else if (const auto* stack = std::get_if<protocol::VStackNode>(&node.kind)) {
    verticalStack(result, *stack, inner);
  } else if (const auto* row = std::get_if<protocol::HStackNode>(&node.kind)) {
    horizontalStack(result, *row, inner);
  } else if (const auto* spacer = std::get_if<protocol::SpacerNode>(&node.kind)) {
    const double length = sensibleLength(spacer->minLength);
    if (offer.axis == Axis::horizontal) result.size.width = std::min(length, inner.width);
    if (offer.axis == Axis::vertical) result.size.height = std::min(length, inner.height);
    result.firstBaseline = result.size.height;
  } else if (offer.axis == Axis::vertical) {
    result.size = {inner.width, std::min(ruleThickness, inner.height)};
    result.firstBaseline = result.size.height;
  } else {
    result.size = {std::min(ruleThickness, inner.width), 0};  // gets the row's height later
  }
  --depth_;
  result.size.width += padding.leading + padding.trailing;
  result.size.height += padding.top + padding.bottom;
  result.firstBaseline += padding.top;
  return result;
}

void Pass::text(Measured& result, const protocol::TextNode& text, const Offer& offer) {
  int lines = std::max(1, text.lineLimit.value_or(unlimitedLines));
  auto extent = measurer_.within(text, offer.width, lines);
  while (extent && extent->size.height > offer.height + tolerance) {
    const int fitting = static_cast<int>(extent->lines * offer.height / extent->size.height);
    lines = std::min(fitting, extent->lines - 1);
    extent = lines < 1 ? std::nullopt : measurer_.within(text, offer.width, lines);
  }
  if (!extent) {
    result.present = false;
    return;
  }
  result.text = *extent;
  result.size = {std::min(extent->size.width, offer.width), std::min(nearestUnits(extent->size.height), offer.height)};
  result.firstBaseline = extent->firstBaseline;
  result.textWidthLimit = offer.width;
  result.textMaxLines = lines;
}

void Pass::verticalStack(Measured& result, const protocol::VStackNode& stack, const Offer& offer) {
  auto& children = result.children;
  children.reserve(stack.children.size());
  const double leadingColumn = leadingColumnOf(stack, offer.width);
  for (const auto& child : stack.children) {
    auto measured = node(child, {offer.width, unlimitedHeight, Axis::vertical, leadingColumn});
    if (!measured.present) continue;
    measured.size.height = enoughUnits(measured.size.height);
    if (!children.empty()) measured.gap = nearestUnits(gapBetween(stack.spacing, *children.back().node, child));
    children.push_back(std::move(measured));
  }
  if (std::isfinite(offer.height)) {
    const double height = summedHeights(children) + summedGaps(children);
    if (height > offer.height + tolerance) {
      cutAtBottom(children, {offer.width, offer.height, Axis::vertical, leadingColumn});
    } else {
      growDown(children, {offer.width, offer.height - height, Axis::vertical, leadingColumn});
    }
  }
  for (const auto& child : children) result.size.width = std::max(result.size.width, child.size.width);
  result.size.height = summedHeights(children) + summedGaps(children);
  result.firstBaseline = children.empty() ? 0 : children.front().firstBaseline;
  result.present = !children.empty() || stack.children.empty();
}

/// The width of the leading column that the rows of a stack share, so that the texts after it line up: the widest first
/// child, but at most a quarter of the width.
double Pass::leadingColumnOf(const protocol::VStackNode& stack, double width) {
  double widest = 0;
  for (const auto& child : stack.children) {
    const auto* const row = std::get_if<protocol::HStackNode>(&child.kind);
    if (row == nullptr || row->alignment != protocol::VerticalAlignment::firstTextBaseline) continue;
    if (row->children.size() < 2 || !std::holds_alternative<protocol::TextNode>(row->children[0].kind)) continue;
    widest = std::max(widest, std::min(naturalWidth(row->children[0], measurer_), width / 4));
  }
  return widest;
}

/// Shares `spare.height` among the children that can grow.
void Pass::growDown(std::vector<Measured>& children, const Offer& spare) {
  const auto takers =
      std::count_if(children.begin(), children.end(), [](const Measured& child) { return growsDown(*child.node); });
  if (takers == 0) return;
  const double share = spare.height / static_cast<double>(takers);
  for (auto& child : children) {
    if (!growsDown(*child.node)) continue;
    if (std::holds_alternative<protocol::SpacerNode>(child.node->kind)) {
      child.size.height += share;
      continue;
    }
    const double gap = child.gap;
    child = node(*child.node, {spare.width, child.size.height + share, Axis::vertical, spare.leadingColumn});
    child.gap = gap;
  }
}

void Pass::cutAtBottom(std::vector<Measured>& children, const Offer& offer) {
  std::vector<Measured> kept;
  double used = 0;
  for (auto& child : children) {
    const double gap = kept.empty() ? 0 : child.gap;
    const double room = offer.height - used - gap;
    if (child.size.height > room + tolerance) {
      // Rows are left out whole; a paragraph can end in an ellipsis. The first child is always shown, even if it is
      // cut, so that the board is not empty.
      const bool row = std::holds_alternative<protocol::HStackNode>(child.node->kind) || child.text.lines == 1;
      if (room > 0 && (!row || kept.empty())) {
        child = node(*child.node, {offer.width, room, Axis::vertical, offer.leadingColumn});
        child.gap = gap;
        if (child.present && child.size.height <= room + tolerance) kept.push_back(std::move(child));
      }
      break;
    }
    child.gap = gap;
    used += gap + child.size.height;
    kept.push_back(std::move(child));
  }
  while (!kept.empty() && separates(*kept.back().node)) kept.pop_back();
  children = std::move(kept);
}

void Pass::horizontalStack(Measured& result, const protocol::HStackNode& stack, const Offer& offer) {
  result.children = shareWidth(stack, offer);
  auto& children = result.children;
  double ascent = 0;
  for (const auto& child : children) ascent = std::max(ascent, child.firstBaseline);
  double height = 0;
  for (auto& child : children) {
    if (stack.alignment == protocol::VerticalAlignment::firstTextBaseline) {
      child.crossOffset = ascent - child.firstBaseline;
    }
    result.size.width += child.gap + child.size.width;
    height = std::max(height, child.crossOffset + child.size.height);
  }
  // With aligned baselines a row can be higher than each of its children.
  const bool tooHigh = height > offer.height + tolerance;
  if (tooHigh) height = offer.height;
  for (auto& child : children) {
    if (std::holds_alternative<protocol::DividerNode>(child.node->kind)) {
      child.crossOffset = 0;
      child.size.height = height;
      shrinkToFit(child.padding.top, child.padding.bottom, height);
    } else if (tooHigh) {
      child.crossOffset = 0;
    } else if (stack.alignment == protocol::VerticalAlignment::center) {
      child.crossOffset = std::min(nearestUnits((height - child.size.height) / 2), height - child.size.height);
    }
    result.firstBaseline = std::max(result.firstBaseline, child.crossOffset + child.firstBaseline);
  }
  result.size.height = height;
  result.present = !children.empty() || stack.children.empty();
}

/// Measures each child of a row once. If the natural widths don't all fit, the widest children are narrowed to an equal
/// width. Children that can grow share the remaining width.
std::vector<Measured> Pass::shareWidth(const protocol::HStackNode& stack, const Offer& offer) {
  const auto count = stack.children.size();
  std::vector<double> gaps(count, 0);
  for (std::size_t i = 1; i < count; ++i) {
    gaps[i] = gapBetween(stack.spacing, stack.children[i - 1], stack.children[i]);
  }
  const double gapSum = std::accumulate(gaps.begin(), gaps.end(), 0.0);
  const double gapScale = gapSum > offer.width ? offer.width / gapSum : 1;

  std::vector<double> widths(count);
  for (std::size_t i = 0; i < count; ++i) widths[i] = naturalWidth(stack.children[i], measurer_);
  const bool isRow = stack.alignment == protocol::VerticalAlignment::firstTextBaseline;
  const double leadingColumn = isRow && count > 1 ? std::min(offer.leadingColumn, offer.width / 2) : 0;
  if (count > 0) widths[0] = std::max(widths[0], leadingColumn);
  std::vector<std::size_t> order(count);
  std::iota(order.begin(), order.end(), std::size_t{0});
  std::stable_sort(order.begin(), order.end(), [&](auto a, auto b) { return widths[a] < widths[b]; });

  std::vector<Measured> measured(count);
  const auto measureAt = [&](std::size_t i, double width) {
    measured[i] = node(stack.children[i], {width, offer.height, Axis::horizontal});
    if (i == 0 && leadingColumn > 0 && measured[i].present) {
      measured[i].size.width = std::max(measured[i].size.width, std::min(width, leadingColumn));
    }
    measured[i].gap = gaps[i] * gapScale;
  };
  std::vector<std::size_t> takers;
  double left = std::max(0.0, offer.width - gapSum * gapScale);
  for (std::size_t done = 0; done < count; ++done) {
    const std::size_t i = order[done];
    widths[i] = std::min(widths[i], left / static_cast<double>(count - done));
    if (growsSideways(stack.children[i])) {
      takers.push_back(i);
      left -= widths[i];
    } else {
      measureAt(i, widths[i]);
      if (measured[i].present) left -= measured[i].size.width;
    }
    left = std::max(0.0, left);
  }
  for (const auto i : takers) {
    measureAt(i, widths[i] + left / static_cast<double>(takers.size()));
    if (std::holds_alternative<protocol::SpacerNode>(stack.children[i].kind)) {
      measured[i].size.width = widths[i] + left / static_cast<double>(takers.size());
    }
  }

  std::vector<Measured> present;
  present.reserve(count);
  for (auto& child : measured) {
    if (!child.present) continue;
    if (present.empty()) child.gap = 0;
    present.push_back(std::move(child));
  }
  return present;
}

}  // namespace

Measured measure(const Node& node, Offer offer, TextMeasurer& measurer, double unit) {
  return Pass(measurer, unit).node(node, offer);
}

}  // namespace render
