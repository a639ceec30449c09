// An open descriptor with one owner.
#pragma once

#include <utility>

#include <unistd.h>

namespace base {

class FileDescriptor {
 public:
  FileDescriptor() = default;
  explicit FileDescriptor(int descriptor) : descriptor_(descriptor) {}
  FileDescriptor(FileDescriptor&& other) noexcept : descriptor_(std::exchange(other.descriptor_, -1)) {}
  FileDescriptor& operator=(FileDescriptor&& other) noexcept {
    reset(std::exchange(other.descriptor_, -1));
    return *this;
  }
  ~FileDescriptor() { reset(); }

  int get() const { return descriptor_; }
  bool isOpen() const { return descriptor_ >= 0; }

  /// Closes it now. Returns false, with errno set, where the system could not store what was written.
  bool close() { return ::close(std::exchange(descriptor_, -1)) == 0; }

  /// Closes it and takes another in its place, or none.
  void reset(int descriptor = -1) {
    const int before = std::exchange(descriptor_, descriptor);
    if (before >= 0) ::close(before);
  }

 private:
  int descriptor_ = -1;
};

}  // namespace base
