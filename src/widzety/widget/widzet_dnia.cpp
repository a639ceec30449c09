#include "widzety/widget/widzet_dnia.hpp"

#include "platform/widget_kit/static_configuration.hpp"
#include "widzety/texts/tlumaczenia.hpp"
#include "widzety/timeline/dostawca.hpp"
#include "widzety/timeline/wpis_json.hpp"
#include "widzety/view/widok_dnia.hpp"

namespace widzety {

platform::SomeWidgetConfiguration WidzetDnia::body() const {
  using enum protocol::WidgetFamily;
  const auto tresc = [&zegar = otoczenie_.zegar](Wpis wpis, const platform::FamilyEnvironment& rozmiar) {
    return WidokDnia{.wpis = std::move(wpis), .rozmiar = rozmiar}.body(zegar);
  };
  return platform::StaticConfiguration("pl.ferol.vamba.widzety.dzien", std::make_unique<Dostawca>(otoczenie_), tresc)
      .configurationDisplayName(tlumacz("Vamba — spotkania i zadania", biezacyJezyk()))
      .description(tlumacz("Najbliższe spotkania oraz zadania: zaległe, na dziś i bez terminu.", biezacyJezyk()))
      .supportedFamilies({systemSmall, systemMedium, systemLarge});
}

std::vector<platform::OpenTarget> WidzetDnia::opens() const {
  using enum platform::OpenTarget::Kind;
  return {{desktopEntry, "pl.ferol.vamba"}, {url, "https://vamba.ferol.pl"}};
}

std::vector<std::unique_ptr<platform::Widget>> PakietWidzetow::body() const {
  std::vector<std::unique_ptr<platform::Widget>> widzety;
  widzety.push_back(std::make_unique<WidzetDnia>(otoczenie_));
  return widzety;
}

}  // namespace widzety
