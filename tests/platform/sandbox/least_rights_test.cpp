// Each right is tried from within, in a process of its own that has given it up. The same attempts without the sandbox
// show that it is the sandbox that refuses them.
#include "platform/sandbox/least_rights.hpp"

#include <cerrno>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <functional>
#include <string>
#include <thread>
#include <vector>

#include <fcntl.h>
#include <gtest/gtest.h>
#include <linux/netlink.h>
#include <linux/sched.h>
#include <netdb.h>
#include <sched.h>
#include <seccomp.h>
#include <sys/mount.h>
#include <sys/prctl.h>
#include <sys/ptrace.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <sys/wait.h>
#include <unistd.h>

#include "support/temporary_folder.hpp"

namespace platform {
namespace {

using testing::ExitedWithCode;
using Right = ReachableFile::Right;

/// 0, or the errno value of the failure.
using Attempt = std::function<int()>;

int errorOf(long result) { return result < 0 ? errno : 0; }

int opening(const std::string& path, int flags) {
  const int descriptor = open(path.c_str(), flags | O_CLOEXEC, 0600);
  if (descriptor < 0) return errno;
  close(descriptor);
  return 0;
}

int opening(int family, int type, int protocol) {
  const int descriptor = socket(family, type | SOCK_CLOEXEC, protocol);
  if (descriptor < 0) return errno;
  close(descriptor);
  return 0;
}

bool kernelHasLandlock() { return syscall(SYS_landlock_create_ruleset, nullptr, 0, 1) >= 1; }

/// In the child of EXPECT_EXIT: 0 where each attempt ends as expected; the others are listed on standard error.
class Trial {
 public:
  void expect(int error, const char* what, const Attempt& attempt) {
    const int result = attempt();
    if (result == error) return;
    std::fprintf(stderr, "%s: %s\n", what, result == 0 ? "is allowed" : std::strerror(result));
    failed_ = true;
  }
  [[noreturn]] void end() const { std::_Exit(failed_ ? 1 : 0); }

 private:
  bool failed_ = false;
};

class LeastRightsTest : public testing::Test {
 protected:
  void SetUp() override {
    if (!sandboxIsBuiltIn) GTEST_SKIP() << "builds for sanitizers and coverage apply no restrictions";
    folder_.write("diary", "text");
    mkdir(folder_.path("items").c_str(), 0700);
    folder_.write("items/token", "text");
  }

  std::vector<ReachableFile> files() const {
    auto files = filesOfTheSystem();
    files.push_back({folder_.path("items"), Right::readAndRemove});
    return files;
  }

  void enter() const {
    for (const auto& missing : keepLeastRights(files())) std::fprintf(stderr, "missing: %s\n", missing.c_str());
  }

