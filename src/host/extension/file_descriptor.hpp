// An open descriptor with one owner.
#pragma once

#include <utility>

#include <unistd.h>

namespace host {

class FileDescriptor {
 public:
  explicit FileDescriptor(int descriptor = -1) : descriptor_(descriptor) {}
  FileDescriptor(FileDescriptor&& other) noexcept : descriptor_(std::exchange(other.descriptor_, -1)) {}
  FileDescriptor& operator=(FileDescriptor&& other) noexcept {
    std::swap(descriptor_, other.descriptor_);
    return *this;
  }
  ~FileDescriptor() { close(); }

  int get() const { return descriptor_; }
  bool isOpen() const { return descriptor_ >= 0; }
  void close() {
    if (isOpen()) ::close(std::exchange(descriptor_, -1));
  }

 private:
  int descriptor_;
};

}  // namespace host
