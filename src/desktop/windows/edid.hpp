// A monitor's identity as its EDID describes it (VESA E-EDID 1.4, section 3).
#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <string>

namespace desktop {

struct Edid {
  std::string make;    ///< the manufacturer's three registered letters, "DEL"
  std::string model;   ///< the monitor's name, else its product code in hexadecimal digits
  std::string serial;  ///< the serial number as text, else as a number; empty for none
  bool operator==(const Edid&) const = default;
};

/// None if the block is too short or has no EDID header.
std::optional<Edid> parseEdid(std::span<const std::uint8_t> block);

}  // namespace desktop
