#include "host/feed/feed.hpp"

#include <algorithm>
#include <utility>

namespace host {
namespace {

constexpr Wait atOnce{.until = std::nullopt, .pause = absl::ZeroDuration()};

}  // namespace

Feed::Feed(ExtensionSettings settings, FeedListener listener, Timekeeper& time, Recovery& recovery,
           Placeholders placeholders)
    : extension_(std::move(settings)),
      listener_(std::move(listener)),
      time_(time),
      recovery_(recovery),
      placeholders_(placeholders) {}

void Feed::show(std::vector<protocol::WidgetFamily> families) {
  if (families == families_) return;
  const bool wasIdle = families_.empty();
  families_ = std::move(families);
  if (families_.empty()) {
    time_.setReload(std::nullopt);
    time_.setRedraw(std::nullopt);
    recovery_.end();
    return;
  }
  if (timeline_) {
    redraw();
  } else if (placeholders_ == Placeholders::untilLoaded) {
    // What fails here fails again in the load that follows, and is reported then.
    static_cast<void>(showPlaceholders());
  }
  if (wasIdle) plan(atOnce);
}

std::vector<int> Feed::descriptors() const {
  auto descriptors = time_.descriptors();
  const auto further = recovery_.descriptors();
  descriptors.insert(descriptors.end(), further.begin(), further.end());
  return descriptors;
}

void Feed::handleWakeUps() {
  const auto wake = time_.take();
  const auto signs = recovery_.take();
  if (families_.empty()) return;
  if (wake.reloadDue) return reload();
  recover(signs);
  if (!wake.clockSet && !wake.zoneChanged && !wake.redrawDue) return;
  redraw();
  if (wake.clockSet) plan(schedule_.clockChanged(time_.now(), time_.pauseLeft()));
  planRedraw();
}

void Feed::reload() {
  if (families_.empty()) return;
  listener_(ReloadPlanned{});
  // A clock that is set during the load is noticed after it.
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
  // Taken now: the clock may be set while the boards are drawn, and the reload date was made by the clock as it is
  // here.
  const absl::Time answered = time_.now();
  if (auto drawn = draw(entryAt(timeline->entries, answered), BoardOrigin::load); !drawn) {
    return std::unexpected(std::move(drawn).error());
  }
  timeline_ = *std::move(timeline);
  entryAt(timeline_->entries, answered).holds == BoardHolds::sentence ? recovery_.begin() : recovery_.end();
  return schedule_.loaded(answered, timeline_->reload);
}

Feed::Result Feed::findWidget() {
  if (!widget_.kind.empty()) return {};
  auto widgets = extension_.widgets();
  if (!widgets) return std::unexpected(std::move(widgets).error());
  auto widget = firstWidget(*widgets, families_.empty() ? std::nullopt : std::optional(families_.front()));
  if (!widget) return std::unexpected(std::move(widget).error());
  widget_ = *std::move(widget);
  listener_(widget_);
  return {};
}

Feed::Result Feed::showPlaceholders() {
  if (auto found = findWidget(); !found) return found;
  const auto answer = extension_.placeholder(widget_.kind, families_.front());
  if (!answer) return std::unexpected(answer.error());
  return draw(*answer, BoardOrigin::placeholder);
}

Feed::Result Feed::draw(const Entry& entry, BoardOrigin origin) {
  FeedBoards boards{.views = {}, .holds = entry.holds, .origin = origin};
  for (const auto& family : families_) {
    auto view = extension_.render(widget_.kind, family, entry.json);
    if (!view) return std::unexpected(std::move(view).error());
    boards.views.emplace(family, *std::move(view));
  }
  lastDrawn_ = time_.now();
  listener_(std::move(boards));
  return {};
}

void Feed::redraw() {
  if (!timeline_) return;
  const bool wasRunning = extension_.running();
  const auto drawn = draw(entryAt(timeline_->entries, time_.now()), BoardOrigin::redraw);
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
      auto view = extension_.render(widget_.kind, family, answer->json);
      if (!view) break;
      boards.views.emplace(family, *std::move(view));
    }
  }
  if (!wasRunning) extension_.stop();
  return boards;
}

/// Signs come in bursts (a folder and its file, a link and its addresses), so the load begins a second later. The least
/// time between two such loads keeps endless signs from becoming a storm.
void Feed::recover(const Recovery::Signs& signs) {
  constexpr absl::Duration settling = absl::Seconds(1);
  constexpr absl::Duration betweenCredentials = absl::Seconds(3);
  constexpr absl::Duration betweenNetworks = absl::Minutes(1);
  const absl::Time now = time_.now();
  const auto planAfter = [&](absl::Time& last, absl::Duration between) {
    const absl::Time at = std::max(now + settling, std::min(last, now + settling) + between);
    if (planned_ && *planned_ <= at) return;
    last = at;
    plan(schedule_.soon(at - now));
  };
  if (signs.credentials) planAfter(lastCredentials_, betweenCredentials);
  if (signs.network) planAfter(lastNetwork_, betweenNetworks);
}

void Feed::failed(const ExtensionFailure& failure) {
  // The caller has something else to do first; the load begins again after it.
  if (failure.kind == ExtensionFailure::Kind::interrupted) return plan(atOnce);
  extension_.stop();
  const auto wait = schedule_.failed();
  listener_(failure);
  plan(wait);
}

void Feed::plan(const Wait& wait) {
  time_.setReload(wait);
  planned_ = wait.pause ? time_.now() + *wait.pause : wait.until;
  listener_(ReloadPlanned{planned_});
  planRedraw();
}

/// At the next midnight or the next entry's date. By some zone rules (shifts of hours, `TZ=A12B,1,2`) the next midnight
/// is in the past: the boards are still drawn once a second at most.
void Feed::planRedraw() {
  const absl::Time now = time_.now();
  std::optional<absl::Time> next = time_.nextMidnight();
  if (const auto entry = timeline_ ? nextEntryAfter(timeline_->entries, now) : std::nullopt; entry) {
    next = std::min(next.value_or(*entry), *entry);
  }
  if (next) next = std::max(*next, std::min(lastDrawn_, now) + shortestPause);
  time_.setRedraw(next);
}

}  // namespace host
