#include "widzety/model/rekordy.hpp"

#include <functional>
#include <string>
#include <type_traits>
#include <unordered_set>
#include <vector>

#include <gtest/gtest.h>

#include "widzety/model/skroty.hpp"

namespace widzety {
namespace {

const base::Uuid pierwszy = *base::Uuid::parse("6f1c2b9e-0d7a-4d0c-9a57-3e1f5b8c2d40");
const base::Uuid drugi = *base::Uuid::parse("6f1c2b9e-0d7a-4d0c-9a57-3e1f5b8c2d41");

const ZadanieMoje przykladoweZadanie{pierwszy, 7, "a", absl::FromUnixSeconds(5), "otwarte", "Dom"};
const SpotkaniePlanowane przykladoweSpotkanie{pierwszy, "a", absl::FromUnixSeconds(5), 30, "Dom"};
const PozycjaSkrzynki pozycja{pierwszy, "a"};

template <typename Rekord>
void sprawdzRozne(const Rekord& rekord, const std::vector<Rekord>& inne) {
  EXPECT_EQ(rekord, Rekord(rekord));
  EXPECT_EQ(std::hash<Rekord>{}(rekord), std::hash<Rekord>{}(Rekord(rekord)));
  std::unordered_set<std::size_t> skroty{std::hash<Rekord>{}(rekord)};
  for (std::size_t i = 0; i < inne.size(); ++i) {
    EXPECT_NE(rekord, inne[i]) << i;
    EXPECT_TRUE(skroty.insert(std::hash<Rekord>{}(inne[i])).second) << i;
  }
}

template <typename Rekord, typename Zmiana>
Rekord zmieniony(Rekord rekord, Zmiana zmiana) {
  zmiana(rekord);
  return rekord;
}

TEST(Rekordy, EqualityAndHashTakeEveryFieldOfATask) {
  sprawdzRozne<ZadanieMoje>(przykladoweZadanie,
                            {
                                zmieniony(przykladoweZadanie, [](auto& z) { z.id = drugi; }),
                                zmieniony(przykladoweZadanie, [](auto& z) { z.numer = 8; }),
                                zmieniony(przykladoweZadanie, [](auto& z) { z.tytul = "b"; }),
                                zmieniony(przykladoweZadanie, [](auto& z) { z.termin = absl::FromUnixSeconds(6); }),
                                zmieniony(przykladoweZadanie, [](auto& z) { z.termin.reset(); }),
                                zmieniony(przykladoweZadanie, [](auto& z) { z.status = "w_toku"; }),
                                zmieniony(przykladoweZadanie, [](auto& z) { z.projektNazwa = ""; }),
                            });
}

TEST(Rekordy, EqualityAndHashTakeEveryFieldOfAMeeting) {
  sprawdzRozne<SpotkaniePlanowane>(
      przykladoweSpotkanie, {
                                zmieniony(przykladoweSpotkanie, [](auto& s) { s.id = drugi; }),
                                zmieniony(przykladoweSpotkanie, [](auto& s) { s.tytul = "b"; }),
                                zmieniony(przykladoweSpotkanie, [](auto& s) { s.kiedy += absl::Nanoseconds(1); }),
                                zmieniony(przykladoweSpotkanie, [](auto& s) { s.czasTrwaniaMin = 31; }),
                                zmieniony(przykladoweSpotkanie, [](auto& s) { s.projektNazwa = "Praca"; }),
                                zmieniony(przykladoweSpotkanie, [](auto& s) { s.projektNazwa = ""; }),
                                zmieniony(przykladoweSpotkanie, [](auto& s) { s.projektNazwa.reset(); }),
                            });
}

TEST(Rekordy, EqualityAndHashTakeEveryFieldOfAnInboxItem) {
  sprawdzRozne<PozycjaSkrzynki>(pozycja, {
                                             zmieniony(pozycja, [](auto& p) { p.id = drugi; }),
                                             zmieniony(pozycja, [](auto& p) { p.tytul = "b"; }),
                                         });
}

TEST(Rekordy, AbsentEqualsOnlyAbsent) {
  const auto bezTerminu = zmieniony(przykladoweZadanie, [](auto& z) { z.termin.reset(); });
  EXPECT_EQ(bezTerminu, ZadanieMoje(bezTerminu));
  EXPECT_EQ(std::hash<ZadanieMoje>{}(bezTerminu), std::hash<ZadanieMoje>{}(ZadanieMoje(bezTerminu)));
}

/// Writes down what a record feeds to its hash.
struct Zapis {
  std::vector<std::string> kroki;
  void operator()(const base::Uuid& id) { kroki.push_back("uuid " + id.text()); }
  void operator()(std::uint8_t znacznik) { kroki.push_back("marker " + std::to_string(znacznik)); }
  void operator()(std::int64_t liczba) { kroki.push_back("integer " + std::to_string(liczba)); }
  void operator()(const std::string& tekst) { kroki.push_back("text " + tekst); }
  void operator()(absl::Time chwila) { kroki.push_back("instant " + std::to_string(absl::ToUnixSeconds(chwila))); }
};

template <typename Rekord>
std::vector<std::string> kroki(const Rekord& rekord) {
  Zapis zapis;
  zasil(zapis, rekord);
  return zapis.kroki;
}

TEST(Rekordy, FeedTheirFieldsInOrderWithAMarkerBeforeAnOptionalOne) {
  const std::string id = "uuid " + pierwszy.text();
  EXPECT_EQ(kroki(przykladoweZadanie),
            (std::vector<std::string>{id, "integer 7", "text a", "marker 1", "instant 5", "text otwarte", "text Dom"}));
  EXPECT_EQ(kroki(zmieniony(przykladoweZadanie, [](auto& z) { z.termin.reset(); })),
            (std::vector<std::string>{id, "integer 7", "text a", "marker 0", "text otwarte", "text Dom"}));
  EXPECT_EQ(kroki(przykladoweSpotkanie),
            (std::vector<std::string>{id, "text a", "instant 5", "integer 30", "marker 1", "text Dom"}));
  EXPECT_EQ(kroki(zmieniony(przykladoweSpotkanie, [](auto& s) { s.projektNazwa.reset(); })),
            (std::vector<std::string>{id, "text a", "instant 5", "integer 30", "marker 0"}));
  EXPECT_EQ(kroki(pozycja), (std::vector<std::string>{id, "text a"}));
}

TEST(Rekordy, HashDependsOnTheOrderOfTexts) {
  const auto odwrotnie = zmieniony(przykladoweZadanie, [](auto& z) { std::swap(z.status, z.projektNazwa); });
  EXPECT_NE(std::hash<ZadanieMoje>{}(przykladoweZadanie), std::hash<ZadanieMoje>{}(odwrotnie));
}

TEST(Rekordy, AreValuesThatAListMovesRatherThanCopies) {
  static_assert(std::is_nothrow_move_constructible_v<ZadanieMoje> && std::is_copy_assignable_v<ZadanieMoje>);
  static_assert(std::is_nothrow_move_constructible_v<SpotkaniePlanowane>);
  std::unordered_set<ZadanieMoje> zbior{przykladoweZadanie, przykladoweZadanie};
  EXPECT_EQ(zbior.size(), 1U);
}

}  // namespace
}  // namespace widzety
