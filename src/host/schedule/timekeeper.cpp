#include "host/schedule/timekeeper.hpp"

#include "platform/calendar/clock.hpp"

namespace host {

absl::Time SystemTimekeeper::now() const { return platform::SystemClock().now(); }

std::optional<absl::Time> SystemTimekeeper::nextMidnight() const {
  const platform::SystemClock clock;
  return clock.calendar().startOfDayAfter(clock.now(), 1);
}

void SystemTimekeeper::setReload(std::optional<Wait> wait) {
  wait && wait->until ? date_.set(*wait->until) : date_.clear();
  wait && wait->pause ? pause_.set(*wait->pause) : pause_.clear();
}

void SystemTimekeeper::setRedraw(std::optional<absl::Time> instant) {
  instant ? redraw_.set(*instant) : redraw_.clear();
}

std::vector<int> SystemTimekeeper::descriptors() const {
  return {date_.descriptor(), pause_.descriptor(), redraw_.descriptor(), zone_.descriptor()};
}

Timekeeper::Wake SystemTimekeeper::take() {
  using Event = RealTimeTimer::Event;
  const Event date = date_.take();
  const Event redraw = redraw_.take();
  const bool paused = pause_.take();
  return {.reloadDue = date == Event::due || paused,
          .redrawDue = redraw == Event::due,
          .clockSet = date == Event::clockSet || redraw == Event::clockSet,
          .zoneChanged = zone_.take()};
}

bool SystemTimekeeper::works() const {
  return date_.descriptor() >= 0 && pause_.descriptor() >= 0 && redraw_.descriptor() >= 0;
}

}  // namespace host
