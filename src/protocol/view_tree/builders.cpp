#include "protocol/view_tree/builders.hpp"

namespace protocol {

View&& View::padding(double everyEdge) && {
  return std::move(*this).padding({everyEdge, everyEdge, everyEdge, everyEdge});
}

View&& View::padding(EdgeInsets insets) && {
  node_.padding = insets;
  return std::move(*this);
}

View&& View::background(CapsuleBackground capsule) && {
  node_.background = capsule;
  return std::move(*this);
}

View&& View::containerBackground(ContainerBackground background) && {
  node_.containerBackground = background;
  return std::move(*this);
}

View&& View::id(std::string identity) && {
  node_.identity = std::move(identity);
  return std::move(*this);
}

Text&& Text::font(TextStyle style) && {
  text().font = style;
  return std::move(*this);
}

Text&& Text::weight(FontWeight weight) && {
  text().weight = weight;
  return std::move(*this);
}

Text&& Text::monospacedDigit() && {
  text().monospacedDigits = true;
  return std::move(*this);
}

Text&& Text::foregroundStyle(ForegroundStyle style) && {
  text().style = style;
  return std::move(*this);
}

Text&& Text::lineLimit(int lines) && {
  text().lineLimit = lines;
  return std::move(*this);
}

Text&& Text::role(TextRole role) && {
  text().role = role;
  return std::move(*this);
}

View VStack(StackStyle<HorizontalAlignment> style, Children children) {
  return View({.kind = VStackNode{style.alignment, style.spacing, std::move(children.nodes)}});
}

View HStack(StackStyle<VerticalAlignment> style, Children children) {
  return View({.kind = HStackNode{style.alignment, style.spacing, std::move(children.nodes)}});
}

}  // namespace protocol
