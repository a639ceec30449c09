// Text that leaves no copy of itself in memory: for passwords, tokens and header fields made of them.
#pragma once

#include <algorithm>
#include <cstddef>
#include <cstring>
#include <initializer_list>
#include <memory>
#include <string>
#include <string_view>
#include <utility>

namespace base {

/// Immutable. Overwrites its bytes before it frees them. Unlike std::string it keeps short texts on the heap too, so
/// that a move leaves no copy behind.
class SecretText {
 public:
  SecretText() = default;
  SecretText(std::string_view text) : SecretText({text}) {}
  SecretText(const std::string& text) : SecretText({std::string_view(text)}) {}
  SecretText(const char* text) : SecretText({std::string_view(text)}) {}

  /// The pieces, concatenated.
  SecretText(std::initializer_list<std::string_view> pieces) {
    for (const std::string_view piece : pieces) size_ += piece.size();
    bytes_ = std::make_unique_for_overwrite<char[]>(size_ + 1);
    char* end = bytes_.get();
    for (const std::string_view piece : pieces) end = std::copy(piece.begin(), piece.end(), end);
    *end = '\0';
  }

  SecretText(const SecretText& other) : SecretText({other.text()}) {}
  SecretText(SecretText&& other) noexcept
      : bytes_(std::move(other.bytes_)), size_(std::exchange(other.size_, std::size_t{0})) {}
  SecretText& operator=(SecretText other) noexcept {
    std::swap(bytes_, other.bytes_);
    std::swap(size_, other.size_);
    return *this;
  }
  ~SecretText() {
    if (bytes_) explicit_bzero(bytes_.get(), size_);
  }

  std::string_view text() const { return {cText(), size_}; }
  /// NUL-terminated; the text itself may hold NULs too.
  const char* cText() const { return bytes_ ? bytes_.get() : ""; }
  bool empty() const { return size_ == 0; }

  friend bool operator==(const SecretText& one, const SecretText& other) { return one.text() == other.text(); }

 private:
  std::unique_ptr<char[]> bytes_;
  std::size_t size_ = 0;
};

}  // namespace base
