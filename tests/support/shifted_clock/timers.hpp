// The timers of a process that runs under a shifted clock: descriptors of the kernel's own (timerfd_create(2)), so that
// poll, epoll and every toolkit wait for them as ever, kept to the kernel's contract while the clocks are shifted.
//
// Timers with an interval, and relative ones of the real-time clock, follow no shift and are left to the kernel.
#pragma once

#include <cstddef>

#include <sys/timerfd.h>
#include <sys/types.h>

namespace shifted_clock {

/// Each as the function of its name in the C library.
int createTimer(int clock, int flags);
int setTimer(int descriptor, int flags, const itimerspec* value, itimerspec* before);
ssize_t readTimer(int descriptor, void* buffer, std::size_t size);

/// Whether the descriptor is such a timer.
bool isTimer(int descriptor);
/// The descriptor is about to be closed.
void forgetTimer(int descriptor);

}  // namespace shifted_clock
