#include "widzety/view/wiersze.hpp"

#include "widzety/texts/tlumaczenia.hpp"
#include "widzety/view/klucz_hosta.hpp"

namespace widzety {
namespace {

using namespace platform;
using namespace protocol;

View tytulWiersza(const std::string& tytul) {
  return Text(tytul).font(TextStyle::caption).lineLimit(1).role(TextRole::title);
}

Views liniaProjektu(const std::optional<std::string>& projektNazwa, WidgetFamily rozmiar) {
  return when(rozmiar != WidgetFamily::systemSmall && projektNazwa.has_value(), [&] {
    return Text(*projektNazwa)
        .font(TextStyle::caption2)
        .foregroundStyle(ForegroundStyle::tertiary)
        .lineLimit(1)
        .role(TextRole::project);
  });
}

View godzina(absl::Time kiedy, const Calendar& kalendarz) {
  return Text(absl::FormatTime("%H:%M", kiedy, kalendarz.timeZone()))
      .font(TextStyle::caption2)
      .weight(FontWeight::semibold)
      .monospacedDigit()
      .foregroundStyle(ForegroundStyle::tint)
      .role(TextRole::time);
}

View numerZadania(std::int64_t numer, Jezyk jezyk) {
  return Text(kluczHosta("#%lld", {numer}, jezyk))
      .font(TextStyle::caption2)
      .monospacedDigit()
      .foregroundStyle(ForegroundStyle::secondary);
}

/// Every meeting that is not today counts as tomorrow's: a loaded list reaches no further.
Views znakJutra(const SpotkaniePlanowane& spotkanie, const ChwilaRysowania& chwila) {
  return when(!chwila.kalendarz.isSameDay(spotkanie.kiedy, chwila.teraz), [&] {
    return Text(tlumacz("jutro", chwila.jezyk))
        .font(TextStyle::caption2)
        .foregroundStyle(ForegroundStyle::secondary)
        .role(TextRole::day);
  });
}

/// Overdue is a matter of days: due at any time today is not overdue.
bool zalegle(const ZadanieMoje& zadanie, const ChwilaRysowania& chwila) {
  return zadanie.termin && chwila.kalendarz.day(*zadanie.termin) < chwila.kalendarz.day(chwila.teraz);
}

Views znakZaleglosci(const ZadanieMoje& zadanie, const ChwilaRysowania& chwila) {
  return when(zalegle(zadanie, chwila), [&] {
    return Text(tlumacz("zaległe", chwila.jezyk))
        .font(TextStyle::caption2)
        .weight(FontWeight::semibold)
        .foregroundStyle(ForegroundStyle::red)
        .role(TextRole::overdue);
  });
}

/// The narrow leading column and the column of texts, on one baseline.
View wiersz(View kolumnaWiodaca, Children kolumnaTekstu) {
  return HStack({.alignment = VerticalAlignment::firstTextBaseline, .spacing = 6},
                {
                    std::move(kolumnaWiodaca),
                    VStack({.alignment = HorizontalAlignment::leading}, std::move(kolumnaTekstu)),
                });
}

}  // namespace

View wierszSpotkania(const SpotkaniePlanowane& spotkanie, const ChwilaRysowania& chwila) {
  return wiersz(godzina(spotkanie.kiedy, chwila.kalendarz), {
                                                                tytulWiersza(spotkanie.tytul),
                                                                liniaProjektu(spotkanie.projektNazwa, chwila.rozmiar),
                                                                znakJutra(spotkanie, chwila),
                                                            });
}

View wierszZadania(const ZadanieMoje& zadanie, const ChwilaRysowania& chwila) {
  return wiersz(numerZadania(zadanie.numer, chwila.jezyk), {
                                                               tytulWiersza(zadanie.tytul),
                                                               liniaProjektu(zadanie.projektNazwa, chwila.rozmiar),
                                                               znakZaleglosci(zadanie, chwila),
                                                           });
}

}  // namespace widzety
