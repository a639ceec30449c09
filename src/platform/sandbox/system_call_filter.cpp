#include "platform/sandbox/system_call_filter.hpp"

#include <array>
#include <cerrno>
#include <initializer_list>
#include <memory>
#include <system_error>

#include <fcntl.h>
#include <linux/netlink.h>
#include <sched.h>
#include <seccomp.h>
#include <sys/ioctl.h>
#include <sys/prctl.h>
#include <sys/socket.h>
#include <unistd.h>

namespace platform {
namespace {

// Calls that take a capability (mounting, modules, the clock) are not among them: the process has none.
constexpr std::array refused{
    // Programs and processes. Threads are started by clone() with CLONE_THREAD, see below.
    SCMP_SYS(execve), SCMP_SYS(execveat), SCMP_SYS(fork), SCMP_SYS(vfork), SCMP_SYS(unshare), SCMP_SYS(setns),
    // Other processes.
    SCMP_SYS(ptrace), SCMP_SYS(process_vm_readv), SCMP_SYS(process_vm_writev), SCMP_SYS(process_madvise),
    SCMP_SYS(pidfd_getfd), SCMP_SYS(pidfd_send_signal), SCMP_SYS(kcmp), SCMP_SYS(tkill),
    // Changes of files. Removing one is left to Landlock: a refused token is deleted.
    SCMP_SYS(creat), SCMP_SYS(truncate), SCMP_SYS(mkdir), SCMP_SYS(mkdirat), SCMP_SYS(rmdir), SCMP_SYS(mknod),
    SCMP_SYS(mknodat), SCMP_SYS(link), SCMP_SYS(linkat), SCMP_SYS(symlink), SCMP_SYS(symlinkat), SCMP_SYS(rename),
    SCMP_SYS(renameat), SCMP_SYS(renameat2), SCMP_SYS(chmod), SCMP_SYS(fchmod), SCMP_SYS(fchmodat), SCMP_SYS(chown),
    SCMP_SYS(fchown), SCMP_SYS(lchown), SCMP_SYS(fchownat), SCMP_SYS(setxattr), SCMP_SYS(lsetxattr),
    SCMP_SYS(fsetxattr), SCMP_SYS(removexattr), SCMP_SYS(lremovexattr), SCMP_SYS(fremovexattr), SCMP_SYS(utime),
    SCMP_SYS(utimes), SCMP_SYS(futimesat), SCMP_SYS(utimensat), SCMP_SYS(memfd_create), SCMP_SYS(memfd_secret),
    // Memory and messages shared with other processes.
    SCMP_SYS(shmget), SCMP_SYS(msgget), SCMP_SYS(semget), SCMP_SYS(mq_open), SCMP_SYS(listen),
    // Rarely used parts of the kernel.
    SCMP_SYS(bpf), SCMP_SYS(perf_event_open), SCMP_SYS(userfaultfd), SCMP_SYS(io_uring_setup), SCMP_SYS(add_key),
    SCMP_SYS(keyctl), SCMP_SYS(request_key), SCMP_SYS(personality), SCMP_SYS(modify_ldt)};

/// The filter under construction. A rule that the library refuses is reported by `load`.
class Filter {
 public:
  Filter() : context_(seccomp_init(SCMP_ACT_ALLOW), &seccomp_release) {
    if (!context_) return;
    note(seccomp_attr_set(context_.get(), SCMP_FLTATR_ACT_BADARCH, SCMP_ACT_ERRNO(ENOSYS)));
    note(seccomp_attr_set(context_.get(), SCMP_FLTATR_CTL_TSYNC, 1));
    note(seccomp_attr_set(context_.get(), SCMP_FLTATR_CTL_OPTIMIZE, 2));
  }

  void refuse(int call, int error, std::initializer_list<scmp_arg_cmp> where = {}) {
    if (!context_) return;
    note(seccomp_rule_add_array(context_.get(), SCMP_ACT_ERRNO(static_cast<std::uint16_t>(error)), call,
                                static_cast<unsigned>(where.size()), where.begin()));
  }

