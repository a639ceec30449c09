// When to ask the extension again. A function of what happened and of the times handed in; timekeeper.hpp does the
// waiting.
#pragma once

#include <optional>

#include <absl/time/time.h>

#include "host/schedule/growing_pause.hpp"

namespace host {

/// What to wait for: an instant of the real-time clock, or a pause that passes whatever the clocks are set to.
struct Wait {
  std::optional<absl::Time> until;
  std::optional<absl::Duration> pause;
  bool operator==(const Wait&) const = default;
};

/// The least time between two reloads and between two redraws that nobody asked for.
inline constexpr absl::Duration shortestPause = absl::Seconds(1);

/// The contract: ask at or after the reload date. Dates that have passed, and failures of the extension, are followed
/// with pauses that grow from one second to five minutes.
class ReloadSchedule {
 public:
  /// A timeline came at `now`, to be asked for again at `reload`.
  Wait loaded(absl::Time now, absl::Time reload);

  /// The extension died, hung or talked nonsense.
  Wait failed();

  /// There is a reason to ask before the date.
  Wait soon(absl::Duration pause) { return wait_ = {.pause = pause}; }

  /// What is left to wait for at `now`, after the machine's clock was set or the machine woke. A pause goes on;
  /// `pauseLeft` is what is left of it. Where the clock was set back, a date that is now further away than it ever was
  /// is not waited for: the pause that the extension asked for must not grow by the error of a clock.
  Wait clockChanged(absl::Time now, absl::Duration pauseLeft);

 private:
  static constexpr absl::Duration longestPause = absl::Minutes(5);

  GrowingPause afterFailures_{shortestPause, longestPause};
  GrowingPause afterPastDates_{shortestPause, longestPause};
  Wait wait_{.pause = absl::ZeroDuration()};
  absl::Duration asked_;  ///< how far away the date was when it was given
};

}  // namespace host
