#include "base/files/quarantine.hpp"

#include <cerrno>
#include <cstdio>
#include <system_error>

#include <fcntl.h>
#include <sys/stat.h>

#include "base/files/replace_file.hpp"

namespace base {
namespace {

/// 0, or the reason; EEXIST where the new name is taken.
int renameWithoutReplacing(const std::filesystem::path& from, const std::filesystem::path& to) {
  if (renameat2(AT_FDCWD, from.c_str(), AT_FDCWD, to.c_str(), RENAME_NOREPLACE) == 0) return 0;
  if (errno != EINVAL && errno != ENOSYS) return errno;
  // The file system lacks RENAME_NOREPLACE: check first. Only this user's own programs could create the name in
  // between.
  struct stat status{};
  if (lstat(to.c_str(), &status) == 0) return EEXIST;
  return rename(from.c_str(), to.c_str()) == 0 ? 0 : errno;
}

}  // namespace

std::expected<std::filesystem::path, std::string> quarantine(const std::filesystem::path& file,
                                                             const std::string& suffix) {
  // A dangling link is renamed itself.
  const auto target = behindLinks(file).value_or(file);
  int error = EEXIST;
  constexpr int names = 10000;
  for (int i = 1; i <= names && error == EEXIST; ++i) {
    const std::filesystem::path aside = target.string() + suffix + "-" + std::to_string(i);
    error = renameWithoutReplacing(target, aside);
    if (error == 0) return aside;
  }
  return std::unexpected(std::generic_category().message(error));
}

}  // namespace base
