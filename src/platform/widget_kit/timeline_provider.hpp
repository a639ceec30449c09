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

/// What a provider calls with its answer: exactly once, on any thread. Anything else is a mistake in the provider.
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

/// A provider may be asked on any thread and many times at once.
template <TimelineEntry Entry>
class TimelineProvider {
 public:
  virtual ~TimelineProvider() = default;

  /// What stands for the widget while nothing is known; answered at once.
  virtual Entry placeholder(const TimelineProviderContext& context) const = 0;
  /// A single entry for a quick look; a preview is answered before the call returns.
  virtual void getSnapshot(const TimelineProviderContext& context, Completion<Entry> completion) const = 0;
  /// The entries to show from now on and when to ask again.
  virtual void getTimeline(const TimelineProviderContext& context, Completion<Timeline<Entry>> completion) const = 0;
};

}  // namespace platform
