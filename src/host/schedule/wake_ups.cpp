#include "host/schedule/wake_ups.hpp"

#include <algorithm>
#include <cerrno>
#include <cstdint>
#include <limits>
#include <utility>
#include <vector>

#include <poll.h>
#include <sys/epoll.h>
#include <sys/signalfd.h>
#include <sys/timerfd.h>
#include <unistd.h>

namespace host {
namespace {

/// A timer of all zeros would be off, and the kernel refuses one before 1970 (half a second before it is -1 s and
/// 500,000,000 ns): what is due at once is due after a nanosecond.
itimerspec once(timespec value) {
  itimerspec timer{};
  timer.it_value = value;
  if (value.tv_sec < 0 || (value.tv_sec == 0 && value.tv_nsec == 0)) timer.it_value = {.tv_sec = 0, .tv_nsec = 1};
  return timer;
}

/// The kernel refuses seconds that overflow its nanoseconds: 2^63 ns is some 292 years.
timespec within292Years(timespec value) {
  constexpr auto most = static_cast<time_t>(std::numeric_limits<std::int64_t>::max() / 1'000'000'000);
  value.tv_sec = std::min(value.tv_sec, most - 1);
  return value;
}

}  // namespace

RealTimeTimer::RealTimeTimer() : descriptor_(timerfd_create(CLOCK_REALTIME, TFD_CLOEXEC | TFD_NONBLOCK)) {}

void RealTimeTimer::set(absl::Time instant) {
  clockSet_ = !arm(instant) || clockSet_;
  if (clockSet_) arm(absl::InfinitePast());
}

/// False where the clock was set meanwhile. The kernel arms the timer all the same, and does not report it again.
bool RealTimeTimer::arm(absl::Time instant) {
  const itimerspec timer = once(within292Years(absl::ToTimespec(instant)));
  constexpr int flags = TFD_TIMER_ABSTIME | TFD_TIMER_CANCEL_ON_SET;
  return timerfd_settime(descriptor_.get(), flags, &timer, nullptr) == 0 || errno != ECANCELED;
}

void RealTimeTimer::clear() {
  const itimerspec off{};
  timerfd_settime(descriptor_.get(), 0, &off, nullptr);
  clockSet_ = false;
}

RealTimeTimer::Event RealTimeTimer::take() {
  std::uint64_t count = 0;
  const bool due = read(descriptor_.get(), &count, sizeof count) == sizeof count;
  if (!due && errno != ECANCELED) return Event::none;
  return std::exchange(clockSet_, false) || !due ? Event::clockSet : Event::due;
}

PauseTimer::PauseTimer() : descriptor_(timerfd_create(CLOCK_BOOTTIME, TFD_CLOEXEC | TFD_NONBLOCK)) {}

void PauseTimer::set(absl::Duration pause) {
  const itimerspec timer = once(within292Years(absl::ToTimespec(pause)));
  timerfd_settime(descriptor_.get(), 0, &timer, nullptr);
}

void PauseTimer::clear() {
  const itimerspec off{};
  timerfd_settime(descriptor_.get(), 0, &off, nullptr);
}

absl::Duration PauseTimer::left() const {
  itimerspec timer{};
  if (timerfd_gettime(descriptor_.get(), &timer) != 0) return absl::ZeroDuration();
  return absl::DurationFromTimespec(timer.it_value);
}

bool PauseTimer::take() {
  std::uint64_t count = 0;
  return read(descriptor_.get(), &count, sizeof count) == sizeof count;
}

SignalDescriptor::SignalDescriptor(std::initializer_list<int> signals) {
  sigset_t set;
  sigemptyset(&set);
  for (const int signal : signals) sigaddset(&set, signal);
  pthread_sigmask(SIG_BLOCK, &set, &before_);
  descriptor_.reset(signalfd(-1, &set, SFD_CLOEXEC | SFD_NONBLOCK));
}

SignalDescriptor::~SignalDescriptor() { pthread_sigmask(SIG_SETMASK, &before_, nullptr); }

int SignalDescriptor::take() {
  signalfd_siginfo info{};
  if (read(descriptor_.get(), &info, sizeof info) != sizeof info) return 0;
  return static_cast<int>(info.ssi_signo);
}

DescriptorSet::DescriptorSet() : descriptor_(epoll_create1(EPOLL_CLOEXEC)) {}

void DescriptorSet::add(int descriptor) {
  epoll_event event{.events = EPOLLIN, .data = {.fd = descriptor}};
  epoll_ctl(descriptor_.get(), EPOLL_CTL_ADD, descriptor, &event);
}

void DescriptorSet::addForItsEnd(int descriptor) {
  // EPOLLERR and EPOLLHUP are reported always.
  epoll_event event{.events = 0, .data = {.fd = descriptor}};
  epoll_ctl(descriptor_.get(), EPOLL_CTL_ADD, descriptor, &event);
}

void waitForAny(std::span<const int> descriptors) {
  std::vector<pollfd> polled;
  for (const int descriptor : descriptors) polled.push_back({.fd = descriptor, .events = POLLIN, .revents = 0});
  while (poll(polled.data(), polled.size(), -1) < 0 && errno == EINTR) {
  }
}

}  // namespace host
