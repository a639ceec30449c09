#include "desktop/windows/edid.hpp"

#include <array>

#include <gtest/gtest.h>

namespace desktop {
namespace {

using Block = std::array<std::uint8_t, 128>;

/// A block of a maker "DEL" with product 0x40f3 and the serial number 0x12345678, and no descriptors.
Block plain() {
  Block block{0x00, 0xff, 0xff, 0xff, 0xff, 0xff, 0xff, 0x00, 0x10, 0xac, 0xf3, 0x40, 0x78, 0x56, 0x34, 0x12};
  return block;
}

void describe(Block& block, std::size_t index, std::uint8_t tag, const std::string& text) {
  const std::size_t at = 54 + index * 18;
  block[at + 3] = tag;
  for (std::size_t i = 0; i < 13; ++i) {
    block[at + 5 + i] = i < text.size() ? static_cast<std::uint8_t>(text[i]) : static_cast<std::uint8_t>(' ');
  }
}

TEST(Edid, TellsMakeNumberOfTheModelAndSerialNumber) {
  EXPECT_EQ(parseEdid(plain()), (Edid{"DEL", "40f3", "305419896"}));
}

TEST(Edid, PrefersTheTextsOfItsDescriptors) {
  Block block = plain();
  describe(block, 1, 0xfc, "U2720Q\n");
  describe(block, 3, 0xff, "  7XK 1Z3\n");
  EXPECT_EQ(parseEdid(block), (Edid{"DEL", "U2720Q", "7XK 1Z3"}));
}

TEST(Edid, HasNoSerialWhereTheMakerCountsNothing) {
  for (const std::uint8_t byte : std::initializer_list<std::uint8_t>{0x00, 0x01, 0xff}) {
    Block block = plain();
    for (std::size_t i = 12; i < 16; ++i) block[i] = byte;
    EXPECT_EQ(parseEdid(block)->serial, "") << int{byte};
  }
}

TEST(Edid, HasNoMakeOfWhatAreNoLetters) {
  Block block = plain();
  block[8] = 0;
  block[9] = 0;
  EXPECT_EQ(parseEdid(block)->make, "");
}

TEST(Edid, IsNoneOfWhatIsNoEdid) {
  EXPECT_FALSE(parseEdid({}));
  const Block block = plain();
  EXPECT_FALSE(parseEdid(std::span(block).first(127)));
  Block other = plain();
  other[0] = 1;
  EXPECT_FALSE(parseEdid(other));
}

}  // namespace
}  // namespace desktop
