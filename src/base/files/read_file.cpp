#include "base/files/read_file.hpp"

#include <array>
#include <cerrno>
#include <system_error>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include "base/descriptors/file_descriptor.hpp"

namespace base {
namespace {

std::unexpected<ReadFailure> unusable(std::string reason) {
  return std::unexpected(ReadFailure{ReadFailure::Kind::unusable, std::move(reason)});
}

std::expected<std::string, ReadFailure> readToEnd(int descriptor, std::size_t sizeLimit) {
  struct stat status{};
  if (fstat(descriptor, &status) != 0) return unusable(std::generic_category().message(errno));
  if (!S_ISREG(status.st_mode)) return unusable("it is not a regular file");
  std::string bytes;
  std::array<char, 16384> buffer{};
  while (true) {
    const ssize_t count = read(descriptor, buffer.data(), buffer.size());
    if (count < 0 && errno == EINTR) continue;
    if (count < 0) return unusable(std::generic_category().message(errno));
    if (count == 0) return bytes;
    bytes.append(buffer.data(), static_cast<std::size_t>(count));
    if (bytes.size() > sizeLimit) return unusable("it holds more than " + std::to_string(sizeLimit) + " bytes");
  }
}

}  // namespace

std::expected<std::string, ReadFailure> readFile(const std::filesystem::path& file, std::size_t sizeLimit) {
  const FileDescriptor descriptor(open(file.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK | O_NOCTTY));
  if (!descriptor.isOpen()) {
    const int error = errno;
    if (error == ENOENT) return std::unexpected(ReadFailure{ReadFailure::Kind::missing, {}});
    return unusable(std::generic_category().message(error));
  }
  return readToEnd(descriptor.get(), sizeLimit);
}

}  // namespace base
