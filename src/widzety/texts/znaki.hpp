// What can be proved of the table's texts while they are compiled: that they are UTF-8 in normalisation form C.
#pragma once

#include <cstddef>
#include <optional>
#include <string_view>

namespace widzety {

/// The characters beyond printable ASCII and the line break that the table may hold: the letters of Polish and
/// Lithuanian, each as its one precomposed code point, and the punctuation in use. It holds no combining mark, and
/// every one of them is its own normal form.
inline constexpr std::u32string_view dozwoloneZnaki =
    U"ĄĆĘŁŃÓŚŹŻąćęłńóśźż"
    U"ČĖĮŠŲŪŽčėįšųūž"
    U"—…→“”„";

/// Takes the first character off a UTF-8 text. Absent where the bytes are no character or one of four bytes, of which
/// the table has none.
constexpr std::optional<char32_t> zdejmijZnak(std::string_view& tekst) {
  if (tekst.empty()) return std::nullopt;
  const auto pierwszy = static_cast<unsigned char>(tekst.front());
  std::size_t dlugosc = 1;
  char32_t znak = pierwszy;
  char32_t najmniejszy = 0;  // anything less would be an overlong form
  if (pierwszy >= 0xE0 && pierwszy < 0xF0) {
    dlugosc = 3, znak = pierwszy & 0x0FU, najmniejszy = 0x800;
  } else if (pierwszy >= 0xC0 && pierwszy < 0xE0) {
    dlugosc = 2, znak = pierwszy & 0x1FU, najmniejszy = 0x80;
  } else if (pierwszy >= 0x80) {
    return std::nullopt;
  }
  if (tekst.size() < dlugosc) return std::nullopt;
  for (std::size_t i = 1; i < dlugosc; ++i) {
    const auto bajt = static_cast<unsigned char>(tekst[i]);
    if ((bajt & 0xC0U) != 0x80U) return std::nullopt;
    znak = (znak << 6U) | (bajt & 0x3FU);
  }
  if (znak < najmniejszy) return std::nullopt;
  tekst.remove_prefix(dlugosc);
  return znak;
}

/// Whether a text is well-formed UTF-8 made only of the characters above, ASCII and line breaks. Such a text is NFC:
/// all of them are starters that normalisation leaves alone and that compose with nothing before them (UAX #15,
/// quick check "Yes"). It is a narrower test than NFC itself: a text with another letter, "é" say, fails it until that
/// letter is looked up and added above; the tests put the whole set and every row through the full algorithm.
constexpr bool zDozwolonychZnakow(std::string_view tekst) {
  while (!tekst.empty()) {
    const auto znak = zdejmijZnak(tekst);
    if (!znak) return false;
    const bool ascii = (*znak >= U' ' && *znak <= U'~') || *znak == U'\n';
    if (!ascii && !dozwoloneZnaki.contains(*znak)) return false;
  }
  return true;
}

}  // namespace widzety
