// The translation table as data: every Polish text with its English and Lithuanian beside it (tabela.inc), and the two
// row lists made from it. Compiling tabela.cpp checks the order of the keys, the tests check the normal form.
// tlumaczenia.hpp looks texts up.
#pragma once

#include <array>
#include <cstddef>
#include <string_view>

namespace widzety {

inline constexpr std::size_t liczbaWierszy = 308;

/// A Polish text and its translation into one language. Both are static data in UTF-8, normalised to NFC.
struct Tlumaczenie {
  std::string_view klucz;
  std::string_view tekst;
};

using ListaWierszy = std::array<Tlumaczenie, liczbaWierszy>;

/// The same keys in the same order, ascending by code point.
extern const ListaWierszy wierszeAngielskie;
extern const ListaWierszy wierszeLitewskie;

}  // namespace widzety
