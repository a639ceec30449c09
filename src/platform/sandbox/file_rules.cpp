#include "platform/sandbox/file_rules.hpp"

#include <cerrno>
#include <cstdint>
#include <system_error>

#include <fcntl.h>
#include <linux/landlock.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <unistd.h>

#include "base/descriptors/file_descriptor.hpp"

namespace platform {
namespace {

// The rights that every version of Landlock knows: all that this project denies. Renaming between folders is always
// denied, and truncating a file takes the right to open it for writing.
constexpr std::uint64_t everyRight = (LANDLOCK_ACCESS_FS_MAKE_SYM << 1) - 1;

std::uint64_t landlockRights(ReachableFile::Right right, bool isFolder) {
  if (!isFolder) return LANDLOCK_ACCESS_FS_READ_FILE;
  std::uint64_t rights = LANDLOCK_ACCESS_FS_READ_DIR;
  if (right != ReachableFile::Right::list) rights |= LANDLOCK_ACCESS_FS_READ_FILE;
  if (right == ReachableFile::Right::readAndRemove) rights |= LANDLOCK_ACCESS_FS_REMOVE_FILE;
  return rights;
}

std::string failure(int error) { return "Landlock: " + std::generic_category().message(error); }

/// False, with errno set, where the kernel refuses the rule; a path that cannot be opened needs none.
bool addRule(int rules, const ReachableFile& file) {
  const base::FileDescriptor opened(open(file.path.c_str(), O_PATH | O_CLOEXEC));
  struct stat status{};
  if (!opened.isOpen() || fstat(opened.get(), &status) != 0) return true;
  const landlock_path_beneath_attr rule{.allowed_access = landlockRights(file.right, S_ISDIR(status.st_mode)),
                                        .parent_fd = opened.get()};
  return syscall(SYS_landlock_add_rule, rules, LANDLOCK_RULE_PATH_BENEATH, &rule, 0) == 0;
}

}  // namespace

std::optional<std::string> restrictFiles(const std::vector<ReachableFile>& files) {
  const landlock_ruleset_attr handled{.handled_access_fs = everyRight};
  const base::FileDescriptor rules(static_cast<int>(syscall(SYS_landlock_create_ruleset, &handled, sizeof handled, 0)));
  if (!rules.isOpen()) return failure(errno);
  for (const auto& file : files) {
    if (!addRule(rules.get(), file)) return failure(errno);
  }
  if (syscall(SYS_landlock_restrict_self, rules.get(), 0) != 0) return failure(errno);
  return std::nullopt;
}

}  // namespace platform
