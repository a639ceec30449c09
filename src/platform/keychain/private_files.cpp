#include "platform/keychain/private_files.hpp"

#include <algorithm>
#include <cerrno>
#include <climits>
#include <cstdio>
#include <cstring>
#include <memory>
#include <optional>
#include <system_error>
#include <utility>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace platform {
namespace {

using Kind = FileRefusal::Kind;

std::unexpected<FileRefusal> insecure(std::string fault) {
  return std::unexpected(FileRefusal{Kind::insecure, std::move(fault)});
}

std::unexpected<FileRefusal> failure(int error) {
  if (error == ENOENT) return std::unexpected(FileRefusal{Kind::missing, {}});
  return std::unexpected(FileRefusal{Kind::failed, std::generic_category().message(error)});
}

std::string modeText(mode_t mode) {
  char text[8];
  std::snprintf(text, sizeof text, "%04o", static_cast<unsigned>(mode) & 07777U);
  return text;
}

int openRetrying(int parent, const char* path, int flags) {
  int number = -1;
  do {
    number = openat(parent, path, flags | O_CLOEXEC | O_NOFOLLOW | O_NONBLOCK | O_NOCTTY);
  } while (number < 0 && errno == EINTR);
  return number;
}

// Why an existing entry could not be opened, in clearer words than strerror's ("Too many levels of symbolic links", "No
// such device or address").
std::unexpected<FileRefusal> whyNotOpened(int parent, const char* path, int error, const char* wanted) {
  struct stat status{};
  if (error == ENOENT || fstatat(parent, path, &status, AT_SYMLINK_NOFOLLOW) != 0) return failure(error);
  if (S_ISLNK(status.st_mode)) return insecure("it is a symbolic link");
  if (error == ENOTDIR || error == ENXIO) return insecure(std::string("it is not ") + wanted);
  return failure(error);
}

std::optional<std::string> ownershipFault(const struct stat& status, mode_t unwanted, const char* wantedMode) {
  if (status.st_uid != geteuid()) {
    return "it belongs to user " + std::to_string(status.st_uid) + ", not to user " + std::to_string(geteuid());
  }
  if ((status.st_mode & unwanted) != 0) {
    return "its mode is " + modeText(status.st_mode) + " where " + wantedMode + " is wanted";
  }
  return std::nullopt;
}

// A buffer on the heap. The filled bytes are overwritten before the buffer is freed. The others are never touched, so a
// buffer for the largest item uses no more memory than the item that was read.
class WipedBuffer {
 public:
  explicit WipedBuffer(std::size_t size) : bytes_(std::make_unique_for_overwrite<char[]>(size)), size_(size) {}
  WipedBuffer(const WipedBuffer&) = delete;
  WipedBuffer& operator=(const WipedBuffer&) = delete;
  ~WipedBuffer() { explicit_bzero(bytes_.get(), std::min(filled_, size_)); }

  bool isFull() const { return filled_ == size_; }
  base::SecretText text() const { return std::string_view(bytes_.get(), filled_); }

  // Like read(2); appends to what is filled.
  ssize_t readFrom(int file) {
    const ssize_t count = read(file, bytes_.get() + filled_, size_ - filled_);
    if (count > 0) filled_ += static_cast<std::size_t>(count);
    return count;
  }

 private:
  std::unique_ptr<char[]> bytes_;
  std::size_t size_;
  std::size_t filled_ = 0;
};

}  // namespace

std::expected<base::FileDescriptor, FileRefusal> openPrivateFolder(int parent, const std::string& path) {
  base::FileDescriptor folder(openRetrying(parent, path.c_str(), O_RDONLY | O_DIRECTORY));
  if (folder.get() < 0) return whyNotOpened(parent, path.c_str(), errno, "a folder");
  struct stat status{};
  if (fstat(folder.get(), &status) != 0) return failure(errno);
  if (auto fault = ownershipFault(status, 0077, "0700")) return insecure(*std::move(fault));
  return folder;
}

std::expected<base::SecretText, FileRefusal> readPrivateFile(const base::FileDescriptor& folder,
                                                             const std::string& name, std::size_t sizeLimit) {
  const base::FileDescriptor file(openRetrying(folder.get(), name.c_str(), O_RDONLY));
  if (file.get() < 0) return whyNotOpened(folder.get(), name.c_str(), errno, "a regular file");
  struct stat status{};
  if (fstat(file.get(), &status) != 0) return failure(errno);
  if (!S_ISREG(status.st_mode)) return insecure("it is not a regular file");
  if (auto fault = ownershipFault(status, 0177, "0600")) return insecure(*std::move(fault));
  if (status.st_nlink != 1) return insecure("it has " + std::to_string(status.st_nlink) + " names");

  // One byte more than allowed shows that the file is too large. The size that fstat gave is not relied on, because the
  // file may grow while it is read.
  WipedBuffer buffer(sizeLimit + 1);
  while (!buffer.isFull()) {
    const ssize_t count = buffer.readFrom(file.get());
    if (count < 0 && errno == EINTR) continue;
    if (count < 0) return failure(errno);
    if (count == 0) return buffer.text();
  }
  return std::unexpected(FileRefusal{Kind::failed, "it holds more than " + std::to_string(sizeLimit) + " bytes"});
}

std::expected<void, FileRefusal> removeFile(const base::FileDescriptor& folder, const std::string& name) {
  if (unlinkat(folder.get(), name.c_str(), 0) != 0) {
    if (errno == EISDIR) return insecure("it is not a regular file");
    return failure(errno);
  }
  // The name is already gone for every process, also where the file system cannot sync a folder (EINVAL).
  fsync(folder.get());
  return {};
}

bool isEntryName(std::string_view text) {
  return !text.empty() && text != "." && text != ".." && text.size() <= NAME_MAX &&
         text.find_first_of(std::string_view("/\0", 2)) == std::string_view::npos;
}

}  // namespace platform
