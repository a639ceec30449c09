#include "widzety/texts/tabela.hpp"

#include <algorithm>
#include <functional>
#include <iterator>

namespace widzety {
namespace {

struct Wiersz {
  std::string_view polski;
  std::string_view angielski;
  std::string_view litewski;
};

constexpr Wiersz tabela[] = {
#include "widzety/texts/tabela.inc"
};

// std::string_view compares bytes as unsigned, and the order of UTF-8 bytes is that of the code points.
static_assert(std::string_view("z") < std::string_view("ó"));

static_assert(std::size(tabela) == liczbaWierszy, "a row was added or lost");
static_assert(std::ranges::adjacent_find(tabela, std::ranges::greater_equal{}, &Wiersz::polski) == std::end(tabela),
              "a key is out of order or occurs twice");

constexpr ListaWierszy lista(std::string_view Wiersz::* jezyk) {
  ListaWierszy wiersze;
  std::ranges::transform(tabela, wiersze.begin(),
                         [jezyk](const Wiersz& wiersz) { return Tlumaczenie{wiersz.polski, wiersz.*jezyk}; });
  return wiersze;
}

}  // namespace

constexpr ListaWierszy wierszeAngielskie = lista(&Wiersz::angielski);
constexpr ListaWierszy wierszeLitewskie = lista(&Wiersz::litewski);

}  // namespace widzety
