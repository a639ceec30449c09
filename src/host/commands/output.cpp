#include "host/commands/output.hpp"

#include <array>
#include <cerrno>
#include <cstring>

#include <fcntl.h>
#include <poll.h>
#include <sys/stat.h>
#include <unistd.h>

#include "base/descriptors/file_descriptor.hpp"
#include "base/descriptors/write_all.hpp"
#include "base/files/replace_file.hpp"

namespace host {
namespace {

std::unexpected<std::string> fault(const std::string& what) {
  return std::unexpected(what + ": " + std::strerror(errno));
}

std::expected<void, std::string> writeInPlace(const std::filesystem::path& file, std::string_view bytes) {
  base::FileDescriptor descriptor(open(file.c_str(), O_WRONLY | O_CLOEXEC));
  if (!descriptor.isOpen() || base::writeAll(descriptor.get(), bytes) || !descriptor.close()) {
    return fault("can't write " + file.string());
  }
  return {};
}

}  // namespace

std::expected<void, std::string> writeStandardOutput(std::string_view bytes) {
  if (base::writeAll(STDOUT_FILENO, bytes)) return fault("can't write the result");
  return {};
}

CommandResult print(std::string_view text) {
  if (auto written = writeStandardOutput(text); !written) {
    return std::unexpected(CommandFailure{exit_status::noAnswer, written.error()});
  }
  return {};
}

std::expected<void, std::string> writeFile(const std::filesystem::path& file, std::string_view bytes) {
  struct stat status{};
  const bool exists = stat(file.c_str(), &status) == 0;
  if (exists && !S_ISREG(status.st_mode)) return writeInPlace(file, bytes);
  const auto replaced = base::replaceFile(file, bytes, base::Durability::fast);
  if (!replaced) return std::unexpected("can't write " + file.string() + ": " + replaced.error());
  return {};
}

std::expected<std::string, std::string> readAll(const std::string& fileOrDash, std::size_t longest) {
  const bool standardInput = fileOrDash == "-";
  const std::string name = standardInput ? "standard input" : fileOrDash;
  const base::FileDescriptor file(standardInput ? -1 : open(fileOrDash.c_str(), O_RDONLY | O_CLOEXEC));
  if (!standardInput && !file.isOpen()) return fault("can't read " + name);
  const int descriptor = standardInput ? STDIN_FILENO : file.get();
  std::string bytes;
  std::array<char, 65536> buffer{};
  ssize_t count = 0;
  while ((count = read(descriptor, buffer.data(), buffer.size())) != 0) {
    if (count > 0) {
      bytes.append(buffer.data(), static_cast<std::size_t>(count));
      if (bytes.size() > longest) {
        return std::unexpected(name + " is longer than " + std::to_string(longest >> 20) + " MiB");
      }
    } else if (errno == EAGAIN) {
      pollfd more{.fd = descriptor, .events = POLLIN, .revents = 0};
      ::poll(&more, 1, -1);
    } else if (errno != EINTR) {
      return fault("can't read " + name);
    }
  }
  return bytes;
}

}  // namespace host