  support::TemporaryFolder folder_;
};

TEST_F(LeastRightsTest, StartsNoProgramAndNoProcess) {
  const auto tries = [&] {
    enter();
    Trial trial;
    char name[] = "/bin/true";
    char* const arguments[] = {name, nullptr};
    char* const environment[] = {nullptr};
    trial.expect(EPERM, "execve", [&] { return errorOf(execve(name, arguments, environment)); });
    trial.expect(EPERM, "execveat",
                 [&] { return errorOf(syscall(SYS_execveat, AT_FDCWD, name, arguments, environment, 0)); });
    const auto forked = [](long process) {
      if (process == 0) _exit(0);
      return errorOf(process);
    };
    trial.expect(EPERM, "fork", [&] { return forked(fork()); });
    trial.expect(EPERM, "fork system call", [&] { return forked(syscall(SYS_clone, SIGCHLD, 0, 0, 0, 0)); });
    trial.expect(ENOSYS, "clone3", [&] {
      clone_args form{};
      form.exit_signal = SIGCHLD;
      return forked(syscall(SYS_clone3, &form, sizeof form));
    });
    trial.expect(EPERM, "system", [] { return std::system("true") == 0 ? 0 : EPERM; });
    trial.end();
  };
  EXPECT_EXIT(tries(), ExitedWithCode(0), "");
}

TEST_F(LeastRightsTest, GainsNoRight) {
  const auto tries = [&] {
    enter();
    Trial trial;
    trial.expect(0, "no_new_privs", [] { return prctl(PR_GET_NO_NEW_PRIVS, 0, 0, 0, 0) == 1 ? 0 : EINVAL; });
    const uid_t another = geteuid() == 0 ? 65534 : 0;
    trial.expect(EPERM, "setuid", [&] { return errorOf(setuid(another)); });
    trial.expect(EPERM, "setresgid", [&] { return errorOf(setresgid(another, another, another)); });
    trial.expect(EPERM, "unshare", [] { return errorOf(unshare(CLONE_NEWUSER)); });
    trial.expect(EPERM, "chroot", [] { return errorOf(chroot("/")); });
    trial.expect(EPERM, "mount", [] { return errorOf(mount("none", "/mnt", "tmpfs", 0, nullptr)); });
    trial.expect(EPERM, "bpf", [] { return errorOf(syscall(SYS_bpf, 0, nullptr, 0)); });
    trial.expect(EPERM, "io_uring", [] { return errorOf(syscall(SYS_io_uring_setup, 1, nullptr)); });
    trial.expect(EPERM, "keyctl", [] { return errorOf(syscall(SYS_keyctl, 0, -3, 0)); });
    trial.expect(EPERM, "becoming dumpable", [] { return errorOf(prctl(PR_SET_DUMPABLE, 1)); });
    trial.end();
  };
  EXPECT_EXIT(tries(), ExitedWithCode(0), "");
}

TEST_F(LeastRightsTest, KeepsNoCapability) {
  const auto tries = [&] {
    FILE* const status = std::fopen("/proc/self/status", "r");
    enter();
    Trial trial;
    int sets = 0;
    char line[256];
    while (status != nullptr && std::fgets(line, sizeof line, status) != nullptr) {
      for (const char* const set : {"CapInh:", "CapPrm:", "CapEff:", "CapAmb:"}) {
        if (std::strncmp(line, set, std::strlen(set)) != 0) continue;
        ++sets;
        trial.expect(0, line, [&] { return std::strstr(line, "0000000000000000") != nullptr ? 0 : EPERM; });
      }
    }
    trial.expect(0, "sets of capabilities", [&] { return sets == 4 ? 0 : ENOENT; });
    trial.end();
  };
  EXPECT_EXIT(tries(), ExitedWithCode(0), "");
}

TEST_F(LeastRightsTest, ReachesNoOtherProcess) {
  const pid_t other = fork();
  if (other == 0) {
    while (true) pause();
  }
  const auto tries = [&] {
    enter();
    Trial trial;
    char byte = 0;
    iovec own{.iov_base = &byte, .iov_len = 1};
    trial.expect(EPERM, "ptrace", [&] { return errorOf(ptrace(PTRACE_SEIZE, other, nullptr, nullptr)); });
    trial.expect(EPERM, "memory", [&] { return errorOf(syscall(SYS_process_vm_readv, other, &own, 1, &own, 1, 0)); });
    trial.expect(EPERM, "signal", [&] { return errorOf(kill(other, SIGTERM)); });
    trial.expect(EPERM, "signal to all", [] { return errorOf(kill(-1, 0)); });
    trial.expect(0, "signal to itself", [] { return errorOf(kill(getpid(), 0)); });
    trial.end();
  };
  EXPECT_EXIT(tries(), ExitedWithCode(0), "");
  kill(other, SIGKILL);
  waitpid(other, nullptr, 0);
}

TEST_F(LeastRightsTest, ChangesNoFile) {
  const auto tries = [&] {
    const int before = open(folder_.path("items").c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    enter();
    Trial trial;
    const std::string item = folder_.path("items/token");
    for (const int mode : {O_WRONLY, O_RDWR, O_WRONLY | O_APPEND, O_RDONLY | O_TRUNC, O_RDONLY | O_CREAT}) {
      trial.expect(EACCES, "opening for writing", [&] { return opening(item, mode); });
      trial.expect(EACCES, "opening a new file", [&] { return opening(folder_.path("items/new"), mode | O_CREAT); });
    }
    trial.expect(EACCES, "opening below an open folder", [&] { return errorOf(openat(before, "token", O_RDWR)); });
    trial.expect(EACCES, "a file without a name", [&] { return opening(folder_.path("items"), O_TMPFILE | O_RDWR); });
    trial.expect(EPERM, "memfd_create", [] { return errorOf(syscall(SYS_memfd_create, "x", 0)); });
    trial.expect(EPERM, "truncate", [&] { return errorOf(truncate(item.c_str(), 0)); });
    trial.expect(EPERM, "mkdir", [&] { return errorOf(mkdir(folder_.path("items/new").c_str(), 0700)); });
    trial.expect(EPERM, "rename", [&] { return errorOf(rename(item.c_str(), folder_.path("items/t").c_str())); });
    trial.expect(EPERM, "link", [&] { return errorOf(link(item.c_str(), folder_.path("items/t").c_str())); });
    trial.expect(EPERM, "chmod", [&] { return errorOf(chmod(item.c_str(), 0777)); });
    trial.end();
  };
  EXPECT_EXIT(tries(), ExitedWithCode(0), "");
}

TEST_F(LeastRightsTest, ReadsOnlyWhatItNamed) {
  if (!kernelHasLandlock()) GTEST_SKIP() << "this kernel has no Landlock";
  ASSERT_EQ(opening(folder_.path("diary"), O_RDONLY), 0);
  const auto tries = [&] {
    enter();
    Trial trial;
    trial.expect(EACCES, "a file elsewhere", [&] { return opening(folder_.path("diary"), O_RDONLY); });
    trial.expect(EACCES, "a folder elsewhere", [&] { return opening(folder_.path(""), O_RDONLY | O_DIRECTORY); });
    trial.expect(EACCES, "a process", [] { return opening("/proc/self/environ", O_RDONLY); });
    trial.expect(EACCES, "removing elsewhere", [&] { return errorOf(unlink(folder_.path("diary").c_str())); });
    trial.expect(0, "certificates and names", [] { return opening("/etc/ssl", O_RDONLY | O_DIRECTORY); });
    trial.expect(0, "zones", [] { return opening("/usr/share", O_RDONLY | O_DIRECTORY); });
    trial.expect(0, "an item", [&] { return opening(folder_.path("items/token"), O_RDONLY); });
    trial.expect(0, "removing an item", [&] { return errorOf(unlink(folder_.path("items/token").c_str())); });
    trial.end();
  };
  EXPECT_EXIT(tries(), ExitedWithCode(0), "");
}

TEST_F(LeastRightsTest, HasNoOtherSocketsThanALoadNeeds) {
  const auto tries = [&] {
    enter();
    Trial trial;
    trial.expect(0, "TCP", [] { return opening(AF_INET, SOCK_STREAM, 0); });
    trial.expect(0, "UDP", [] { return opening(AF_INET, SOCK_DGRAM, 0); });
    trial.expect(0, "Unix", [] { return opening(AF_UNIX, SOCK_STREAM, 0); });
    trial.expect(0, "addresses of the machine", [] { return opening(AF_NETLINK, SOCK_RAW, NETLINK_ROUTE); });
    trial.expect(EPROTONOSUPPORT, "reports of devices",
                 [] { return opening(AF_NETLINK, SOCK_RAW, NETLINK_KOBJECT_UEVENT); });
    trial.expect(EAFNOSUPPORT, "packets", [] { return opening(AF_PACKET, SOCK_RAW, 0); });
    trial.expect(EAFNOSUPPORT, "vsock", [] { return opening(AF_VSOCK, SOCK_STREAM, 0); });
    trial.expect(EAFNOSUPPORT, "Bluetooth", [] { return opening(AF_BLUETOOTH, SOCK_RAW, 0); });
    trial.expect(EPERM, "listening", [] {
      const int own = socket(AF_INET, SOCK_STREAM, 0);
      return errorOf(listen(own, 1));
    });
    trial.end();
  };
  EXPECT_EXIT(tries(), ExitedWithCode(0), "");
}

TEST_F(LeastRightsTest, StillStartsThreadsLooksUpNamesAndWritesToItsPipe) {
  const auto tries = [&] {
    int ends[2];
    if (pipe(ends) != 0) std::_Exit(2);
    enter();
    Trial trial;
    trial.expect(0, "look-up of a name in a thread", [] {
      int result = EAI_FAIL;
      std::thread([&result] {
        addrinfo* found = nullptr;
        result = getaddrinfo("localhost", "80", nullptr, &found);
        if (result == 0) freeaddrinfo(found);
      }).join();
      return result;
    });
    trial.expect(0, "writing to a pipe", [&] { return write(ends[1], "x", 1) == 1 ? 0 : errno; });
    trial.end();
  };
  EXPECT_EXIT(tries(), ExitedWithCode(0), "");
}

TEST_F(LeastRightsTest, AreAppliedAsFarAsTheKernelGoesAndTheRestIsTold) {
  const auto tries = [&] {
    // A kernel without Landlock.
    prctl(PR_SET_NO_NEW_PRIVS, 1, 0, 0, 0);
    const scmp_filter_ctx old = seccomp_init(SCMP_ACT_ALLOW);
    seccomp_rule_add(old, SCMP_ACT_ERRNO(ENOSYS), SCMP_SYS(landlock_create_ruleset), 0);
    seccomp_load(old);
    const auto missing = keepLeastRights(files());
    Trial trial;
    trial.expect(0, "one line",
                 [&] { return missing.size() == 1 && missing[0].starts_with("Landlock: ") ? 0 : EINVAL; });
    trial.expect(EPERM, "fork", [] { return errorOf(fork()); });
    trial.expect(EACCES, "writing", [&] { return opening(folder_.path("diary"), O_WRONLY); });
    trial.end();
  };
  EXPECT_EXIT(tries(), ExitedWithCode(0), "");
}

// An output that leads to a file has to keep growing.
TEST_F(LeastRightsTest, LetsNoFileGrowButItsOwnOutput) {
  const auto growsOf = [&](bool outputIsFile) {
    const int file = open(folder_.path("output").c_str(), O_WRONLY | O_CREAT | O_CLOEXEC, 0600);
    int ends[2];
    if (file < 0 || pipe(ends) != 0) std::_Exit(2);
    dup2(outputIsFile ? file : ends[1], STDOUT_FILENO);
    dup2(ends[1], STDERR_FILENO);
    enter();
    const bool grows = write(file, "x", 1) == 1;
    std::_Exit(grows == outputIsFile ? 0 : 1);
  };
  EXPECT_EXIT(growsOf(false), ExitedWithCode(0), "");
  EXPECT_EXIT(growsOf(true), ExitedWithCode(0), "");
}

}  // namespace
}  // namespace platform
