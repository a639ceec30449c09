#include "widzety/texts/jezyk.hpp"

#include "platform/languages/preferred_languages.hpp"

namespace widzety {

Jezyk wybierzJezyk(std::span<const std::string> preferowane) {
  if (preferowane.empty()) return Jezyk::pl;
  return jezykZWartosci(platform::primarySubtag(preferowane.front())).value_or(Jezyk::pl);
}

Jezyk biezacyJezyk() {
  static const Jezyk jezyk = wybierzJezyk(platform::preferredLanguages());
  return jezyk;
}

}  // namespace widzety
