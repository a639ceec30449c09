// The functions of the C library that the programs call and that a shifted clock answers instead. This library comes
// before the C library, by LD_PRELOAD; without a page it changes nothing.
//
// Calls within the C library itself do not come this way: the clock of `pthread_cond_timedwait`, and the reading of
// /etc/localtime by `localtime`. The zone is therefore followed where /etc/localtime is a link that names it.
#include <array>
#include <climits>
#include <cstdio>
#include <string_view>

#include <fcntl.h>
#include <sys/inotify.h>
#include <sys/time.h>

#include "support/shifted_clock/clocks.hpp"
#include "support/shifted_clock/kernel.hpp"
#include "support/shifted_clock/timers.hpp"

namespace {

namespace kernel = shifted_clock::kernel;

constexpr std::string_view machinesFolder = "/etc";
constexpr std::string_view machinesZone = "/etc/localtime";

/// A path with the test's folder in place of the machine's.
class InTestsFolder {
 public:
  explicit InTestsFolder(const char* path) {
    std::snprintf(text_.data(), text_.size(), "%s/%s%s", shifted_clock::folder(), shifted_clock::zoneFolder,
                  path + machinesFolder.size());
  }
  const char* path() const { return text_.data(); }

 private:
  std::array<char, PATH_MAX> text_{};
};

}  // namespace

extern "C" {

int clock_gettime(clockid_t clock, timespec* time) noexcept {
  const int failed = kernel::clockGettime(clock, time);
  if (const auto shift = shifted_clock::shiftOf(clock); failed == 0 && shift != 0) {
    *time = kernel::fromNanoseconds(kernel::nanoseconds(*time) + shift);
  }
  return failed;
}

int gettimeofday(timeval* time, void* /*zone*/) noexcept {
  const timespec now = kernel::fromNanoseconds(shifted_clock::now(CLOCK_REALTIME));
  *time = {.tv_sec = now.tv_sec, .tv_usec = now.tv_nsec / 1000};
  return 0;
}

time_t time(time_t* time) noexcept {
  const time_t now = kernel::fromNanoseconds(shifted_clock::now(CLOCK_REALTIME)).tv_sec;
  if (time != nullptr) *time = now;
  return now;
}

int timerfd_create(int clock, int flags) noexcept { return shifted_clock::createTimer(clock, flags); }

int timerfd_settime(int descriptor, int flags, const itimerspec* value, itimerspec* before) noexcept {
  return shifted_clock::isTimer(descriptor) ? shifted_clock::setTimer(descriptor, flags, value, before)
                                            : kernel::timerfdSettime(descriptor, flags, value, before);
}

ssize_t read(int descriptor, void* buffer, size_t size) {
  return shifted_clock::isTimer(descriptor) ? shifted_clock::readTimer(descriptor, buffer, size)
                                            : kernel::read(descriptor, buffer, size);
}

int close(int descriptor) {
  if (shifted_clock::isTimer(descriptor)) shifted_clock::forgetTimer(descriptor);
  return kernel::close(descriptor);
}

ssize_t readlink(const char* path, char* target, size_t size) noexcept {
  if (shifted_clock::page() == nullptr || path != machinesZone) {
    return ::syscall(SYS_readlinkat, AT_FDCWD, path, target, size);
  }
  return ::syscall(SYS_readlinkat, AT_FDCWD, InTestsFolder(path).path(), target, size);
}

int inotify_add_watch(int descriptor, const char* path, uint32_t events) noexcept {
  if (shifted_clock::page() == nullptr || path != machinesFolder) {
    return static_cast<int>(::syscall(SYS_inotify_add_watch, descriptor, path, events));
  }
  return static_cast<int>(::syscall(SYS_inotify_add_watch, descriptor, InTestsFolder(path).path(), events));
}

}  // extern "C"
