#include "platform/widget_kit/extension_process.hpp"

#include <csignal>
#include <cstdlib>

#include <malloc.h>
#include <sys/prctl.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/time.h>
#include <unistd.h>

namespace platform {

void keepProcessPrivate() {
  prctl(PR_SET_DUMPABLE, 0);
  const rlimit noCore{.rlim_cur = 0, .rlim_max = 0};
  setrlimit(RLIMIT_CORE, &noCore);
  unsetenv("SSLKEYLOGFILE");
  struct stat status{};
  const char* const configuration = std::getenv("OPENSSL_CONF");
  if (configuration != nullptr && stat(configuration, &status) == 0 && !S_ISREG(status.st_mode)) {
    unsetenv("OPENSSL_CONF");
  }
}

void returnLargeBlocks() {
  constexpr int largeBlock = 128 << 10;  // what the C library begins with
  mallopt(M_MMAP_THRESHOLD, largeBlock);
}

void endProcessAfter(std::chrono::milliseconds time) {
  std::signal(SIGALRM, [](int) { _exit(EXIT_SUCCESS); });
  sigset_t alarm;
  sigemptyset(&alarm);
  sigaddset(&alarm, SIGALRM);
  pthread_sigmask(SIG_UNBLOCK, &alarm, nullptr);
  const auto seconds = std::chrono::duration_cast<std::chrono::seconds>(time);
  const std::chrono::microseconds rest = time - seconds;
  const itimerval once{.it_interval = {}, .it_value = {.tv_sec = seconds.count(), .tv_usec = rest.count()}};
  setitimer(ITIMER_REAL, &once, nullptr);
}

}  // namespace platform
