// The C library's functions as a program calls them, and as the shifted clock's library gives them to programs under
// it: the library is loaded into the test beside the former, so that one test can hold both to the same contract.
#pragma once

#include <cerrno>
#include <cstdint>
#include <cstdlib>
#include <stdexcept>
#include <string>

#include <absl/time/time.h>
#include <dlfcn.h>
#include <poll.h>
#include <sys/inotify.h>
#include <sys/time.h>
#include <sys/timerfd.h>
#include <unistd.h>

#include "support/shifted_clock/shifted_clock.hpp"

namespace shifted_clock {

struct Functions {
  decltype(&::clock_gettime) clockGettime = ::clock_gettime;
  decltype(&::gettimeofday) gettimeofday = ::gettimeofday;
  decltype(&::time) time = ::time;
  decltype(&::timerfd_create) timerfdCreate = ::timerfd_create;
  decltype(&::timerfd_settime) timerfdSettime = ::timerfd_settime;
  decltype(&::read) read = ::read;
  decltype(&::close) close = ::close;
  decltype(&::readlink) readlink = ::readlink;
  decltype(&::inotify_add_watch) inotifyAddWatch = ::inotify_add_watch;
};

/// The clock that the library follows in this test program, for a library has one folder for good. Far from today.
inline support::ShiftedClock& testsClock() {
  static support::ShiftedClock clock(absl::FromUnixSeconds(1'000'000'000), "Europe/Warsaw");
  return clock;
}

inline const Functions& kernelsFunctions() {
  static const Functions functions;
  return functions;
}

inline const Functions& librarysFunctions() {
  static const Functions functions = [] {
    for (const auto& [name, value] : testsClock().environment()) {
      if (name != "LD_PRELOAD") setenv(name.c_str(), value.c_str(), 1);
    }
    void* const library = dlopen(VAMBA_SHIFTED_CLOCK_LIBRARY, RTLD_NOW | RTLD_LOCAL);
    if (library == nullptr) throw std::runtime_error(dlerror());
    const auto find = [library](auto& function, const char* name) {
      function = reinterpret_cast<std::remove_reference_t<decltype(function)>>(dlsym(library, name));
      if (function == nullptr) throw std::runtime_error(dlerror());
    };
    Functions found;
    find(found.clockGettime, "clock_gettime");
    find(found.gettimeofday, "gettimeofday");
    find(found.time, "time");
    find(found.timerfdCreate, "timerfd_create");
    find(found.timerfdSettime, "timerfd_settime");
    find(found.read, "read");
    find(found.close, "close");
    find(found.readlink, "readlink");
    find(found.inotifyAddWatch, "inotify_add_watch");
    return found;
  }();
  return functions;
}

/// A timer by these functions.
class Timer {
 public:
  Timer(const Functions& functions, clockid_t clock, int flags = TFD_NONBLOCK)
      : functions_(functions), descriptor_(functions.timerfdCreate(clock, flags | TFD_CLOEXEC)) {}
  ~Timer() { functions_.close(descriptor_); }
  Timer(const Timer&) = delete;
  Timer& operator=(const Timer&) = delete;

  int descriptor() const { return descriptor_; }

  /// 0, or errno.
  int arm(int flags, timespec value, timespec interval = {}) {
    const itimerspec timer{.it_interval = interval, .it_value = value};
    return functions_.timerfdSettime(descriptor_, flags, &timer, nullptr) == 0 ? 0 : errno;
  }
  int armAt(absl::Time instant, int flags = 0) { return arm(TFD_TIMER_ABSTIME | flags, absl::ToTimespec(instant)); }
  int armIn(absl::Duration pause) { return arm(0, absl::ToTimespec(pause)); }

  bool readable(absl::Duration patience = absl::ZeroDuration()) const {
    pollfd polled{.fd = descriptor_, .events = POLLIN, .revents = 0};
    return poll(&polled, 1, static_cast<int>(absl::ToInt64Milliseconds(patience))) == 1;
  }
  /// How often it was due, "EAGAIN", "ECANCELED"...
  std::string read() const {
    std::uint64_t count = 0;
    if (functions_.read(descriptor_, &count, sizeof count) == sizeof count) return std::to_string(count);
    return strerrorname_np(errno);
  }
  /// The same when it has become readable.
  std::string readWhenReadable() const { return readable(absl::Seconds(30)) ? read() : "nothing for 30 s"; }

 private:
  const Functions& functions_;
  int descriptor_;
};

inline absl::Time nowBy(const Functions& functions, clockid_t clock = CLOCK_REALTIME) {
  timespec time{};
  functions.clockGettime(clock, &time);
  return absl::TimeFromTimespec(time);
}

}  // namespace shifted_clock
