// What a monitor says of itself in its EDID (VESA E-EDID 1.4, section 3).
#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <string>

namespace desktop {

struct Edid {
  std::string make;    ///< three letters, as registered
  std::string model;   ///< its name, else its number in hexadecimal digits
  std::string serial;  ///< its text, else its number; empty for none
  bool operator==(const Edid&) const = default;
};

/// None for what is too short, or does not begin as an EDID does.
std::optional<Edid> parseEdid(std::span<const std::uint8_t> block);

}  // namespace desktop
