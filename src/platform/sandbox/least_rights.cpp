#include "platform/sandbox/least_rights.hpp"

#include <algorithm>
#include <array>
#include <cerrno>
#include <csignal>
#include <optional>
#include <system_error>

#include <linux/capability.h>
#include <sys/prctl.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <unistd.h>

#include "platform/sandbox/file_rules.hpp"
#include "platform/sandbox/system_call_filter.hpp"

namespace platform {
namespace {

std::string failure(const char* what) { return what + (": " + std::generic_category().message(errno)); }

bool isRegularFile(int descriptor) {
  struct stat status{};
  return fstat(descriptor, &status) == 0 && S_ISREG(status.st_mode);
}

/// No file grows through a descriptor that is open already, unless an output of the process itself leads to a file.
std::optional<std::string> limitFiles() {
  if (isRegularFile(STDOUT_FILENO) || isRegularFile(STDERR_FILENO)) return std::nullopt;
  std::signal(SIGXFSZ, SIG_IGN);  // write() fails with EFBIG instead
  const rlimit nothing{.rlim_cur = 0, .rlim_max = 0};
  if (setrlimit(RLIMIT_FSIZE, &nothing) != 0) return failure("file sizes");
  return std::nullopt;
}

std::optional<std::string> gainNoRights() {
  if (prctl(PR_SET_NO_NEW_PRIVS, 1, 0, 0, 0) != 0) return failure("no new rights");
  return std::nullopt;
}

std::optional<std::string> dropCapabilities() {
  __user_cap_header_struct header{.version = _LINUX_CAPABILITY_VERSION_3, .pid = 0};
  std::array<__user_cap_data_struct, 2> held{};
  const auto isNone = [](const auto& set) { return (set.effective | set.permitted | set.inheritable) == 0; };
  // A service manager may refuse the call below to a process that has nothing to give up.
  if (syscall(SYS_capget, &header, held.data()) == 0 && std::ranges::all_of(held, isNone)) return std::nullopt;
  const std::array<__user_cap_data_struct, 2> none{};
  if (syscall(SYS_capset, &header, none.data()) != 0) return failure("capabilities");
  return std::nullopt;
}

}  // namespace

std::vector<std::string> keepLeastRights(const std::vector<ReachableFile>& files) {
  if constexpr (!sandboxIsBuiltIn) return {"this build applies no restrictions"};
  std::vector<std::string> missing;
  const auto note = [&missing](std::optional<std::string> fault) {
    if (fault) missing.push_back(*std::move(fault));
  };
  note(limitFiles());
  note(gainNoRights());  // the kernel asks for it before the next steps
  note(restrictFiles(files));
  note(dropCapabilities());
  note(filterSystemCalls());  // last, because it refuses what the steps above use
  return missing;
}

}  // namespace platform
