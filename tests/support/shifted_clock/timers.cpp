#include "support/shifted_clock/timers.hpp"

#include <array>
#include <cerrno>
#include <climits>
#include <csignal>
#include <mutex>
#include <type_traits>
#include <utility>

#include <linux/futex.h>
#include <poll.h>
#include <pthread.h>

#include "support/shifted_clock/clocks.hpp"
#include "support/shifted_clock/kernel.hpp"

namespace shifted_clock {
namespace {

struct Timer {
  clockid_t clock = CLOCK_REALTIME;
  std::uint32_t sets = 0;    ///< the sets of the clock that it knows of
  bool armed = false;        ///< for `due`, by the shifted clock in nanoseconds
  std::int64_t due = 0;      ///< meaningless unless armed
  bool cancelOnSet = false;  ///< TFD_TIMER_CANCEL_ON_SET, which holds after the timer was due too
  bool cancelled = false;    ///< the clock was set, and nobody was told so far
};

constexpr itimerspec off{};
/// All zeros would be off.
constexpr itimerspec atOnce{.it_interval = {}, .it_value = {.tv_sec = 0, .tv_nsec = 1}};

bool isTime(timespec time) { return time.tv_sec >= 0 && time.tv_nsec >= 0 && time.tv_nsec < kernel::second; }

/// All of a process. Descriptors are small numbers; those beyond the table are left to the kernel. Nothing destroys
/// them: the watching thread runs to the very end of the process.
class Timers {
 public:
  static Timers& all() {
    static constinit Timers timers;
    static_assert(std::is_trivially_destructible_v<Timers>);
    return timers;
  }

  bool knows(int descriptor) const {
    return descriptor >= 0 && static_cast<std::size_t>(descriptor) < known_.size() &&
           known_[static_cast<std::size_t>(descriptor)].load(std::memory_order_relaxed);
  }

  void add(int descriptor, clockid_t clock) {
    if (descriptor < 0 || static_cast<std::size_t>(descriptor) >= known_.size()) return;
    const std::scoped_lock lock(mutex_);
    watch();
    timer(descriptor) = {.clock = clock, .sets = setsNow()};
    known_[static_cast<std::size_t>(descriptor)] = true;
  }

  void remove(int descriptor) {
    const std::scoped_lock lock(mutex_);
    known_[static_cast<std::size_t>(descriptor)] = false;
  }

  int set(int descriptor, int flags, const itimerspec& value, itimerspec* before) {
    const std::scoped_lock lock(mutex_);
    watch();  // a forked process has nobody yet who does
    follow(descriptor);
    Timer& timer = this->timer(descriptor);
    const bool absolute = (flags & TFD_TIMER_ABSTIME) != 0;
    const bool shifts = absolute || timer.clock == CLOCK_BOOTTIME;
    const bool once = kernel::nanoseconds(value.it_interval) == 0;
    const std::int64_t time = kernel::nanoseconds(value.it_value);

    itimerspec actual = value;
    // Sets of the machine's own clock are none of the shifted one.
    int actualFlags = flags & ~TFD_TIMER_CANCEL_ON_SET;
    Timer wanted{.clock = timer.clock, .sets = timer.sets, .armed = time != 0 && once && shifts};
    if (wanted.armed) {
      wanted.due = absolute ? time : now(timer.clock) + time;
      actual = by(wanted);
      actualFlags |= TFD_TIMER_ABSTIME;
    }
    if (const int failed = kernel::timerfdSettime(descriptor, actualFlags, &actual, before); failed != 0) return failed;
    wanted.cancelOnSet = timer.clock == CLOCK_REALTIME && absolute && (flags & TFD_TIMER_CANCEL_ON_SET) != 0;
    // The kernel arms it, and tells all the same what nobody was told before.
    const bool tells = timer.cancelled && wanted.cancelOnSet && time != 0;
    wanted.cancelled = timer.cancelled && wanted.cancelOnSet && !tells;
    timer = wanted;
    if (!tells) return 0;
    errno = ECANCELED;
    return -1;
  }

  /// Whether the timer was cancelled, which is told once.
  bool takeCancelled(int descriptor) {
    const std::scoped_lock lock(mutex_);
    follow(descriptor);
    Timer& timer = this->timer(descriptor);
    if (!timer.cancelled) return false;
    timer.cancelled = false;
    // What it was armed for stays ahead.
    const itimerspec actual = timer.armed ? by(timer) : off;
    kernel::timerfdSettime(descriptor, timer.armed ? TFD_TIMER_ABSTIME : 0, &actual, nullptr);
    return true;
  }

  void wasDue(int descriptor) {
    const std::scoped_lock lock(mutex_);
    timer(descriptor).armed = false;
  }

 private:
  static std::uint32_t setsNow() { return page()->sets.load(std::memory_order_acquire); }

