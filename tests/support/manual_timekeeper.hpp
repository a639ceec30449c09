// A feed's time as a test sets it: nothing passes by itself.
#pragma once

#include <algorithm>
#include <utility>

#include "host/schedule/timekeeper.hpp"

namespace support {

class ManualTimekeeper final : public host::Timekeeper {
 public:
  explicit ManualTimekeeper(absl::Time now) : now_(now) {}

  /// Time passes; what is due meanwhile is there to take.
  void pass(absl::Duration time) {
    now_ += time;
    awake_ += time;
  }
  /// The clock is set, which no pause notices.
  void set(absl::Time now) {
    now_ = now;
    pending_.clockSet = true;
  }
  void setMidnight(std::optional<absl::Time> midnight) { midnight_ = midnight; }
  void changeZone() { pending_.zoneChanged = true; }

  const std::optional<absl::Time>& redraw() const { return redraw_; }

  absl::Time now() const override { return now_; }
  std::optional<absl::Time> nextMidnight() const override { return midnight_; }
  void setReload(std::optional<host::Wait> wait) override {
    reload_ = wait ? wait->until : std::nullopt;
    pauseEnd_ = wait && wait->pause ? std::optional(awake_ + *wait->pause) : std::nullopt;
  }
  void setRedraw(std::optional<absl::Time> instant) override { redraw_ = instant; }
  absl::Duration pauseLeft() const override {
    return pauseEnd_ ? std::max(*pauseEnd_ - awake_, absl::ZeroDuration()) : absl::ZeroDuration();
  }
  std::vector<int> descriptors() const override { return {}; }
  Wake take() override {
    Wake wake = std::exchange(pending_, {});
    wake.reloadDue = passed(reload_, now_) || passed(pauseEnd_, awake_);
    wake.redrawDue = passed(redraw_, now_);
    return wake;
  }

 private:
  template <typename Instant>
  static bool passed(std::optional<Instant>& instant, Instant now) {
    if (!instant || *instant > now) return false;
    instant.reset();
    return true;
  }

  absl::Time now_;
  absl::Duration awake_;  ///< a clock that nobody sets
  std::optional<absl::Time> midnight_;
  std::optional<absl::Time> reload_;
  std::optional<absl::Duration> pauseEnd_;
  std::optional<absl::Time> redraw_;
  Wake pending_;
};

}  // namespace support
