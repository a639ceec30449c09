// The interface language: the three languages there are, and the choice of one by the user's preferences.
// The texts are written in Polish. tlumaczenia.hpp translates them; platform/languages reads the user's preferences.
#pragma once

#include <cstddef>
#include <functional>
#include <optional>
#include <span>
#include <string>
#include <string_view>

namespace widzety {

enum class Jezyk { pl, en, lt };

/// The language's code: "pl", "en" or "lt". Static data.
constexpr std::string_view wartoscSurowa(Jezyk jezyk) {
  switch (jezyk) {
    case Jezyk::en:
      return "en";
    case Jezyk::lt:
      return "lt";
    case Jezyk::pl:
      break;
  }
  return "pl";
}

/// The language of a code, letter for letter; absent for any other text ("PL", "en-GB", "").
constexpr std::optional<Jezyk> jezykZWartosci(std::string_view wartosc) {
  for (const auto jezyk : {Jezyk::pl, Jezyk::en, Jezyk::lt}) {
    if (wartoscSurowa(jezyk) == wartosc) return jezyk;
  }
  return std::nullopt;
}

/// The language for a user with these preferred languages (tags such as "en-GB" or "lt_LT", most preferred first).
/// Only the first one counts, and Polish is the fall-back on purpose, not English: German first and English second
/// gives Polish.
Jezyk wybierzJezyk(std::span<const std::string> preferowane);

/// The language in force, chosen from the process's environment by the first call and kept until the process ends.
/// Safe under concurrent first use.
Jezyk biezacyJezyk();

}  // namespace widzety

/// A language hashes as its code does.
template <>
struct std::hash<widzety::Jezyk> {
  std::size_t operator()(widzety::Jezyk jezyk) const noexcept {
    return std::hash<std::string_view>{}(widzety::wartoscSurowa(jezyk));
  }
};
