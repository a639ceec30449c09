#include "host/recovery/network_changes.hpp"

#include <cstdlib>

#include <gtest/gtest.h>
#include <poll.h>
#include <sched.h>
#include <sys/wait.h>
#include <unistd.h>

#include "support/waiting.hpp"

namespace host {
namespace {

bool readable(const NetworkChanges& changes) {
  pollfd polled{.fd = changes.descriptor(), .events = POLLIN, .revents = 0};
  return poll(&polled, 1, 0) == 1;
}

bool run(const char* command) { return std::system(command) == 0; }

/// Runs in a network namespace of its own. Returns what went wrong, or 0.
int plugACableIn() {
  NetworkChanges changes;
  if (readable(changes)) return 1;
  if (!run("ip link set lo up")) return 77;
  if (!support::eventually([&] { return readable(changes); })) return 2;
  if (changes.take()) return 3;  // the loopback leads nowhere
  if (!run("ip link add vamba0 type veth peer name vamba1 && ip addr add 192.0.2.1/24 dev vamba0")) return 77;
  if (!run("ip link set vamba0 up && ip link set vamba1 up")) return 77;
  if (!support::eventually([&] { return changes.take(); })) return 4;
  return 0;
}

TEST(NetworkChanges, NoticesANetworkThatIsBackButNotTheLoopback) {
  const pid_t child = fork();
  if (child == 0) {
    if (unshare(CLONE_NEWNET) != 0 && unshare(CLONE_NEWUSER | CLONE_NEWNET) != 0) _exit(77);
    _exit(plugACableIn());
  }
  int status = 0;
  ASSERT_EQ(waitpid(child, &status, 0), child);
  ASSERT_TRUE(WIFEXITED(status));
  if (WEXITSTATUS(status) == 77) GTEST_SKIP() << "this machine grants no network namespace with a link of its own";
  EXPECT_EQ(WEXITSTATUS(status), 0);
}

}  // namespace
}  // namespace host
