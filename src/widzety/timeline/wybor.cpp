#include "widzety/timeline/wybor.hpp"

#include <algorithm>

namespace widzety {

std::vector<ZadanieMoje> wybierzZadania(std::vector<ZadanieMoje> zadania, absl::Time teraz,
                                        const platform::Calendar& kalendarz) {
  const absl::CivilDay dzis = kalendarz.day(teraz);
  std::erase_if(zadania, [&](const ZadanieMoje& zadanie) {
    const bool zamkniete = zadanie.status == "zrobione" || zadanie.status == "odrzucone";
    return zamkniete || !zadanie.termin || kalendarz.day(*zadanie.termin) > dzis;
  });
  std::ranges::stable_sort(zadania, {}, [&](const ZadanieMoje& zadanie) { return kalendarz.day(*zadanie.termin); });
  return zadania;
}

std::vector<SpotkaniePlanowane> wybierzSpotkania(std::vector<SpotkaniePlanowane> spotkania, absl::Time teraz,
                                                 const platform::Calendar& kalendarz) {
  const absl::Time koniec = kalendarz.startOfDayAfter(teraz, 2).value_or(teraz);
  std::erase_if(spotkania, [&](const SpotkaniePlanowane& spotkanie) {
    return spotkanie.kiedy < teraz || spotkanie.kiedy >= koniec;
  });
  std::ranges::stable_sort(spotkania, {}, &SpotkaniePlanowane::kiedy);
  return spotkania;
}

}  // namespace widzety
