#include "widzety/timeline/wczytywanie.hpp"

#include <chrono>
#include <exception>

#include "base/tasks/child_task.hpp"
#include "base/tasks/starting_line.hpp"
#include "widzety/api/klient.hpp"
#include "widzety/api/wspolne.hpp"
#include "widzety/texts/tlumaczenia.hpp"
#include "widzety/timeline/wybor.hpp"

namespace widzety {
namespace {

/// From the call to the last byte of the last answer.
constexpr auto najdluzszeWczytywanie = std::chrono::seconds(12);

struct Zdanie {
  std::string operator()(const BladApi& blad) const { return blad.opis(); }
  std::string operator()(const platform::DecodingError&) const {
    return tlumacz("Nie udało się odświeżyć.", biezacyJezyk());
  }
};

struct Przyczyna {
  std::string operator()(const BladApi& blad) const { return blad.przyczyna(); }
  std::string operator()(const platform::DecodingError& blad) const {
    std::string przyczyna = "the answer is malformed";
    if (!blad.codingPath.empty()) przyczyna += " at " + blad.codingPath;
    // The description of corrupted data may quote the service's text.
    if (blad.kind != platform::DecodingError::Kind::dataCorrupted) przyczyna += ": " + blad.description;
    return przyczyna;
  }
};

bool anulowano(const BladPobrania& blad) {
  const auto* api = std::get_if<BladApi>(&blad);
  const auto* siec = api == nullptr ? nullptr : std::get_if<BladApi::Siec>(&api->przypadek());
  return siec != nullptr && siec->blad.kind == platform::TransportError::Kind::cancelled;
}

Wpis wpisZBledem(const Otoczenie& otoczenie, const char* zasob, const BladPobrania& blad) {
  if (!anulowano(blad)) otoczenie.diagnostyka(std::string(zasob) + ": " + std::visit(Przyczyna{}, blad));
  return {.date = otoczenie.zegar.now(), .blad = std::visit(Zdanie{}, blad)};
}

/// Requests that run at the same time. Each reads the keychain for itself, and none is sent before all have read it: a
/// quick 401 deletes the token, and the other requests would report a missing token instead of an expired one.
class Pobierania {
 public:
  Pobierania(const KlientApi& klient, std::size_t ile, std::stop_token stop)
      : klient_(klient), odczytane_(ile), stop_(std::move(stop)) {}

  template <typename Wynik>
  base::ChildTask<std::expected<Wynik, BladPobrania>> zacznij(std::string_view sciezka) {
    return {stop_, [this, sciezka](std::stop_token wlasny) {
              return klient_.pobierz<Wynik>(sciezka, wlasny, [&] { odczytane_.arriveAndWait(wlasny); });
            }};
  }

 private:
  const KlientApi& klient_;
  base::StartingLine odczytane_;
  std::stop_token stop_;
};

}  // namespace

Wpis wczytajWpis(const Otoczenie& otoczenie, std::stop_token stop) try {
  const auto termin = base::Deadline::after(najdluzszeWczytywanie);
  // The HTTP library is made ready while the keychain answers.
  wspolnaSesja().prepare();
  const PekKluczy pek(otoczenie.magazyn, termin);
  if (const auto token = pek.czytaj(kontoTokenu); !token || token->empty()) {
    return wpisZBledem(otoczenie, "signed out", BladApi::brakPoswiadczenia());
  }

  const KlientApi klient(pek, termin);
  Pobierania pobierania(klient, 3, std::move(stop));
  auto pobieranieZadan = pobierania.zacznij<std::vector<ZadanieMoje>>("/moje/zadania");
  auto pobieranieSkrzynki = pobierania.zacznij<Skrzynka>("/skrzynka");
  auto pobieranieSpotkan = pobierania.zacznij<std::vector<SpotkaniePlanowane>>("/spotkania-planowane");

  // The first failure in this order is reported. A return cancels those that were not awaited and waits for their end.
  auto zadania = pobieranieZadan.await();
  if (!zadania) return wpisZBledem(otoczenie, "tasks", zadania.error());
  auto skrzynka = pobieranieSkrzynki.await();
  if (!skrzynka) return wpisZBledem(otoczenie, "inbox", skrzynka.error());
  auto spotkania = pobieranieSpotkan.await();
  if (!spotkania) return wpisZBledem(otoczenie, "meetings", spotkania.error());

  const absl::Time teraz = otoczenie.zegar.now();
  const platform::Calendar kalendarz = otoczenie.zegar.calendar();
  return {.date = teraz,
          .zadania = wybierzZadania(std::move(*zadania), teraz, kalendarz),
          .spotkania = wybierzSpotkania(std::move(*spotkania), teraz, kalendarz),
          .doDecyzji = std::ssize(skrzynka->zadania)};
} catch (const std::exception& blad) {  // no thread or no memory could be had
  otoczenie.diagnostyka(std::string("no memory or thread for the load: ") + blad.what());
  return {.date = otoczenie.zegar.now(), .blad = tlumacz("Nie udało się odświeżyć.", biezacyJezyk())};
}

}  // namespace widzety
