// A universally unique identifier (RFC 4122) as a value: its canonical text read and written, random ones made.
#pragma once

#include <array>
#include <compare>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <string_view>

namespace base {

struct Uuid {
  std::array<std::uint8_t, 16> bytes{};

  /// Reads the form of 8-4-4-4-12 hexadecimal digits in either case; nothing else (no braces, no "urn:uuid:").
  static std::optional<Uuid> parse(std::string_view text);

  /// A random identifier (version 4).
  static Uuid random();

  /// The canonical form in lower case: "6f1c2b9e-0d7a-4d0c-9a57-3e1f5b8c2d40".
  std::string text() const;

  friend auto operator<=>(const Uuid&, const Uuid&) = default;
};

}  // namespace base

template <>
struct std::hash<base::Uuid> {
  std::size_t operator()(const base::Uuid& uuid) const noexcept;
};