  /// 0 or an errno value.
  int load() {
    if (!context_) return ENOMEM;
    if (error_ == 0) note(seccomp_load(context_.get()));
    return error_;
  }

 private:
  void note(int result) {
    if (result != 0 && error_ == 0) error_ = -result;
  }

  std::unique_ptr<void, decltype(&seccomp_release)> context_;
  int error_ = 0;
};

void refuseWriting(Filter& filter) {
  for (const auto& [call, flags] : {std::pair{SCMP_SYS(open), 1U}, std::pair{SCMP_SYS(openat), 2U}}) {
    for (const scmp_datum_t mode : {1U, 2U, 3U}) {  // O_WRONLY, O_RDWR, and both at once
      filter.refuse(call, EACCES, {SCMP_CMP(flags, SCMP_CMP_MASKED_EQ, O_ACCMODE, mode)});
    }
    for (const scmp_datum_t flag : {scmp_datum_t{O_CREAT}, scmp_datum_t{O_TRUNC}}) {
      filter.refuse(call, EACCES, {SCMP_CMP(flags, SCMP_CMP_MASKED_EQ, flag, flag)});
    }
  }
  // Its flags are in memory, where a filter cannot look. Programs fall back to openat().
  filter.refuse(SCMP_SYS(openat2), ENOSYS);
}

void refuseProcesses(Filter& filter) {
  filter.refuse(SCMP_SYS(clone), EPERM, {SCMP_A0(SCMP_CMP_MASKED_EQ, CLONE_THREAD, 0)});
  // Its flags are in memory too. The C library falls back to clone().
  filter.refuse(SCMP_SYS(clone3), ENOSYS);
  const auto self = static_cast<scmp_datum_t>(getpid());
  for (const int call : {SCMP_SYS(kill), SCMP_SYS(tgkill), SCMP_SYS(rt_sigqueueinfo), SCMP_SYS(rt_tgsigqueueinfo)}) {
    filter.refuse(call, EPERM, {SCMP_A0(SCMP_CMP_NE, self)});
  }
  filter.refuse(SCMP_SYS(prctl), EPERM, {SCMP_A0(SCMP_CMP_EQ, PR_SET_DUMPABLE)});
}

/// Leaves Unix sockets, IP, and the netlink protocol that lists the machine's addresses for look-ups of names.
void refuseSockets(Filter& filter) {
  static_assert(AF_UNIX == 1 && AF_INET == 2 && AF_INET6 == 10 && AF_NETLINK == 16);
  for (int family = 0; family < AF_NETLINK; ++family) {
    if (family == AF_UNIX || family == AF_INET || family == AF_INET6) continue;
    filter.refuse(SCMP_SYS(socket), EAFNOSUPPORT, {SCMP_A0(SCMP_CMP_EQ, static_cast<scmp_datum_t>(family))});
  }
  filter.refuse(SCMP_SYS(socket), EAFNOSUPPORT, {SCMP_A0(SCMP_CMP_GT, AF_NETLINK)});
  filter.refuse(SCMP_SYS(socket), EPROTONOSUPPORT,
                {SCMP_A0(SCMP_CMP_EQ, AF_NETLINK), SCMP_A2(SCMP_CMP_NE, NETLINK_ROUTE)});
}

}  // namespace

std::optional<std::string> filterSystemCalls() {
  Filter filter;
  for (const int call : refused) filter.refuse(call, EPERM);
  refuseWriting(filter);
  refuseProcesses(filter);
  refuseSockets(filter);
  // TIOCSTI puts characters into a terminal's input as if they had been typed.
  filter.refuse(SCMP_SYS(ioctl), EPERM, {SCMP_A1(SCMP_CMP_MASKED_EQ, 0xffffffff, TIOCSTI)});
  const int error = filter.load();
  if (error == 0) return std::nullopt;
  return "system-call filter: " + std::generic_category().message(error);
}

}  // namespace platform
