#include "widzety/timeline/wpis_przykladowy.hpp"

#include "widzety/texts/tlumaczenia.hpp"

namespace widzety {

Wpis wpisPrzykladowy(const platform::Clock& zegar, Jezyk jezyk) {
  const absl::Time teraz = zegar.now();
  return {.date = teraz,
          .zadania = {{.id = base::Uuid::random(),
                       .numer = 12,
                       .tytul = tlumacz("Wysłać wniosek grantowy", jezyk),
                       .termin = teraz,
                       .status = "otwarte",
                       .projektNazwa = tlumacz("Pracownia", jezyk)},
                      {.id = base::Uuid::random(),
                       .numer = 15,
                       .tytul = tlumacz("Przejrzeć transkrypt narady", jezyk),
                       .termin = std::nullopt,
                       .status = "w_toku",
                       .projektNazwa = tlumacz("Wdrożenie", jezyk)}},
          .spotkania = {{.id = base::Uuid::random(),
                         .tytul = tlumacz("Narada zespołu", jezyk),
                         .kiedy = teraz + absl::Seconds(5400),
                         .czasTrwaniaMin = 60,
                         .projektNazwa = tlumacz("Pracownia", jezyk)}},
          .doDecyzji = 3};
}

}  // namespace widzety
