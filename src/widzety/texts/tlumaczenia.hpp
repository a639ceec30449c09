// Looks up the translation of a Polish text in the rows of tabela.hpp.
//
//   tlumacz("jutro", Jezyk::en)       // "tomorrow"
//   tlumacz("Zakupy", Jezyk::en)      // "Zakupy": the table has no such text
#pragma once

#include <span>
#include <string>
#include <string_view>
#include <unordered_map>

#include "widzety/texts/jezyk.hpp"
#include "widzety/texts/tabela.hpp"

namespace widzety {

/// Polish text to translation; both views are into the row list that the map was built from.
using MapaTlumaczen = std::unordered_map<std::string_view, std::string_view>;

/// The map of one row list, which must outlive it. A duplicate key is a mistake in the table and aborts the
/// program.
MapaTlumaczen zbudujMape(std::span<const Tlumaczenie> wiersze);

/// The translation of a Polish text, or the text itself, byte for byte, where there is none. It never fails.
/// Texts are equal when they are canonically equivalent (UAX #15: "ę" is "e" with a combining ogonek); blanks and case
/// count, and bytes that are not UTF-8 equal no key. The result is the caller's own: it outlives `tekst`.
/// The first lookup in another language than Polish builds the maps of both; safe under concurrent first use.
std::string tlumacz(std::string_view tekst, Jezyk jezyk);

}  // namespace widzety
