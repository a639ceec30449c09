#include "desktop/windows/fixed_boards.hpp"

#include "protocol/view_tree/builders.hpp"

namespace desktop {
namespace {

using protocol::HStack;
using protocol::Text;
using protocol::VStack;

protocol::View row(const char* text) {
  return HStack({.alignment = protocol::VerticalAlignment::firstTextBaseline, .spacing = 6},
                {
                    Text("00:00").font(protocol::TextStyle::caption2).foregroundStyle(protocol::ForegroundStyle::tint),
                    Text(text).font(protocol::TextStyle::caption).lineLimit(1),
                });
}

}  // namespace

BoardContent loadingBoard() {
  // The texts are drawn as bars, so only their lengths matter.
  protocol::Node view = VStack({.spacing = 6},
                               {
                                   Text("Vamba").font(protocol::TextStyle::headline),
                                   row("Lorem ipsum dolor sit"),
                                   row("Lorem ipsum dolor"),
                                   protocol::Divider(),
                                   row("Lorem ipsum dolor sit amet"),
                                   row("Lorem ipsum"),
                                   protocol::Spacer(),
                               })
                            .padding(12)
                            .containerBackground(protocol::ContainerBackground::background);
  return {.view = std::move(view), .redaction = render::Redaction::placeholder};
}

BoardContent emptyBoard() {
  return {.view = VStack({}, {}).containerBackground(protocol::ContainerBackground::background)};
}

}  // namespace desktop
