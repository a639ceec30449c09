#include "host/feed/feed.hpp"

#include <algorithm>
#include <utility>

#include <absl/time/clock.h>

#include "host/feed/entry.hpp"
#include "platform/calendar/clock.hpp"

namespace host {
namespace {

using nlohmann::json;

constexpr Wait atOnce{.until = std::nullopt, .pause = absl::ZeroDuration()};

}  // namespace

Feed::Feed(ExtensionSettings settings, FeedListener& listener, Placeholders placeholders, FirstLoad firstLoad)
    : extension_(std::move(settings)), listener_(listener), placeholders_(placeholders), firstLoad_(firstLoad) {}

void Feed::show(std::vector<std::string> families) {
  if (families == families_) return;
  const bool wasIdle = families_.empty();
  families_ = std::move(families);
  if (families_.empty()) {
    date_.clear();
    redraw_.clear();
    pause_.clear();
    return;
  }
  if (timeline_) {
    redraw();
  } else if (placeholders_ == Placeholders::untilLoaded) {
    // What fails here fails again in the load that follows, and is told then.
    static_cast<void>(showPlaceholders());
  }
  const bool held = firstLoad_ == FirstLoad::whenAskedFor && !timeline_;
  if (wasIdle && !held) plan(atOnce);
}

std::array<int, 4> Feed::descriptors() const {
  return {date_.descriptor(), redraw_.descriptor(), pause_.descriptor(), zone_.descriptor()};
}

void Feed::handleWakeUps() {
  const auto date = date_.take();
  const auto redrawing = redraw_.take();
  const bool paused = pause_.take();
  const bool zoneChanged = zone_.take();
  if (families_.empty()) return;
  if (date == RealTimeTimer::Event::due || paused) return reload();

  const bool clockSet = date == RealTimeTimer::Event::clockSet || redrawing == RealTimeTimer::Event::clockSet;
  if (!clockSet && !zoneChanged && redrawing != RealTimeTimer::Event::due) return;
  redraw();
  if (clockSet) plan(schedule_.clockChanged(absl::Now()));
  planRedraw();
}

void Feed::reload() {
  firstLoad_ = FirstLoad::atOnce;
  if (families_.empty()) return;
  // A clock that is set during the load is told after it.
  planRedraw();
  const auto wait = load();
  if (!wait) return failed(wait.error());
  extension_.stop();
  plan(*wait);
}

std::expected<Wait, ExtensionFailure> Feed::load() {
  if (auto found = findWidget(); !found) return std::unexpected(std::move(found).error());
  auto timeline = extension_.timeline(widget_.kind, families_.front());
  if (!timeline) return std::unexpected(std::move(timeline).error());
  // The clock that the reload date is by may be set before the boards are drawn.
  const absl::Time answered = absl::Now();
  if (auto drawn = draw(entryAt(*timeline, answered), BoardOrigin::load); !drawn) {
    return std::unexpected(std::move(drawn).error());
  }
  timeline_ = *std::move(timeline);
  return schedule_.loaded(answered, timeline_->reload);
}

Feed::Failure Feed::findWidget() {
  if (!widget_.kind.empty()) return {};
  auto widgets = extension_.widgets();
  if (!widgets) return std::unexpected(std::move(widgets).error());
  const auto widget = std::ranges::find_if(*widgets, [this](const WidgetDeclaration& declared) {
    return families_.empty() || std::ranges::find(declared.families, families_.front()) != declared.families.end();
  });
  if (widget == widgets->end()) {
    return std::unexpected(
        ExtensionFailure{ExtensionFailure::Kind::cannotStart, "the extension offers no widget of this size"});
  }
  widget_ = *widget;
  listener_.widgetFound(widget_);
  return {};
}

Feed::Failure Feed::showPlaceholders() {
  if (auto found = findWidget(); !found) return found;
  const auto answer = extension_.placeholder(widget_.kind, families_.front());
  if (!answer) return std::unexpected(answer.error());
  return draw(answer->at("entry"), BoardOrigin::placeholder);
}

Feed::Failure Feed::draw(const json& entry, BoardOrigin origin) {
  FeedBoards boards{.views = {}, .holds = holdingOf(entry), .origin = origin};
  for (const auto& family : families_) {
    auto view = extension_.render(widget_.kind, family, entry);
    if (!view) return std::unexpected(std::move(view).error());
    boards.views.emplace(family, *std::move(view));
  }
  listener_.boardsChanged(boards);
  return {};
}

void Feed::redraw() {
  if (!timeline_) return;
  const bool wasRunning = extension_.running();
  const auto drawn = draw(entryAt(*timeline_, absl::Now()), BoardOrigin::redraw);
  if (!drawn) return failed(drawn.error());
  if (!wasRunning) extension_.stop();
  planRedraw();
}

FeedBoards Feed::previews() {
  FeedBoards boards{.views = {}, .holds = BoardHolds::day, .origin = BoardOrigin::placeholder};
  const bool wasRunning = extension_.running();
  if (findWidget()) {
    for (const auto& family : widget_.families) {
      const auto answer = extension_.snapshot(widget_.kind, family, true);
      if (!answer) break;
      auto view = extension_.render(widget_.kind, family, answer->at("entry"));
      if (!view) break;
      boards.views.emplace(family, *std::move(view));
    }
  }
  if (!wasRunning) extension_.stop();
  return boards;
}

void Feed::failed(const ExtensionFailure& failure) {
  // Its caller has something to do first, after which the load begins again.
  if (failure.kind == ExtensionFailure::Kind::interrupted) return plan(atOnce);
  extension_.stop();
  const auto wait = schedule_.failed();
  listener_.failed(failure);
  plan(wait);
}

void Feed::plan(const Wait& wait) {
  wait.until ? date_.set(*wait.until) : date_.clear();
  wait.pause ? pause_.set(*wait.pause) : pause_.clear();
  std::optional<absl::Time> reload = wait.until;
  if (wait.pause) reload = absl::Now() + *wait.pause;
  listener_.reloadPlanned(reload);
  planRedraw();
}

void Feed::planRedraw() {
  const platform::SystemClock clock;
  const absl::Time now = clock.now();
  std::optional<absl::Time> next;
  if (const auto midnight = clock.calendar().startOfDayAfter(now, 1)) next = *midnight;
  if (const auto entry = timeline_ ? nextEntryAfter(*timeline_, now) : std::nullopt;
      entry && (!next || *entry < *next)) {
    next = entry;
  }
  next ? redraw_.set(*next) : redraw_.clear();
}

}  // namespace host
