#include "widzety/api/klient.hpp"

#include <gtest/gtest.h>

#include "support/service_stand_in.hpp"

namespace widzety {
namespace {

using support::HttpAnswer;

class Klient : public testing::Test {
 protected:
  std::expected<Skrzynka, BladPobrania> pobierz() {
    return KlientApi(PekKluczy(serwis_.keychain)).pobierz<Skrzynka>("/skrzynka", {});
  }

  /// The failure's case; fails the test where there was none of this kind.
  template <typename Przypadek>
  Przypadek blad() {
    const auto wynik = pobierz();
    if (!wynik) {
      if (const auto* api = std::get_if<BladApi>(&wynik.error())) {
        if (const auto* przypadek = std::get_if<Przypadek>(&api->przypadek())) return *przypadek;
      }
    }
    ADD_FAILURE() << "another outcome";
    return {};
  }

  bool nieOdczytano() {
    const auto wynik = pobierz();
    return !wynik && std::holds_alternative<platform::DecodingError>(wynik.error());
  }

  support::ServiceStandIn serwis_;
};

TEST_F(Klient, SendsOneGetWithTheTokenAndReadsTheRecords) {
  serwis_.inbox(R"({"zadania": [{"id": "00112233-4455-6677-8899-aabbccddeeff", "tytul": "Do decyzji"}]})");
  const auto skrzynka = pobierz();
  ASSERT_TRUE(skrzynka.has_value());
  EXPECT_EQ(skrzynka->zadania.size(), 1U);

  const auto zapytania = serwis_.server.requests();
  ASSERT_EQ(zapytania.size(), 1U);
  EXPECT_EQ(zapytania[0].raw.substr(0, zapytania[0].raw.find("\r\n")), "GET /api/skrzynka HTTP/1.1");
  EXPECT_EQ(zapytania[0].header("Authorization"), "Bearer tajne-7");
  EXPECT_EQ(zapytania[0].header("Accept"), "application/json");
  for (const char* pole : {"Cookie", "User-Agent", "Accept-Encoding", "Content-Length", "Referer"}) {
    EXPECT_EQ(zapytania[0].header(pole), std::nullopt) << pole;
  }
}

TEST_F(Klient, WithoutATokenMakesNoRequest) {
  serwis_.keychain.store("token-urzadzenia", "");
  blad<BladApi::BrakPoswiadczenia>();
  PekKluczy(serwis_.keychain).usun(kontoTokenu);
  blad<BladApi::BrakPoswiadczenia>();
  EXPECT_TRUE(serwis_.server.requests().empty());
}

TEST_F(Klient, SendsATrailingLineEndOfTheTokenWithoutMakingARequestOfIt) {
  serwis_.keychain.store("token-urzadzenia", "tajne\n");
  EXPECT_TRUE(pobierz().has_value());
  const auto zapytania = serwis_.server.requests();
  ASSERT_EQ(zapytania.size(), 1U);
  EXPECT_NE(zapytania[0].raw.find("Authorization: Bearer tajne\n"), std::string::npos);
}

TEST_F(Klient, RefusesATokenWhoseLineEndWouldBeginAnotherHeader) {
  serwis_.keychain.store("token-urzadzenia", "tajne\r\nX-Inne: 1");
  blad<BladApi::Siec>();
  EXPECT_TRUE(serwis_.server.requests().empty());
}

TEST_F(Klient, AddressThatIsNoUrlIsAServerErrorThatNamesIt) {
  for (const char* adres : {"http://exa mple/api", "http://[::1/api", "ż://x", "http://x/%zz"}) {
    serwis_.keychain.store("adres-api", adres);
    const auto serwer = blad<BladApi::Serwer>();
    EXPECT_EQ(serwer.status, 0) << adres;
    EXPECT_EQ(serwer.tresc, std::string("Zły adres: ") + adres);
  }
}

TEST_F(Klient, AddressWithoutSchemeAndHostCannotBeSent) {
  for (const char* adres : {"", "/api", "vamba.ferol.pl/api", "file:///etc", "ftp://127.0.0.1/api"}) {
    serwis_.keychain.store("adres-api", adres);
    blad<BladApi::Siec>();
  }
}

TEST_F(Klient, SendsThePathExactlyAsTheAddressMakesIt) {
  serwis_.keychain.store("adres-api", serwis_.server.url("/api/"));
  EXPECT_EQ(blad<BladApi::Serwer>().status, 404);
  serwis_.keychain.store("adres-api", serwis_.server.url("/a/../b/."));
  EXPECT_EQ(blad<BladApi::Serwer>().status, 404);
  const auto zapytania = serwis_.server.requests();
  ASSERT_EQ(zapytania.size(), 2U);
  EXPECT_EQ(zapytania[0].target, "/api//skrzynka");
  EXPECT_EQ(zapytania[1].target, "/a/../b/./skrzynka");
}

TEST_F(Klient, On401DeletesTheTokenAndKeepsTheAddress) {
  serwis_.server.answer("/api/skrzynka", {.status = 401, .body = R"({"zadania": []})"});
  blad<BladApi::Wygaslo>();
  EXPECT_FALSE(serwis_.keychain.holds("token-urzadzenia"));
  EXPECT_TRUE(serwis_.keychain.holds("adres-api"));
  blad<BladApi::BrakPoswiadczenia>();
  EXPECT_EQ(serwis_.server.requests().size(), 1U);
}

TEST_F(Klient, OtherStatusesAreServerErrorsWithTheBodyAsText) {
  for (const int status : {300, 301, 304, 400, 403, 404, 500, 503, 599}) {
    const bool bezTresci = status == 304;
    serwis_.server.answer("/api/skrzynka", {.status = status,
                                            .body = bezTresci ? "" : "treść",
                                            .headers = {{"Location", serwis_.server.url("/api/skrzynka")}}});
    const auto serwer = blad<BladApi::Serwer>();
    EXPECT_EQ(serwer.status, status);
    EXPECT_EQ(serwer.tresc, bezTresci ? "" : "treść");
  }
  EXPECT_TRUE(serwis_.keychain.holds("token-urzadzenia"));
}

TEST_F(Klient, BodyOfAnErrorThatIsNotUtf8IsTheEmptyText) {
  serwis_.server.answer("/api/skrzynka", {.status = 500, .body = "\xff\xfe"});
  EXPECT_EQ(blad<BladApi::Serwer>().tresc, "");
}

TEST_F(Klient, EveryStatusFrom200To299IsDecoded) {
  for (const int status : {200, 201, 206, 299}) {
    serwis_.server.answer("/api/skrzynka", {.status = status, .body = R"({"zadania": []})"});
    EXPECT_TRUE(pobierz().has_value()) << status;
  }
  serwis_.server.script("/api/skrzynka", {support::Send{"HTTP/1.1 204 No Content\r\n\r\n"}});
  EXPECT_TRUE(nieOdczytano());
}

TEST_F(Klient, BodyOfAnotherShapeIsADecodingError) {
  for (const char* tresc : {"", "[]", "{}", "null", R"({"zadania": [{}]})", R"({"zadania": []} x)", "<html>"}) {
    serwis_.inbox(tresc);
    EXPECT_TRUE(nieOdczytano()) << tresc;
  }
}

TEST_F(Klient, AnswerWithoutAStatusIsAServerError) {
  serwis_.server.script("/api/skrzynka", {support::Send{"zwykły tekst\n"}, support::Close{}});
  const auto serwer = blad<BladApi::Serwer>();
  EXPECT_EQ(serwer.status, 0);
  EXPECT_EQ(serwer.tresc, "Odpowiedź bez statusu");
}

TEST_F(Klient, SendsNoCookieBack) {
  serwis_.server.answer("/api/skrzynka",
                        {.body = R"({"zadania": []})", .headers = {{"Set-Cookie", "sesja=1; Path=/"}}});
  EXPECT_TRUE(pobierz().has_value());
  EXPECT_TRUE(pobierz().has_value());
  const auto zapytania = serwis_.server.requests();
  ASSERT_EQ(zapytania.size(), 2U);
  EXPECT_EQ(zapytania[1].header("Cookie"), std::nullopt);
}

TEST_F(Klient, ReadsTheKeychainAnewForEveryRequest) {
  EXPECT_TRUE(pobierz().has_value());
  serwis_.keychain.store("token-urzadzenia", "nowe-8");
  EXPECT_TRUE(pobierz().has_value());
  const auto zapytania = serwis_.server.requests();
  ASSERT_EQ(zapytania.size(), 2U);
  EXPECT_EQ(zapytania[1].header("Authorization"), "Bearer nowe-8");
}

TEST_F(Klient, StoppingTheCallerEndsTheTransferAsANetworkError) {
  serwis_.server.script("/api/skrzynka", {support::Stall{}});
  std::stop_source stop;
  std::jthread stopper([&] {
    serwis_.server.waitForRequests(1);
    stop.request_stop();
  });
  const auto wynik = KlientApi(PekKluczy(serwis_.keychain)).pobierz<Skrzynka>("/skrzynka", stop.get_token());
  ASSERT_FALSE(wynik.has_value());
  const auto& siec = std::get<BladApi::Siec>(std::get<BladApi>(wynik.error()).przypadek());
  EXPECT_EQ(siec.blad.kind, platform::TransportError::Kind::cancelled);
}

TEST(WspolnaSesja, KeepsNothingAndWaitsTwelveSeconds) {
  const auto& ustawienia = wspolnaSesja().configuration();
  EXPECT_EQ(ustawienia.timeoutIntervalForRequest, absl::Seconds(12));
  EXPECT_EQ(ustawienia.timeoutIntervalForResource, absl::Seconds(12));
  EXPECT_EQ(ustawienia.cookieAcceptPolicy, platform::CookieAcceptPolicy::never);
  EXPECT_FALSE(ustawienia.shouldSetCookies);
}

}  // namespace
}  // namespace widzety
