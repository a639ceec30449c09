// The clock of a feed, and what wakes it. The feed gets it through an interface, so that a test can set the time.
#pragma once

#include <optional>
#include <vector>

#include <absl/time/time.h>

#include "host/schedule/reload_schedule.hpp"
#include "host/schedule/wake_ups.hpp"
#include "host/schedule/zone_changes.hpp"

namespace host {

class Timekeeper {
 public:
  /// Why the feed was woken; several reasons may come together.
  struct Wake {
    bool reloadDue = false;
    bool redrawDue = false;
    bool clockSet = false;  ///< the clock was set, or the machine slept; both instants are to be set again
    bool zoneChanged = false;
  };

  Timekeeper() = default;
  Timekeeper(const Timekeeper&) = delete;
  Timekeeper& operator=(const Timekeeper&) = delete;
  virtual ~Timekeeper() = default;

  virtual absl::Time now() const = 0;
  /// The start of tomorrow in the device's zone. A zone's rule may be such that this is not after `now`.
  virtual std::optional<absl::Time> nextMidnight() const = 0;

  /// Waits for one reload and one redraw at a time; none: for no such thing.
  virtual void setReload(std::optional<Wait> wait) = 0;
  virtual void setRedraw(std::optional<absl::Time> instant) = 0;

  /// What is left of the pause before the reload; zero where none is waited for.
  virtual absl::Duration pauseLeft() const = 0;

  /// Readable, for poll(2), once there is something to take; -1 may be among them.
  virtual std::vector<int> descriptors() const = 0;
  virtual Wake take() = 0;
};

/// The machine's own clock, timers and zone.
class SystemTimekeeper final : public Timekeeper {
 public:
  absl::Time now() const override;
  std::optional<absl::Time> nextMidnight() const override;
  void setReload(std::optional<Wait> wait) override;
  void setRedraw(std::optional<absl::Time> instant) override;
  absl::Duration pauseLeft() const override { return pause_.left(); }
  std::vector<int> descriptors() const override;
  Wake take() override;

  /// Whether the system gave all the timers; without them nothing would ever wake.
  bool works() const;

 private:
  RealTimeTimer date_;
  PauseTimer pause_;
  RealTimeTimer redraw_;
  ZoneChanges zone_;
};

}  // namespace host
