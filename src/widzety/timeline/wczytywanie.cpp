#include "widzety/timeline/wczytywanie.hpp"

#include "base/tasks/child_task.hpp"
#include "base/tasks/starting_line.hpp"
#include "widzety/api/klient.hpp"
#include "widzety/api/wspolne.hpp"
#include "widzety/texts/tlumaczenia.hpp"
#include "widzety/timeline/wybor.hpp"

namespace widzety {
namespace {

Wpis wpisZBledem(const platform::Clock& zegar, std::string blad) {
  return {.date = zegar.now(), .blad = std::move(blad)};
}

struct Zdanie {
  std::string operator()(const BladApi& blad) const { return blad.opis(); }
  std::string operator()(const platform::DecodingError&) const {
    return tlumacz("Nie udało się odświeżyć.", biezacyJezyk());
  }
};

/// Requests that run beside each other. Each reads the keychain for itself, and all have read it before the first is
/// sent: a quick 401 deletes the token, and its siblings would find the device signed out instead of expired.
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

Wpis wczytajWpis(const Otoczenie& otoczenie, std::stop_token stop) {
  // The HTTP library is made ready while the keychain answers.
  wspolnaSesja().prepare();
  const PekKluczy pek(otoczenie.magazyn);
  const auto token = pek.czytaj(kontoTokenu);
  if (!token || token->empty()) {
    return wpisZBledem(otoczenie.zegar, tlumacz("Zaloguj się w aplikacji Vamba.", biezacyJezyk()));
  }

  const KlientApi klient(pek);
  Pobierania pobierania(klient, 3, std::move(stop));
  auto pobieranieZadan = pobierania.zacznij<std::vector<ZadanieMoje>>("/moje/zadania");
  auto pobieranieSkrzynki = pobierania.zacznij<Skrzynka>("/skrzynka");
  auto pobieranieSpotkan = pobierania.zacznij<std::vector<SpotkaniePlanowane>>("/spotkania-planowane");

  // While the three are under way, what their answers will need: the first use of a time zone reads and unfolds its
  // file.
  static_cast<void>(wspolnyDekoder());
  static_cast<void>(otoczenie.zegar.calendar());

  // The order of waiting decides whose failure is told; leaving cancels what was not awaited and waits for it.
  auto zadania = pobieranieZadan.await();
  if (!zadania) return wpisZBledem(otoczenie.zegar, std::visit(Zdanie{}, zadania.error()));
  auto skrzynka = pobieranieSkrzynki.await();
  if (!skrzynka) return wpisZBledem(otoczenie.zegar, std::visit(Zdanie{}, skrzynka.error()));
  auto spotkania = pobieranieSpotkan.await();
  if (!spotkania) return wpisZBledem(otoczenie.zegar, std::visit(Zdanie{}, spotkania.error()));

  const absl::Time teraz = otoczenie.zegar.now();
  const platform::Calendar kalendarz = otoczenie.zegar.calendar();
  return {.date = teraz,
          .zadania = wybierzZadania(std::move(*zadania), teraz, kalendarz),
          .spotkania = wybierzSpotkania(std::move(*spotkania), teraz, kalendarz),
          .doDecyzji = std::ssize(skrzynka->zadania)};
}

}  // namespace widzety
