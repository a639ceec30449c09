// What a waiting host wakes for: instants of the real-time clock, pauses, changes of that clock, and signals. All of it
// is told by descriptors in one poll(2); there is no polling timer.
#pragma once

#include <csignal>
#include <initializer_list>

#include <absl/time/time.h>

#include "base/descriptors/file_descriptor.hpp"

namespace host {

/// Wakes at an instant of the real-time clock. The kernel tells when that clock is set, and a sleeping machine's timer
/// is due as soon as it wakes (timerfd_create(2), TFD_TIMER_CANCEL_ON_SET).
class RealTimeTimer {
 public:
  enum class Event { none, due, clockSet };

  RealTimeTimer();
  int descriptor() const { return descriptor_.get(); }
  /// An instant that has passed is due at once. Where the clock was set since the timer was set before and nobody took
  /// that, it comes first: whoever asks for this instant may have reckoned by the clock as it was.
  void set(absl::Time instant);
  void clear();
  /// What made the descriptor readable. After `clockSet` the timer is to be set anew.
  Event take();

 private:
  bool arm(absl::Time instant);

  base::FileDescriptor descriptor_;
  bool clockSet_ = false;  ///< the kernel told so when the timer was set, and it was not taken yet
};

/// Wakes after a pause, whatever the clocks are set to; time asleep counts.
class PauseTimer {
 public:
  PauseTimer();
  int descriptor() const { return descriptor_.get(); }
  void set(absl::Duration pause);
  void clear();
  /// Whether the pause has passed.
  bool take();

 private:
  base::FileDescriptor descriptor_;
};

/// Signals as a descriptor: blocked from their first use to the end of the scope.
class SignalDescriptor {
 public:
  explicit SignalDescriptor(std::initializer_list<int> signals);
  ~SignalDescriptor();
  SignalDescriptor(const SignalDescriptor&) = delete;
  SignalDescriptor& operator=(const SignalDescriptor&) = delete;

  int descriptor() const { return descriptor_.get(); }
  /// A signal that came, or 0.
  int take();

 private:
  sigset_t before_{};
  base::FileDescriptor descriptor_;
};

/// Waits until one of the descriptors is readable.
void waitForAny(std::initializer_list<int> descriptors);

}  // namespace host
