#include "base/files/replace_file.hpp"

#include <cerrno>
#include <charconv>
#include <cstdio>
#include <optional>
#include <system_error>

#include <fcntl.h>
#include <signal.h>
#include <sys/stat.h>
#include <unistd.h>

#include "base/descriptors/file_descriptor.hpp"
#include "base/descriptors/write_all.hpp"

namespace base {
namespace {

std::unexpected<std::string> reason(int error) { return std::unexpected(std::generic_category().message(error)); }

/// EINVAL means that the file system cannot sync; the content is written all the same.
bool syncAsFarAsPossible(int descriptor) { return fsync(descriptor) == 0 || errno == EINVAL || errno == ENOSYS; }

/// Syncs a rename in the folder. Other processes see the new name already, so a failure is ignored.
void syncFolder(const std::filesystem::path& folder) {
  const FileDescriptor descriptor(open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
  if (descriptor.isOpen()) fsync(descriptor.get());
}

constexpr std::string_view temporaryMark = ".new-";

/// A new file of this process alone. Where there is none, the descriptor is not open and errno is set.
struct NewFile {
  std::string path;
  FileDescriptor descriptor;
};

/// Created with its final permissions, so that the kernel applies the umask.
NewFile newFileBeside(const std::filesystem::path& target, mode_t rights) {
  const std::string start = target.string() + std::string(temporaryMark) + std::to_string(getpid()) + "-";
  constexpr int attempts = 1000;  // a killed process that had this one's id may have left names
  for (int i = 0; i < attempts; ++i) {
    std::string path = start + std::to_string(i);
    FileDescriptor descriptor(open(path.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_NOFOLLOW | O_CLOEXEC, rights));
    if (descriptor.isOpen() || errno != EEXIST) return {std::move(path), std::move(descriptor)};
  }
  return {};
}

bool takeOver(int descriptor, const struct stat& old) {
  // Only root can change the owner. Otherwise the new file belongs to whoever replaced it.
  struct stat fresh{};
  if (fstat(descriptor, &fresh) == 0 && (fresh.st_uid != old.st_uid || fresh.st_gid != old.st_gid)) {
    [[maybe_unused]] const int ignored = fchown(descriptor, old.st_uid, old.st_gid);
  }
  return fchmod(descriptor, old.st_mode & 07777) == 0;
}

}  // namespace

std::expected<std::filesystem::path, std::string> behindLinks(const std::filesystem::path& file) {
  std::filesystem::path target = file;
  constexpr int longestChain = 40;  // as the kernel's
  for (int i = 0; i < longestChain; ++i) {
    std::error_code error;
    const auto next = std::filesystem::read_symlink(target, error);
    if (error) return target;  // no link, or nothing at all
    target = target.parent_path() / next;
  }
  return reason(ELOOP);
}

std::expected<void, std::string> makeFolders(const std::filesystem::path& folder, Rights rights) {
  if (folder.empty() || mkdir(folder.c_str(), rights.folder) == 0) return {};
  if (errno == ENOENT && folder.has_relative_path()) {
    if (auto above = makeFolders(folder.parent_path(), rights); !above) return above;
    if (mkdir(folder.c_str(), rights.folder) == 0) return {};
  }
  const int error = errno;
  struct stat status{};
  if (error == EEXIST && stat(folder.c_str(), &status) == 0 && S_ISDIR(status.st_mode)) return {};
  return reason(error == EEXIST ? ENOTDIR : error);
}

void removeLeftovers(const std::filesystem::path& file) {
  const std::string start = file.filename().string() + std::string(temporaryMark);
  std::error_code error;
  std::filesystem::directory_iterator entry(file.has_parent_path() ? file.parent_path() : ".", error);
  // Not a range-based for, which throws where the folder cannot be read on.
  for (; !error && entry != std::filesystem::directory_iterator(); entry.increment(error)) {
    const std::string name = entry->path().filename().string();
    if (!name.starts_with(start)) continue;
    pid_t writer = 0;
    const char* const end = name.data() + name.size();
    const auto [rest, fault] = std::from_chars(name.data() + start.size(), end, writer);
    const bool ours = fault == std::errc{} && writer > 0 && rest != end && *rest == '-';
    if (ours && kill(writer, 0) != 0 && errno == ESRCH) unlink(entry->path().c_str());
  }
}

std::expected<void, std::string> replaceFile(const std::filesystem::path& file, std::string_view bytes,
                                             Durability durability, Rights rights) {
  const auto target = behindLinks(file);
  if (!target) return std::unexpected(target.error());
  struct stat old{};
  const bool exists = stat(target->c_str(), &old) == 0;
  if (exists && !S_ISREG(old.st_mode)) return std::unexpected("it is not a regular file");

  removeLeftovers(*target);
  NewFile fresh = newFileBeside(*target, rights.file);
  if (!fresh.descriptor.isOpen()) return reason(errno);
  const int descriptor = fresh.descriptor.get();
  bool done = !writeAll(descriptor, bytes) && (!exists || takeOver(descriptor, old)) &&
              (durability == Durability::fast || syncAsFarAsPossible(descriptor));
  int error = done ? 0 : errno;
  // A network file system may report a failed write only now.
  if (!fresh.descriptor.close() && done) {
    error = errno;
    done = false;
  }
  if (done && rename(fresh.path.c_str(), target->c_str()) != 0) {
    error = errno;
    done = false;
  }
  if (!done) {
    unlink(fresh.path.c_str());
    return reason(error);
  }
  if (durability == Durability::lasting) {
    syncFolder(target->has_parent_path() ? target->parent_path() : std::filesystem::path("."));
  }
  return {};
}

}  // namespace base
