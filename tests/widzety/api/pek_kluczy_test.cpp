#include "widzety/api/pek_kluczy.hpp"

#include <gmock/gmock.h>

#include "support/memory_keychain.hpp"

namespace widzety {
namespace {

using platform::KeychainKey;
using platform::KeychainQuery;
using testing::ElementsAre;

class PekKluczyTest : public testing::Test {
 protected:
  support::MemoryKeychain magazyn_;
  const PekKluczy pek_{magazyn_};
};

TEST_F(PekKluczyTest, IdentifiesAnItemByFourAttributesInOrder) {
  const KeychainQuery expected{{KeychainKey::itemClass, "generic-password"},
                               {KeychainKey::service, "pl.ferol.vamba"},
                               {KeychainKey::account, "adres-api"},
                               {KeychainKey::accessGroup, "QX4R2M7K9A.pl.ferol.vamba"}};
  EXPECT_EQ(PekKluczy::zapytanie("adres-api"), expected);
}

TEST_F(PekKluczyTest, AsksForTheDataOfOneItemWhenReadingAndForNothingWhenDeleting) {
  auto reading = PekKluczy::zapytanie("token-urzadzenia");
  reading.emplace_back(KeychainKey::returnData, true);
  reading.emplace_back(KeychainKey::matchLimit, platform::MatchLimit::one);
  pek_.czytaj(kontoTokenu);
  pek_.usun(kontoTokenu);
  EXPECT_THAT(magazyn_.queries(), ElementsAre(reading, PekKluczy::zapytanie("token-urzadzenia")));
}

TEST_F(PekKluczyTest, ReadsTheTextExactlyAsStored) {
  EXPECT_EQ(pek_.czytaj(kontoTokenu), std::nullopt);
  for (const std::string& text : {std::string("żółw"), std::string(" a \r\n"), std::string(), std::string("a\0b", 3)}) {
    magazyn_.store("token-urzadzenia", text);
    EXPECT_EQ(pek_.czytaj(kontoTokenu), text);
  }
}

TEST_F(PekKluczyTest, TakesBytesThatAreNotUtf8ForAbsent) {
  for (const char* bytes : {"ab\xff\xfe", "\xc3", "\xed\xa0\x80"}) {
    magazyn_.store("token-urzadzenia", bytes);
    EXPECT_EQ(pek_.czytaj(kontoTokenu), std::nullopt);
  }
}

TEST_F(PekKluczyTest, DeletesTheTokenAndLeavesTheAddress) {
  magazyn_.store("token-urzadzenia", "t");
  magazyn_.store("adres-api", "http://localhost/api");
  pek_.usun(kontoTokenu);
  pek_.usun(kontoTokenu);
  EXPECT_EQ(pek_.czytaj(kontoTokenu), std::nullopt);
  EXPECT_EQ(pek_.czytaj(kontoAdresu), "http://localhost/api");
}

}  // namespace
}  // namespace widzety