  /// The instant by the machine's own clock. One that has passed there is due at once.
  static itimerspec by(const Timer& timer) {
    std::int64_t machine = 0;
    if (__builtin_sub_overflow(timer.due, shiftOf(timer.clock), &machine)) machine = INT64_MAX;
    if (machine <= 0) return atOnce;
    return {.it_interval = {}, .it_value = kernel::fromNanoseconds(machine)};
  }

  static bool readable(int descriptor, int milliseconds = 0) {
    pollfd polled{.fd = descriptor, .events = POLLIN, .revents = 0};
    return ::poll(&polled, 1, milliseconds) == 1;
  }

  Timer& timer(int descriptor) { return timers_[static_cast<std::size_t>(descriptor)]; }

  /// Makes good what the timer missed since a clock was set.
  void follow(int descriptor) {
    Timer& timer = this->timer(descriptor);
    const std::uint32_t sets = setsNow();
    if (timer.sets == sets) return;
    timer.sets = sets;
    // One that is due stays so whatever its clock says now, until somebody reads it.
    const bool wasDue = !timer.cancelled && readable(descriptor);
    if (timer.armed && (wasDue || (timer.cancelOnSet && timer.due <= now(timer.clock)))) timer.armed = false;
    if (timer.cancelOnSet) {
      timer.cancelled = true;
      kernel::timerfdSettime(descriptor, 0, &atOnce, nullptr);
    } else if (timer.armed) {
      const itimerspec actual = by(timer);
      kernel::timerfdSettime(descriptor, TFD_TIMER_ABSTIME, &actual, nullptr);
      // The kernel takes a moment for one that is due now, and in that moment the process may see another that is.
      constexpr int aMoment = 1000;
      if (timer.due <= now(timer.clock)) readable(descriptor, aMoment);
    }
  }

  void followAll() {
    const std::scoped_lock lock(mutex_);
    for (std::size_t i = 0; i < known_.size(); ++i) {
      if (known_[i]) follow(static_cast<int>(i));
    }
  }

  /// Starts the thread that sleeps until a clock is set; for as long as the process lives. No signal finds it.
  void watch() {
    if (watched_) return;
    watched_ = true;
    if (!std::exchange(forksFollowed_, true)) followForks();
    sigset_t every;
    sigset_t before;
    ::sigfillset(&every);
    ::pthread_sigmask(SIG_SETMASK, &every, &before);
    pthread_t thread{};
    const auto body = +[](void*) -> void* {
      for (std::uint32_t seen = setsNow();; seen = setsNow()) {
        all().followAll();
        ::syscall(SYS_futex, &page()->sets, FUTEX_WAIT, seen, nullptr, nullptr, 0);
      }
    };
    if (::pthread_create(&thread, nullptr, body, nullptr) == 0) ::pthread_detach(thread);
    ::pthread_sigmask(SIG_SETMASK, &before, nullptr);
  }

  static void followForks() {
    ::pthread_atfork([] { all().mutex_.lock(); }, [] { all().mutex_.unlock(); },
                     [] {
                       all().watched_ = false;
                       all().mutex_.unlock();
                     });
  }

  std::mutex mutex_;
  bool watched_ = false;
  bool forksFollowed_ = false;
  std::array<std::atomic<bool>, 1024> known_{};
  std::array<Timer, 1024> timers_{};
};

}  // namespace

int createTimer(int clock, int flags) {
  const int descriptor = kernel::timerfdCreate(clock, flags);
  if (page() != nullptr && (clock == CLOCK_REALTIME || clock == CLOCK_BOOTTIME)) Timers::all().add(descriptor, clock);
  return descriptor;
}

bool isTimer(int descriptor) { return page() != nullptr && Timers::all().knows(descriptor); }

void forgetTimer(int descriptor) { Timers::all().remove(descriptor); }

int setTimer(int descriptor, int flags, const itimerspec* value, itimerspec* before) {
  if (value == nullptr || !isTime(value->it_value) || !isTime(value->it_interval)) {
    return kernel::timerfdSettime(descriptor, flags, value, before);  // refuses it
  }
  return Timers::all().set(descriptor, flags, *value, before);
}

ssize_t readTimer(int descriptor, void* buffer, std::size_t size) {
  if (size < sizeof(std::uint64_t)) return kernel::read(descriptor, buffer, size);
  auto& timers = Timers::all();
  bool cancelled = timers.takeCancelled(descriptor);
  const ssize_t count = cancelled ? 0 : kernel::read(descriptor, buffer, size);
  // A clock was set while it waited for the timer.
  if (count > 0) cancelled = timers.takeCancelled(descriptor);
  if (cancelled) {
    errno = ECANCELED;
    return -1;
  }
  if (count > 0) timers.wasDue(descriptor);
  return count;
}

}  // namespace shifted_clock
