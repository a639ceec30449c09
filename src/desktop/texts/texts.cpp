#include "desktop/texts/texts.hpp"

#include "platform/calendar/clock.hpp"

namespace desktop {
namespace {

constexpr Texts polish{
    .size = "_Rozmiar",
    .small = "_Mały",
    .medium = "_Średni",
    .large = "_Duży",
    .add = "_Dodaj widżet…",
    .remove = "_Usuń widżet",
    .reloadNow = "_Odśwież teraz",
    .nextReload = "Następne odświeżenie: %s",
    .noReload = "Trwa odświeżanie",
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
};

constexpr Texts english{
    .size = "_Size",
    .small = "_Small",
    .medium = "_Medium",
    .large = "_Large",
    .add = "_Add widget…",
    .remove = "_Remove widget",
    .reloadNow = "Refresh _now",
    .nextReload = "Next refresh: %s",
    .noReload = "Refreshing",
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
};

constexpr Texts lithuanian{
    .size = "_Dydis",
    .small = "_Mažas",
    .medium = "_Vidutinis",
    .large = "_Didelis",
    .add = "_Pridėti valdiklį…",
    .remove = "Pa_šalinti valdiklį",
    .reloadNow = "_Atnaujinti dabar",
    .nextReload = "Kitas atnaujinimas: %s",
    .noReload = "Atnaujinama",
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

std::string nextReloadLine(const Texts& texts, std::optional<absl::Time> reload) {
  if (!reload) return texts.noReload;
  const auto zone = platform::SystemClock().calendar().timeZone();
  std::string line = texts.nextReload;
  line.replace(line.find("%s"), 2, absl::FormatTime("%H:%M", *reload, zone));
  return line;
}

}  // namespace desktop
