#include "widzety/api/blad_api.hpp"

#include <limits>

#include <gtest/gtest.h>

namespace widzety {
namespace {

TEST(BladApiTest, ServerSentenceNamesTheStatusInPolishInEveryLanguage) {
  for (const auto jezyk : {Jezyk::pl, Jezyk::en, Jezyk::lt}) {
    EXPECT_EQ(BladApi::serwer(500, "<h1>ups</h1>").opis(jezyk), "Serwer odpowiedział błędem 500.");
    EXPECT_EQ(BladApi::serwer(0, "Odpowiedź bez statusu").opis(jezyk), "Serwer odpowiedział błędem 0.");
    EXPECT_EQ(BladApi::serwer(-7, "").opis(jezyk), "Serwer odpowiedział błędem -7.");
    EXPECT_EQ(BladApi::serwer(std::numeric_limits<std::int64_t>::max(), "").opis(jezyk),
              "Serwer odpowiedział błędem 9223372036854775807.");
  }
}

TEST(BladApiTest, NetworkSentenceIsTranslatedWhateverTheTransportSaid) {
  const auto blad = BladApi::siec({.kind = platform::TransportError::Kind::timedOut, .description = "timed out"});
  EXPECT_EQ(blad.opis(Jezyk::pl), "Brak połączenia z Vambą.");
  EXPECT_EQ(blad.opis(Jezyk::en), "No connection to Vamba.");
  EXPECT_EQ(blad.opis(Jezyk::lt), "Nėra ryšio su Vamba.");
}

TEST(BladApiTest, CredentialSentencesAreTranslated) {
  EXPECT_EQ(BladApi::brakPoswiadczenia().opis(Jezyk::pl), "Zaloguj się w aplikacji Vamba.");
  EXPECT_EQ(BladApi::brakPoswiadczenia().opis(Jezyk::en), "Sign in to the Vamba app.");
  EXPECT_EQ(BladApi::wygaslo().opis(Jezyk::pl), "Poświadczenie wygasło — zaloguj się ponownie.");
  EXPECT_EQ(BladApi::wygaslo().opis(Jezyk::lt), "Prisijungimo duomenys nustojo galioti — prisijunkite iš naujo.");
}

TEST(BladApiTest, ReadingTheSentenceTwiceGivesTheSameText) {
  const auto blad = BladApi::wygaslo();
  EXPECT_EQ(blad.opis(), blad.opis());
}

TEST(BladApiTest, KeepsTheTransportsErrorWhole) {
  const platform::TransportError error{
      .kind = platform::TransportError::Kind::cannotConnect, .code = 7, .description = "refused"};
  EXPECT_EQ(std::get<BladApi::Siec>(BladApi::siec(error).przypadek()).blad, error);
}

}  // namespace
}  // namespace widzety
