// What a waiting host wakes for: instants of the real-time clock, pauses, changes of that clock, and signals. Each is a
// descriptor for one poll(2); nothing is polled by a timer.
#pragma once

#include <csignal>
#include <initializer_list>
#include <span>

#include <absl/time/time.h>

#include "base/descriptors/file_descriptor.hpp"

namespace host {

/// Wakes at an instant of the real-time clock. The kernel reports when that clock is set, and the timer of a machine
/// that slept is due as soon as it wakes (timerfd_create(2), TFD_TIMER_CANCEL_ON_SET).
class RealTimeTimer {
 public:
  enum class Event { none, due, clockSet };

  RealTimeTimer();
  int descriptor() const { return descriptor_.get(); }
  /// An instant that has passed is due at once. Where the clock was set since the last call and that was not taken yet,
  /// `clockSet` comes first: the caller may have computed this instant by the clock as it was.
  void set(absl::Time instant);
  void clear();
  /// What made the descriptor readable. After `clockSet` set the timer again.
  Event take();

 private:
  bool arm(absl::Time instant);

  base::FileDescriptor descriptor_;
  bool clockSet_ = false;  ///< the kernel reported it when the timer was set, and it was not taken yet
};

/// Wakes after a pause, whatever the clocks are set to; time asleep counts.
class PauseTimer {
 public:
  PauseTimer();
  int descriptor() const { return descriptor_.get(); }
  void set(absl::Duration pause);
  void clear();
  /// What is left of the pause; zero where it has passed, and where none is set.
  absl::Duration left() const;
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
  bool works() const { return descriptor_.isOpen(); }
  /// A signal that came, or 0.
  int take();

 private:
  sigset_t before_{};
  base::FileDescriptor descriptor_;
};

/// Several descriptors behind one, which is readable while one of them has something to report (epoll(7)).
class DescriptorSet {
 public:
  DescriptorSet();
  int descriptor() const { return descriptor_.get(); }
  bool works() const { return descriptor_.isOpen(); }

  /// Reports while `descriptor` is readable.
  void add(int descriptor);
  /// Reports once the other end of `descriptor` is closed. A file has no other end and reports nothing.
  void addForItsEnd(int descriptor);

 private:
  base::FileDescriptor descriptor_;
};

/// Waits until one of the descriptors is readable.
void waitForAny(std::span<const int> descriptors);
inline void waitForAny(std::initializer_list<int> descriptors) {
  waitForAny(std::span(descriptors.begin(), descriptors.size()));
}

}  // namespace host
