#include "desktop/texts/texts.hpp"

#include <utility>

#include <absl/strings/str_join.h>

#include "platform/calendar/clock.hpp"

namespace desktop {
namespace {

constexpr Texts polish{
    .open = "Otwórz _Vambę",
    .size = "_Rozmiar",
    .small = "_Mały",
    .medium = "_Średni",
    .large = "_Duży",
    .zoom = "_Powiększenie",
    .appearance = "_Wygląd",
    .systemScheme = "Jak w _systemie",
    .light = "_Jasny",
    .dark = "_Ciemny",
    .solid = "_Pełne tło",
    .translucent = "Tło p_rzejrzyste",
    .noBackground = "_Bez tła",
    .noCompositing = "Przezroczystość wymaga menedżera kompozycji",
    .lock = "Za_blokuj położenie",
    .startAtLogin = "Uruchamiaj po za_logowaniu",
    .add = "_Dodaj widżet…",
    .remove = "_Usuń widżet",
    .undoRemoval = "_Cofnij usunięcie",
    .reloadNow = "_Odśwież teraz",
    .reloading = "Trwa odświeżanie…",
    .lastReload = "Ostatnie odświeżenie: %s",
    .nextReload = "Następne odświeżenie: %s",
    .quit = "_Zakończ",
    .galleryTitle = "Galeria widżetów",
    .addSmall = "Dodaj mały widżet",
    .addMedium = "Dodaj średni widżet",
    .addLarge = "Dodaj duży widżet",
    .addHint = "Wybierz rozmiar, żeby dodać widżet do pulpitu.",
    .addedTopLeft = "Dodano: u góry po lewej.",
    .addedTopRight = "Dodano: u góry po prawej.",
    .addedBottomLeft = "Dodano: u dołu po lewej.",
    .addedBottomRight = "Dodano: u dołu po prawej.",
    .loading = "Trwa wczytywanie",
    .openAction = "Otwórz Vambę",
    .menuAction = "Pokaż menu",
};

constexpr Texts english{
    .open = "_Open Vamba",
    .size = "_Size",
    .small = "_Small",
    .medium = "_Medium",
    .large = "_Large",
    .zoom = "_Zoom",
    .appearance = "_Appearance",
    .systemScheme = "_Follow the system",
    .light = "_Light",
    .dark = "_Dark",
    .solid = "_Solid background",
    .translucent = "_Translucent background",
    .noBackground = "_No background",
    .noCompositing = "Transparency needs a compositing manager",
    .lock = "_Lock position",
    .startAtLogin = "S_tart at login",
    .add = "A_dd widget…",
    .remove = "_Remove widget",
    .undoRemoval = "_Undo removal",
    .reloadNow = "Refresh _now",
    .reloading = "Refreshing…",
    .lastReload = "Last refresh: %s",
    .nextReload = "Next refresh: %s",
    .quit = "_Quit",
    .galleryTitle = "Widget gallery",
    .addSmall = "Add small widget",
    .addMedium = "Add medium widget",
    .addLarge = "Add large widget",
    .addHint = "Choose a size to add the widget to the desktop.",
    .addedTopLeft = "Added, top left.",
    .addedTopRight = "Added, top right.",
    .addedBottomLeft = "Added, bottom left.",
    .addedBottomRight = "Added, bottom right.",
    .loading = "Loading",
    .openAction = "Open Vamba",
    .menuAction = "Show the menu",
};

constexpr Texts lithuanian{
    .open = "Atidaryti _Vamba",
    .size = "_Dydis",
    .small = "_Mažas",
    .medium = "_Vidutinis",
    .large = "_Didelis",
    .zoom = "_Mastelis",
    .appearance = "_Išvaizda",
    .systemScheme = "_Kaip sistemoje",
    .light = "Š_viesi",
    .dark = "_Tamsi",
    .solid = "Vientisas _fonas",
    .translucent = "_Pusskaidris fonas",
    .noBackground = "_Be fono",
    .noCompositing = "Skaidrumui reikia kompozicijos tvarkytuvės",
    .lock = "_Užrakinti vietą",
    .startAtLogin = "Pa_leisti prisijungus",
    .add = "_Pridėti valdiklį…",
    .remove = "Pa_šalinti valdiklį",
    .undoRemoval = "A_tšaukti pašalinimą",
    .reloadNow = "_Atnaujinti dabar",
    .reloading = "Atnaujinama…",
    .lastReload = "Paskutinis atnaujinimas: %s",
    .nextReload = "Kitas atnaujinimas: %s",
    .quit = "_Baigti",
    .galleryTitle = "Valdiklių galerija",
    .addSmall = "Pridėti mažą valdiklį",
    .addMedium = "Pridėti vidutinį valdiklį",
    .addLarge = "Pridėti didelį valdiklį",
    .addHint = "Pasirinkite dydį, kad pridėtumėte valdiklį į darbalaukį.",
    .addedTopLeft = "Pridėta viršuje kairėje.",
    .addedTopRight = "Pridėta viršuje dešinėje.",
    .addedBottomLeft = "Pridėta apačioje kairėje.",
    .addedBottomRight = "Pridėta apačioje dešinėje.",
    .loading = "Įkeliama",
    .openAction = "Atidaryti Vamba",
    .menuAction = "Rodyti meniu",
};

}  // namespace

const Texts& textsFor(host::Language language) {
  switch (language) {
    case host::Language::english:
      return english;
    case host::Language::lithuanian:
      return lithuanian;
    case host::Language::polish:
      break;
  }
  return polish;
}

std::vector<std::string> reloadLines(const Texts& texts, const ReloadTimes& times, absl::Time now) {
  const auto zone = platform::SystemClock().calendar().timeZone();
  std::vector<std::string> lines;
  const auto add = [&](std::string line, const std::optional<absl::Time>& time) {
    if (!time) return;
    const bool today = absl::ToCivilDay(*time, zone) == absl::ToCivilDay(now, zone);
    line.replace(line.find("%s"), 2, absl::FormatTime(today ? "%H:%M" : "%Y-%m-%d %H:%M", *time, zone));
    lines.push_back(std::move(line));
  };
  add(texts.lastReload, times.last);
  add(texts.nextReload, times.next);
  return lines;
}

std::string reloadTooltip(const Texts& texts, const ReloadTimes& times, absl::Time now) {
  auto lines = reloadLines(texts, times, now);
  if (!times.next) lines.emplace_back(texts.reloading);
  return absl::StrJoin(lines, "\n");
}

}  // namespace desktop
