#include "base/text/uuid.hpp"

#include <random>
#include <set>
#include <string>
#include <string_view>

#include <gtest/gtest.h>

namespace base {
namespace {

constexpr std::string_view sample = "6f1c2b9e-0d7a-4d0c-9a57-3e1f5b8c2d40";

TEST(Uuid, ReadsEitherCaseAndWritesLowerCase) {
  for (const std::string_view text : {"6f1c2b9e-0d7a-4d0c-9a57-3e1f5b8c2d40", "6F1C2B9E-0D7A-4D0C-9A57-3E1F5B8C2D40",
                                      "6f1C2b9E-0d7A-4D0c-9a57-3E1f5B8c2d40"}) {
    const auto uuid = Uuid::parse(text);
    ASSERT_TRUE(uuid) << text;
    EXPECT_EQ(uuid->text(), sample) << text;
  }
}

TEST(Uuid, KeepsTheOrderOfTheBytes) {
  const auto uuid = Uuid::parse("00010203-0405-0607-0809-0a0b0c0d0eff");
  ASSERT_TRUE(uuid);
  EXPECT_EQ(uuid->bytes, (std::array<std::uint8_t, 16>{0, 1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 13, 14, 255}));
}

TEST(Uuid, RefusesEveryOtherForm) {
  for (const std::string_view text : {
           "",
           "6f1c2b9e0d7a4d0c9a573e1f5b8c2d40",
           "{6f1c2b9e-0d7a-4d0c-9a57-3e1f5b8c2d40}",
           "urn:uuid:6f1c2b9e-0d7a-4d0c-9a57-3e1f5b8c2d40",
           " 6f1c2b9e-0d7a-4d0c-9a57-3e1f5b8c2d40",
           "6f1c2b9e-0d7a-4d0c-9a57-3e1f5b8c2d40 ",
           "6f1c2b9e-0d7a-4d0c-9a57-3e1f5b8c2d4",
           "6f1c2b9e-0d7a-4d0c-9a57-3e1f5b8c2d401",
           "6f1c2b9e-0d7a-4d0c-9a57-3e1f5b8c2d4g",
           "6f1c2b9e-0d7a-4d0c-9a57+3e1f5b8c2d40",
           "6f1c2b9-e0d7a-4d0c-9a57-3e1f5b8c2d40",
           "0x1c2b9e-0d7a-4d0c-9a57-3e1f5b8c2d40",
           "+f1c2b9e-0d7a-4d0c-9a57-3e1f5b8c2d40",
           " f1c2b9e-0d7a-4d0c-9a57-3e1f5b8c2d40",
           "6f1c2b9e‑0d7a-4d0c-9a57-3e1f5b8c2d",
       }) {
    EXPECT_FALSE(Uuid::parse(text)) << text;
  }
  EXPECT_FALSE(Uuid::parse(std::string_view("6f1c2b9e-0d7a-4d0c-9a57-3e1f5b8c2d4\0", 36)));
}

TEST(Uuid, RefusesAnyTextWithOneForeignByte) {
  for (std::size_t at = 0; at < sample.size(); ++at) {
    for (int byte = 0; byte < 256; ++byte) {
      std::string text(sample);
      text[at] = static_cast<char>(byte);
      const bool isHex = std::string_view("0123456789abcdefABCDEF").find(text[at]) != std::string_view::npos;
      const bool isExpected = sample[at] == '-' ? byte == '-' : isHex;
      EXPECT_EQ(Uuid::parse(text).has_value(), isExpected) << text;
    }
  }
}

TEST(Uuid, ReadsBackWhatItWrites) {
  for (int i = 0; i < 1000; ++i) {
    const Uuid uuid = Uuid::random();
    EXPECT_EQ(Uuid::parse(uuid.text()), uuid);
  }
}

TEST(Uuid, RandomOnesAreOfVersionFourAndDiffer) {
  std::set<Uuid> seen;
  for (int i = 0; i < 1000; ++i) {
    const Uuid uuid = Uuid::random();
    EXPECT_EQ(uuid.text()[14], '4');
    EXPECT_EQ(uuid.bytes[8] & 0xC0, 0x80);
    EXPECT_TRUE(seen.insert(uuid).second);
  }
}

TEST(Uuid, HashTakesEveryByte) {
  const Uuid plain = *Uuid::parse(sample);
  for (std::size_t i = 0; i < plain.bytes.size(); ++i) {
    Uuid other = plain;
    other.bytes[i] ^= 1;
    EXPECT_NE(std::hash<Uuid>{}(other), std::hash<Uuid>{}(plain)) << i;
  }
  EXPECT_EQ(std::hash<Uuid>{}(*Uuid::parse(sample)), std::hash<Uuid>{}(plain));
}

}  // namespace
}  // namespace base
