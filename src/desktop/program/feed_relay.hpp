// Carries what the feed tells from its thread to the main thread.
#pragma once

#include <functional>
#include <optional>

#include "host/feed/feed.hpp"

namespace desktop {

/// On the main thread, in the order in which the feed told it.
struct FeedNews {
  std::function<void(const host::WidgetDeclaration&)> widgetFound;
  std::function<void(const host::FeedBoards&)> boardsChanged;
  std::function<void(const host::ExtensionFailure&)> failed;
  std::function<void(std::optional<absl::Time>)> reloadPlanned;
};

class FeedRelay final : public host::FeedListener {
 public:
  /// The news are called as long as the main loop runs.
  explicit FeedRelay(FeedNews news) : news_(std::move(news)) {}

 private:
  void widgetFound(const host::WidgetDeclaration& widget) override;
  void boardsChanged(const host::FeedBoards& boards) override;
  void failed(const host::ExtensionFailure& failure) override;
  void reloadPlanned(std::optional<absl::Time> reload) override;

  FeedNews news_;
};

}  // namespace desktop
