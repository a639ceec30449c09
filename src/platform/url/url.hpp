// A URL as text that is known to be well formed: RFC 3986's URI-reference, so "" and "/moje/zadania" are URLs too.
// Nothing is normalised, escaped or resolved. The session decides whether a URL can be loaded.
#pragma once

#include <optional>
#include <string>

namespace platform {

class Url {
 public:
  /// Absent when the text does not match RFC 3986's URI-reference.
  static std::optional<Url> parse(std::string text);

  const std::string& text() const { return text_; }

  /// The scheme in lower case; absent in a relative reference.
  const std::optional<std::string>& scheme() const { return scheme_; }

  /// The host in lower case, an IPv6 address without its brackets; absent when the URL has none or an empty one.
  const std::optional<std::string>& host() const { return host_; }

  /// The port's digits as written; absent when there are none.
  const std::optional<std::string>& port() const { return port_; }

  bool operator==(const Url& other) const { return text_ == other.text_; }

 private:
  explicit Url(std::string text) : text_(std::move(text)) {}

  std::string text_;
  std::optional<std::string> scheme_;
  std::optional<std::string> host_;
  std::optional<std::string> port_;
};

}  // namespace platform
