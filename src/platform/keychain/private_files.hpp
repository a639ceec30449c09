// Folders and files that only their owner can reach. Every check is made on the opened descriptor, so what was
// checked is what is used, and no step follows a link or waits for the other end of a pipe.
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
/// others). `parent` is `AT_FDCWD` or an open folder; the last component of `path` must be no link, those before it
/// may be.
std::expected<base::FileDescriptor, FileRefusal> openPrivateFolder(int parent, const std::string& path);

/// The bytes of a regular file in `folder` that belongs to this process's user, has a mode of at most 0600 and a
/// single name. `sizeLimit` in bytes. The bytes are held nowhere else when this returns.
std::expected<base::SecretText, FileRefusal> readPrivateFile(const base::FileDescriptor& folder,
                                                             const std::string& name, std::size_t sizeLimit);

/// Removes a name from `folder`, whatever kind of file bears it, and makes the removal last.
std::expected<void, FileRefusal> removeFile(const base::FileDescriptor& folder, const std::string& name);

/// Whether a text is the name of one entry of a folder: not empty, no "." or "..", no '/' or NUL, at most 255 bytes.
bool isEntryName(std::string_view text);

}  // namespace platform
