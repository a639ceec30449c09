#include "desktop/windows/edid.hpp"

#include <algorithm>
#include <array>
#include <string_view>

#include <absl/strings/str_cat.h>

namespace desktop {
namespace {

constexpr std::size_t blockLength = 128;
constexpr std::array<std::uint8_t, 8> header{0x00, 0xff, 0xff, 0xff, 0xff, 0xff, 0xff, 0x00};

constexpr std::size_t firstDescriptor = 54;
constexpr std::size_t descriptorLength = 18;
constexpr std::size_t descriptorCount = 4;
constexpr std::uint8_t serialTag = 0xff;
constexpr std::uint8_t nameTag = 0xfc;

/// The make is three letters of five bits each; 1 is A.
std::string makeOf(std::span<const std::uint8_t> block) {
  const unsigned packed = static_cast<unsigned>(block[8]) << 8 | block[9];
  std::string make;
  for (const unsigned shift : {10U, 5U, 0U}) {
    const unsigned letter = packed >> shift & 0x1f;
    if (letter < 1 || letter > 26) return {};
    make += static_cast<char>('A' + letter - 1);
  }
  return make;
}

/// The text of the descriptor with this tag, up to its line feed, without leading and trailing blanks.
std::string textOf(std::span<const std::uint8_t> block, std::uint8_t tag) {
  for (std::size_t i = 0; i < descriptorCount; ++i) {
    const auto descriptor = block.subspan(firstDescriptor + i * descriptorLength, descriptorLength);
    if (descriptor[0] != 0 || descriptor[1] != 0 || descriptor[3] != tag) continue;
    std::string text;
    for (const std::uint8_t byte : descriptor.subspan(5)) {
      if (byte == '\n') break;
      if (byte >= 0x20 && byte < 0x7f) text += static_cast<char>(byte);
    }
    const auto begin = text.find_first_not_of(' ');
    if (begin == std::string::npos) return {};
    return text.substr(begin, text.find_last_not_of(' ') - begin + 1);
  }
  return {};
}

}  // namespace

std::optional<Edid> parseEdid(std::span<const std::uint8_t> block) {
  if (block.size() < blockLength || !std::ranges::equal(block.first(header.size()), header)) return std::nullopt;
  Edid edid{.make = makeOf(block), .model = textOf(block, nameTag), .serial = textOf(block, serialTag)};
  if (edid.model.empty()) {
    const unsigned product = static_cast<unsigned>(block[11]) << 8 | block[10];
    edid.model = absl::StrCat(absl::Hex(product, absl::kZeroPad4));
  }
  const std::uint32_t number = static_cast<std::uint32_t>(block[15]) << 24 |
                               static_cast<std::uint32_t>(block[14]) << 16 |
                               static_cast<std::uint32_t>(block[13]) << 8 | block[12];
  // Manufacturers that assign no serial numbers write zeros, all ones or 01010101.
  if (edid.serial.empty() && number != 0 && number != 0xffffffff && number != 0x01010101) {
    edid.serial = absl::StrCat(number);
  }
  return edid;
}

}  // namespace desktop
