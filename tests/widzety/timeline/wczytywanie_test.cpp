#include "widzety/timeline/wczytywanie.hpp"

#include <algorithm>
#include <condition_variable>
#include <mutex>

#include <gmock/gmock.h>

#include "support/fixed_clock.hpp"
#include "support/service_stand_in.hpp"
#include "widzety/api/pek_kluczy.hpp"

namespace widzety {
namespace {

using testing::IsEmpty;
using testing::SizeIs;

constexpr const char* zadanieNaDzis = R"([{"id": "00112233-4455-6677-8899-aabbccddeeff", "numer": 7, "tytul": "Na dziś",
    "termin": "2025-03-14", "status": "otwarte", "projekt_nazwa": "Pracownia"}])";
constexpr const char* spotkanieDzis = R"([{"id": "10112233-4455-6677-8899-aabbccddeeff", "tytul": "Narada",
    "kiedy": "2025-03-14T12:00:00+01:00", "czas_trwania_min": 30}])";
constexpr const char* trzyDoDecyzji = R"({"zadania": [
    {"id": "20112233-4455-6677-8899-aabbccddeeff", "tytul": "a"},
    {"id": "30112233-4455-6677-8899-aabbccddeeff", "tytul": "b"},
    {"id": "40112233-4455-6677-8899-aabbccddeeff", "tytul": "c"}]})";

class WczytajWpis : public testing::Test {
 protected:
  Wpis wczytaj() { return wczytajWpis({zegar_, serwis_.keychain, taski_}, stop_.get_token()); }

  /// That the entry holds the sentence and nothing else.
  void oczekujZdania(const Wpis& wpis, const std::string& zdanie) {
    EXPECT_EQ(wpis.blad, zdanie);
    EXPECT_EQ(wpis.date, zegar_.now());
    EXPECT_THAT(wpis.zadania, IsEmpty());
    EXPECT_THAT(wpis.spotkania, IsEmpty());
    EXPECT_EQ(wpis.doDecyzji, 0);
  }

  void zwyklyDzien() {
    serwis_.tasks(zadanieNaDzis);
    serwis_.inbox(trzyDoDecyzji);
    serwis_.meetings(spotkanieDzis);
  }

  support::FixedClock zegar_{"2025-03-14 10:30", support::zone("Europe/Warsaw")};
  support::ServiceStandIn serwis_;
  base::TaskGroup taski_;
  std::stop_source stop_;
};

TEST_F(WczytajWpis, BuildsTheDayFromThreeResources) {
  zwyklyDzien();
  const Wpis wpis = wczytaj();
  EXPECT_EQ(wpis.blad, std::nullopt);
  EXPECT_EQ(wpis.date, zegar_.now());
  EXPECT_THAT(wpis.zadania, SizeIs(1));
  EXPECT_THAT(wpis.spotkania, SizeIs(1));
  EXPECT_EQ(wpis.doDecyzji, 3);
}

TEST_F(WczytajWpis, CountsNoDecisionsInAnEmptyInbox) { EXPECT_EQ(wczytaj().doDecyzji, 0); }

TEST_F(WczytajWpis, AsksToSignInWithoutATokenAndMakesNoRequest) {
  for (const bool pusty : {false, true}) {
    serwis_.keychain.deleteItems(PekKluczy::zapytanie("token-urzadzenia"));
    if (pusty) serwis_.keychain.store("token-urzadzenia", "");
    oczekujZdania(wczytaj(), "Zaloguj się w aplikacji Vamba.");
  }
  EXPECT_THAT(serwis_.server.requests(), IsEmpty());
}

TEST_F(WczytajWpis, AsksForAllThreeBeforeAnyIsAnswered) {
  const auto wszystkie = std::make_shared<support::Event>();
  for (const char* sciezka : {"/api/moje/zadania", "/api/spotkania-planowane"}) {
    serwis_.server.script(sciezka,
                          {support::Await{wszystkie}, support::Send{support::HttpAnswer{.body = "[]"}.bytes()}});
  }
  serwis_.server.script("/api/skrzynka",
                        {support::Await{wszystkie}, support::Send{support::HttpAnswer{.body = trzyDoDecyzji}.bytes()}});
  std::jthread puszczenie([&] {
    EXPECT_TRUE(serwis_.server.waitForRequests(3));
    wszystkie->set();
  });
  EXPECT_EQ(wczytaj().doDecyzji, 3);
}

