#include "widzety/view/widok_dnia.hpp"

#include <algorithm>
#include <span>

#include "widzety/texts/tlumaczenia.hpp"
#include "widzety/view/klucz_hosta.hpp"
#include "widzety/view/wiersze.hpp"

namespace widzety {
namespace {

using namespace platform;
using namespace protocol;

/// How many rows of each kind the size has room for. The line that stands for missing meetings takes a task's place.
struct Limity {
  std::size_t spotkan;
  std::size_t zadan;

  Limity(const Wpis& wpis, WidgetFamily rozmiar) {
    const bool maly = rozmiar == WidgetFamily::systemSmall;
    const int zajete = wpis.spotkania.empty() || maly ? 1 : 2;
    spotkan = maly ? 1 : 2;
    zadan = static_cast<std::size_t>(std::max((maly ? 2 : 5) - zajete, 1));
  }
};

template <typename Element>
std::span<const Element> pierwsze(const std::vector<Element>& lista, std::size_t limit) {
  return std::span(lista).first(std::min(lista.size(), limit));
}

std::size_t ukryte(std::size_t liczba, std::size_t limit) { return liczba > limit ? liczba - limit : 0; }

View plakietka(std::int64_t doDecyzji, Jezyk jezyk) {
  return Text(kluczHosta("%lld do decyzji", {doDecyzji}, jezyk))
      .font(TextStyle::caption2)
      .weight(FontWeight::medium)
      .padding({.top = 2, .leading = 6, .bottom = 2, .trailing = 6})
      .background({.corners = CapsuleCorners::continuous, .fill = ForegroundStyle::tint, .opacity = 0.15});
}

View naglowek(const Wpis& wpis, Jezyk jezyk) {
  return HStack({.alignment = VerticalAlignment::center, .spacing = 6},
                {
                    Text(kluczHosta("Vamba", {}, jezyk)).font(TextStyle::headline),
                    Spacer(),
                    when(wpis.doDecyzji >= 1, [&] { return plakietka(wpis.doDecyzji, jezyk); }),
                });
}

/// The one sentence of a board that has nothing to list.
View zdanie(const std::string& tekst) {
  return Text(tekst).font(TextStyle::caption).foregroundStyle(ForegroundStyle::secondary);
}

View drobnaLinia(Text tekst) {
  return std::move(tekst).font(TextStyle::caption2).foregroundStyle(ForegroundStyle::tertiary);
}

Views sekcjaSpotkan(const Wpis& wpis, const Limity& limity, const ChwilaRysowania& chwila) {
  if (wpis.spotkania.empty()) return drobnaLinia(Text(tlumacz("Brak umówionych spotkań", chwila.jezyk)));
  return forEach(pierwsze(wpis.spotkania, limity.spotkan),
                 [&](const SpotkaniePlanowane& spotkanie) { return wierszSpotkania(spotkanie, chwila); });
}

Views sekcjaZadan(const Wpis& wpis, const Limity& limity, const ChwilaRysowania& chwila) {
  return forEach(pierwsze(wpis.zadania, limity.zadan),
                 [&](const ZadanieMoje& zadanie) { return wierszZadania(zadanie, chwila); });
}

View tablica(Children tresc) {
  return VStack({.alignment = HorizontalAlignment::leading, .spacing = 6}, std::move(tresc))
      .padding(12)
      .containerBackground(ContainerBackground::background);
}

}  // namespace

Node WidokDnia::body(const Clock& zegar, Jezyk jezyk) const {
  const ChwilaRysowania chwila{rozmiar(), zegar.now(), zegar.calendar(), jezyk};
  if (wpis.blad) return tablica({naglowek(wpis, jezyk), zdanie(*wpis.blad)});
  if (wpis.spotkania.empty() && wpis.zadania.empty()) {
    return tablica({naglowek(wpis, jezyk), zdanie(tlumacz("Nic na dziś.", jezyk))});
  }

  const Limity limity(wpis, chwila.rozmiar);
  const auto wiecej = static_cast<std::int64_t>(ukryte(wpis.spotkania.size(), limity.spotkan) +
                                                ukryte(wpis.zadania.size(), limity.zadan));
  return tablica({
      naglowek(wpis, jezyk),
      sekcjaSpotkan(wpis, limity, chwila),
      when(!wpis.zadania.empty(), [] { return Divider().padding({.top = 1, .bottom = 1}); }),
      sekcjaZadan(wpis, limity, chwila),
      when(wiecej >= 1, [&] { return drobnaLinia(Text(kluczHosta("i %lld więcej", {wiecej}, jezyk))); }),
  });
}

}  // namespace widzety
