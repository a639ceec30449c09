// The bytes of a body on their way into the decoder, with what is known of the memory behind them.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace platform {

/// A view; the bytes must outlive it. The parser reads a little past the end: a string that was given room for
/// `padding` more bytes is read where it lies, anything else is copied first.
class JsonBody {
 public:
  static constexpr std::size_t padding = 64;

  // Implicit, so that a call reads decode<T>(body) whatever holds the bytes.
  JsonBody(std::string_view text) : text_(text), capacity_(text.size()) {}
  JsonBody(const std::string& text) : text_(text), capacity_(text.capacity()) {}
  JsonBody(const char* text) : JsonBody(std::string_view(text)) {}

  std::string_view text() const { return text_; }
  std::size_t capacity() const { return capacity_; }
  bool hasPadding() const { return capacity_ - text_.size() >= padding; }

 private:
  std::string_view text_;
  std::size_t capacity_;
};

}  // namespace platform
