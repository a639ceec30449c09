#include "desktop/program/feed_relay.hpp"

#include "desktop/program/main_loop.hpp"

namespace desktop {

void FeedRelay::widgetFound(const host::WidgetDeclaration& widget) {
  MainLoop::post([this, widget] { news_.widgetFound(widget); });
}

void FeedRelay::boardsChanged(const host::FeedBoards& boards) {
  MainLoop::post([this, boards] { news_.boardsChanged(boards); });
}

void FeedRelay::failed(const host::ExtensionFailure& failure) {
  MainLoop::post([this, failure] { news_.failed(failure); });
}

void FeedRelay::reloadPlanned(std::optional<absl::Time> reload) {
  MainLoop::post([this, reload] { news_.reloadPlanned(reload); });
}

}  // namespace desktop