TEST_F(WczytajWpis, TellsTheTasksFailureWhateverElseFailsFirst) {
  // The tasks' answer is held until the two others have failed.
  const auto pozniej = std::make_shared<support::Event>();
  serwis_.server.script("/api/moje/zadania",
                        {support::Await{pozniej}, support::Send{support::HttpAnswer{.status = 503}.bytes()}});
  serwis_.server.answer("/api/skrzynka", {.status = 500});
  serwis_.server.answer("/api/spotkania-planowane", {.body = "nie json"});
  std::jthread puszczenie([&] {
    EXPECT_TRUE(serwis_.server.waitForRequests(3));
    pozniej->set();
  });
  oczekujZdania(wczytaj(), "Serwer odpowiedział błędem 503.");
}

TEST_F(WczytajWpis, CancelsTheRestOnTheFirstFailureAndWaitsForIt) {
  serwis_.server.answer("/api/moje/zadania", {.status = 500});
  serwis_.server.script("/api/skrzynka", {support::Stall{}});
  serwis_.server.script("/api/spotkania-planowane", {support::Stall{}});
  oczekujZdania(wczytaj(), "Serwer odpowiedział błędem 500.");
}

TEST_F(WczytajWpis, DropsWhatItHasWhenTheMeetingsFail) {
  zwyklyDzien();
  serwis_.meetings("{}");
  oczekujZdania(wczytaj(), "Nie udało się odświeżyć.");
}

TEST_F(WczytajWpis, WordsEachFailure) {
  zwyklyDzien();
  serwis_.server.script("/api/skrzynka", {support::Reset{}});
  oczekujZdania(wczytaj(), "Brak połączenia z Vambą.");
}

TEST_F(WczytajWpis, TellsThatTheCredentialExpiredThenAsksToSignIn) {
  serwis_.server.answer("/api/skrzynka", {.status = 401});
  oczekujZdania(wczytaj(), "Poświadczenie wygasło — zaloguj się ponownie.");
  oczekujZdania(wczytaj(), "Zaloguj się w aplikacji Vamba.");
}

/// A keychain that is slow with the token for the last of the three requests: it waits until the token is deleted, or a
/// while, as long as which a refusal would need at most.
class PekSpozniony final : public platform::Keychain {
 public:
  explicit PekSpozniony(platform::Keychain& pek) : pek_(pek) {}

  platform::KeychainResult copyMatching(const platform::KeychainQuery& zapytanie) override {
    constexpr int ostatni = 4;  // the load itself asks first
    std::unique_lock zamek(mutex_);
    const platform::KeychainQuery::value_type token{platform::KeychainKey::account, std::string(kontoTokenu)};
    const bool otoToken = std::ranges::find(zapytanie, token) != zapytanie.end();
    if (otoToken && ++odczyty_ == ostatni) {
      zmiana_.wait_for(zamek, std::chrono::milliseconds(500), [this] { return usuniety_; });
    }
    zamek.unlock();
    return pek_.copyMatching(zapytanie);
  }

  platform::KeychainStatus deleteItems(const platform::KeychainQuery& zapytanie) override {
    const auto wynik = pek_.deleteItems(zapytanie);
    const std::scoped_lock zamek(mutex_);
    usuniety_ = true;
    zmiana_.notify_all();
    return wynik;
  }

 private:
  platform::Keychain& pek_;
  std::mutex mutex_;
  std::condition_variable zmiana_;
  int odczyty_ = 0;
  bool usuniety_ = false;
};

TEST_F(WczytajWpis, QuickRefusalTakesTheTokenFromNoOtherRequest) {
  for (const char* sciezka : {"/api/moje/zadania", "/api/skrzynka", "/api/spotkania-planowane"}) {
    serwis_.server.answer(sciezka, {.status = 401});
  }
  PekSpozniony pek(serwis_.keychain);
  oczekujZdania(wczytajWpis({zegar_, pek, taski_}, {}), "Poświadczenie wygasło — zaloguj się ponownie.");
  EXPECT_EQ(serwis_.server.requests().size(), 3U);
}

TEST_F(WczytajWpis, ShowsNoEarlierDataAfterAFailure) {
  zwyklyDzien();
  EXPECT_EQ(wczytaj().blad, std::nullopt);
  serwis_.tasks("[{}]");
  oczekujZdania(wczytaj(), "Nie udało się odświeżyć.");
  serwis_.tasks("[]");
  EXPECT_EQ(wczytaj().doDecyzji, 3);
}

TEST_F(WczytajWpis, EndsWhenItIsStopped) {
  serwis_.server.script("/api/moje/zadania", {support::Stall{}});
  std::jthread stopper([&] {
    EXPECT_TRUE(serwis_.server.waitForRequests(1));
    stop_.request_stop();
  });
  oczekujZdania(wczytaj(), "Brak połączenia z Vambą.");
}

}  // namespace
}  // namespace widzety
