// Collects one response as the HTTP library delivers it, and checks that its header section is complete and its size
// within the limits.
#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <utility>

namespace platform {

class ResponseCollector {
 public:
  explicit ResponseCollector(std::size_t longestBody) : longestBody_(longestBody) {}

  /// One line of a header section or of a trailer, its line end included. False ends the transfer.
  bool takeHeaderLine(std::string_view line);

  /// A piece of the body. `expectedLength` is asked once, for room in advance. False ends the transfer.
  template <typename ExpectedLength>
  bool takeBodyPiece(std::string_view piece, ExpectedLength expectedLength) {
    if (body_.empty()) makeRoom(expectedLength());
    return append(piece);
  }

  /// Whether the final answer's header section came to its end. A transfer without one, but with body bytes, was
  /// HTTP/0.9; one with neither was cut off.
  bool hasWholeHeader() const { return headerIsWhole_; }
  bool isTooLarge() const { return tooLarge_; }

  /// Whether no byte of a body has come.
  bool isEmpty() const { return body_.empty(); }

  std::string takeBody() { return std::move(body_); }

 private:
  bool append(std::string_view piece);
  void makeRoom(std::optional<std::size_t> expectedLength);

  const std::size_t longestBody_;
  std::string body_;
  std::size_t headerLength_ = 0;
  bool headerIsProvisional_ = false;
  bool headerIsWhole_ = false;
  bool tooLarge_ = false;
};

}  // namespace platform
