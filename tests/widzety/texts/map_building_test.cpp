// Counts the allocations of lookups, which show when the translation maps are built.
#include <cstddef>
#include <cstdlib>
#include <new>

#include <gtest/gtest.h>

#include "widzety/texts/tlumaczenia.hpp"

namespace {
std::size_t alokacje = 0;
}

// Not inlined: g++ would see `free` meet a `new` and warn.
[[gnu::noinline]] void* operator new(std::size_t rozmiar) {
  ++alokacje;
  if (void* pamiec = std::malloc(rozmiar == 0 ? 1 : rozmiar)) return pamiec;
  throw std::bad_alloc();
}
[[gnu::noinline]] void operator delete(void* pamiec) noexcept { std::free(pamiec); }
[[gnu::noinline]] void operator delete(void* pamiec, std::size_t) noexcept { std::free(pamiec); }

namespace widzety {
namespace {

/// Allocations of one lookup. The texts below are short enough to need none for themselves.
std::size_t alokacjeWyszukania(Jezyk jezyk) {
  const auto przed = alokacje;
  const auto tekst = tlumacz("jutro", jezyk);
  const auto po = alokacje;
  EXPECT_LT(tekst.size(), 15U);
  return po - przed;
}

TEST(TranslationMaps, AreBuiltBothByTheFirstLookupThatIsNotPolish) {
  EXPECT_EQ(alokacjeWyszukania(Jezyk::pl), 0U);
  EXPECT_GE(alokacjeWyszukania(Jezyk::en), 2 * liczbaWierszy);
  EXPECT_EQ(alokacjeWyszukania(Jezyk::lt), 0U);
  EXPECT_EQ(alokacjeWyszukania(Jezyk::en), 0U);
}

TEST(TranslationMaps, AreMadeWithRoomForAllRowsAtOnce) {
  const auto przed = alokacje;
  const auto mapa = zbudujMape(wierszeLitewskie);
  const auto po = alokacje;
  EXPECT_EQ(mapa.size(), liczbaWierszy);
  EXPECT_EQ(po - przed, liczbaWierszy + 1);  // one for each row and one for the buckets, never grown
}

}  // namespace
}  // namespace widzety
