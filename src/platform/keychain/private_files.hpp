// Opens folders and files that only their owner can reach. Every check is made on the open descriptor, so nobody can
// exchange the file between check and use. No step follows a symbolic link or waits for the other end of a pipe.
#pragma once

#include <cstddef>
#include <expected>
#include <string>
#include <string_view>

#include "base/descriptors/file_descriptor.hpp"
#include "base/text/secret_text.hpp"

namespace platform {

struct FileRefusal {
  enum class Kind { missing, insecure, failed };
  Kind kind = Kind::failed;
  std::string fault;  // for a person; empty when missing
};

/// Opens a folder that belongs to this process's user and is closed to everyone else (no mode bit of group or
/// others). `parent` is `AT_FDCWD` or an open folder; the last component of `path` must not be a symbolic
/// link; those before it may be.
std::expected<base::FileDescriptor, FileRefusal> openPrivateFolder(int parent, const std::string& path);

/// The bytes of a regular file in `folder` that belongs to this process's user, has a mode of at most 0600 and a
/// single name. `sizeLimit` in bytes. The bytes are held nowhere else when this returns.
std::expected<base::SecretText, FileRefusal> readPrivateFile(const base::FileDescriptor& folder,
                                                             const std::string& name, std::size_t sizeLimit);

/// Removes a name from `folder`, whatever kind of file it names, and syncs the folder.
std::expected<void, FileRefusal> removeFile(const base::FileDescriptor& folder, const std::string& name);

/// Whether a text can name an entry of a folder: not empty, ".", or "..", without '/' and NUL, at most 255 bytes.
bool isEntryName(std::string_view text);

}  // namespace platform
