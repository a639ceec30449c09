#include "host/schedule/reload_schedule.hpp"

namespace host {

Wait ReloadSchedule::loaded(absl::Time now, absl::Time reload) {
  afterFailures_.reset();
  asked_ = reload - now;
  // A date a moment away, given time and again, would be a storm as well.
  if (asked_ < shortestPause) {
    wait_ = {.pause = afterPastDates_.next()};
  } else {
    afterPastDates_.reset();
    wait_ = {.until = reload};
  }
  return wait_;
}

Wait ReloadSchedule::failed() {
  wait_ = {.pause = afterFailures_.next()};
  return wait_;
}

Wait ReloadSchedule::clockChanged(absl::Time now, absl::Duration pauseLeft) {
  if (wait_.pause) wait_.pause = pauseLeft;
  if (wait_.until && *wait_.until - now > asked_) wait_ = {.pause = absl::ZeroDuration()};
  return wait_;
}

}  // namespace host
