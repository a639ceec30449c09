// The system calls behind the functions that the library puts in their places. Called by number: nothing to look up, so
// they work before anything is initialised and between fork and exec.
#pragma once

#include <cstddef>
#include <cstdint>
#include <ctime>

#include <sys/syscall.h>
#include <sys/timerfd.h>
#include <unistd.h>

namespace shifted_clock::kernel {

inline constexpr std::int64_t second = 1'000'000'000;

inline std::int64_t nanoseconds(timespec time) { return time.tv_sec * second + time.tv_nsec; }
inline timespec fromNanoseconds(std::int64_t time) {
  timespec result{.tv_sec = time / second, .tv_nsec = time % second};
  if (result.tv_nsec < 0) {
    result.tv_nsec += second;
    --result.tv_sec;
  }
  return result;
}

inline int clockGettime(clockid_t clock, timespec* time) {
  return static_cast<int>(::syscall(SYS_clock_gettime, clock, time));
}
inline int timerfdCreate(int clock, int flags) { return static_cast<int>(::syscall(SYS_timerfd_create, clock, flags)); }
inline int timerfdSettime(int descriptor, int flags, const itimerspec* value, itimerspec* before) {
  return static_cast<int>(::syscall(SYS_timerfd_settime, descriptor, flags, value, before));
}
inline ssize_t read(int descriptor, void* buffer, std::size_t size) {
  return ::syscall(SYS_read, descriptor, buffer, size);
}
inline int close(int descriptor) { return static_cast<int>(::syscall(SYS_close, descriptor)); }

}  // namespace shifted_clock::kernel
