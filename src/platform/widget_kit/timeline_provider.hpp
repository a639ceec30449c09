// The contract between a widget and its host: three questions about what to show.
#pragma once

#include <cassert>
#include <functional>
#include <utility>

#include "platform/widget_kit/timeline.hpp"
#include "protocol/view_tree/widget_family.hpp"

namespace platform {

struct TimelineProviderContext {
  protocol::WidgetFamily family = protocol::WidgetFamily::systemMedium;
  bool isPreview = false;  ///< the host shows the widget in its gallery
};

/// A provider calls this with its answer, exactly once and on any thread. Not calling it, or calling it twice, is a
/// bug.
template <typename Answer>
class Completion {
 public:
  explicit Completion(std::move_only_function<void(Answer)> handler) : handler_(std::move(handler)) {}
  Completion(Completion&& other) noexcept : handler_(std::exchange(other.handler_, nullptr)) {}
  Completion& operator=(Completion&&) = delete;
  ~Completion() { assert(!handler_ && "a completion was never called"); }

  void operator()(Answer answer) {
    assert(handler_ && "a completion was called twice");
    std::exchange(handler_, nullptr)(std::move(answer));
  }

 private:
  std::move_only_function<void(Answer)> handler_;
};

/// The host may call a provider on any thread and several times at once, and may destroy it as soon as the call
/// returns: a task that answers later holds copies of what it needs. It runs in the task group that `extensionMain`
/// waits for.
template <TimelineEntry Entry>
class TimelineProvider {
 public:
  virtual ~TimelineProvider() = default;

  /// The entry that is shown before the first timeline has been loaded. Returns at once.
  virtual Entry placeholder(const TimelineProviderContext& context) const = 0;
  /// A single entry for a quick look. For a preview the completion is called before this returns.
  virtual void getSnapshot(const TimelineProviderContext& context, Completion<Entry> completion) const = 0;
  /// The entries to show from now on and when to ask again.
  virtual void getTimeline(const TimelineProviderContext& context, Completion<Timeline<Entry>> completion) const = 0;
};

}  // namespace platform
