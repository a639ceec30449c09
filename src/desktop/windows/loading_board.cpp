#include "desktop/windows/loading_board.hpp"

#include "platform/view_tree/builders.hpp"

namespace desktop {
namespace {

using platform::HStack;
using platform::Text;
using platform::VStack;

platform::View row(const char* text) {
  return HStack({.alignment = platform::VerticalAlignment::firstTextBaseline, .spacing = 6},
                {
                    Text("00:00").font(platform::TextStyle::caption2).foregroundStyle(platform::ForegroundStyle::tint),
                    Text(text).font(platform::TextStyle::caption).lineLimit(1),
                });
}

}  // namespace

BoardContent loadingBoard() {
  // Under the bars, only the lengths of these texts are seen.
  platform::Node view = VStack({.spacing = 6},
                               {
                                   Text("Vamba").font(platform::TextStyle::headline),
                                   row("Lorem ipsum dolor sit"),
                                   row("Lorem ipsum dolor"),
                                   platform::Divider(),
                                   row("Lorem ipsum dolor sit amet"),
                                   row("Lorem ipsum"),
                                   platform::Spacer(),
                               })
                            .padding(12)
                            .containerBackground(platform::ContainerBackground::background);
  return {.view = std::move(view), .redaction = render::Redaction::placeholder};
}

}  // namespace desktop
