#include "widzety/timeline/wpis_przykladowy.hpp"

#include <gtest/gtest.h>

#include "support/fixed_clock.hpp"

namespace widzety {
namespace {

class WpisPrzykladowy : public testing::Test {
 protected:
  const support::FixedClock zegar_{"2025-03-14 10:30", support::zone("Europe/Warsaw")};
};

TEST_F(WpisPrzykladowy, HoldsTwoTasksOneMeetingAndThreeToDecide) {
  const Wpis wpis = wpisPrzykladowy(zegar_, Jezyk::pl);
  EXPECT_EQ(wpis.date, zegar_.now());
  EXPECT_EQ(wpis.doDecyzji, 3);
  EXPECT_EQ(wpis.blad, std::nullopt);

  ASSERT_EQ(wpis.zadania.size(), 2U);
  const ZadanieMoje pierwsze{wpis.zadania[0].id, 12, "Wysłać wniosek grantowy", zegar_.now(), "otwarte", "Pracownia"};
  const ZadanieMoje drugie{wpis.zadania[1].id, 15, "Przejrzeć transkrypt narady", std::nullopt, "w_toku", "Wdrożenie"};
  EXPECT_EQ(wpis.zadania[0], pierwsze);
  EXPECT_EQ(wpis.zadania[1], drugie);

  ASSERT_EQ(wpis.spotkania.size(), 1U);
  const SpotkaniePlanowane narada{wpis.spotkania[0].id, "Narada zespołu", zegar_.now() + absl::Minutes(90), 60,
                                  "Pracownia"};
  EXPECT_EQ(wpis.spotkania[0], narada);
}

TEST_F(WpisPrzykladowy, HasFreshIdentifiersEachTime) {
  const Wpis a = wpisPrzykladowy(zegar_, Jezyk::pl);
  const Wpis b = wpisPrzykladowy(zegar_, Jezyk::pl);
  EXPECT_FALSE(a.zadania[0].id == b.zadania[0].id);
  EXPECT_FALSE(a.zadania[0].id == a.zadania[1].id);
  EXPECT_FALSE(a.spotkania[0].id == b.spotkania[0].id);
}

TEST_F(WpisPrzykladowy, TranslatesWordsButNoStatus) {
  const Wpis lt = wpisPrzykladowy(zegar_, Jezyk::lt);
  EXPECT_EQ(lt.zadania[0].tytul, "Išsiųsti paraišką dotacijai");
  EXPECT_EQ(lt.zadania[1].projektNazwa, "Diegimas");
  EXPECT_EQ(lt.zadania[1].status, "w_toku");
  const Wpis en = wpisPrzykladowy(zegar_, Jezyk::en);
  EXPECT_EQ(en.spotkania[0].tytul, "Team meeting");
  EXPECT_EQ(en.spotkania[0].projektNazwa, "Workshop");
}

}  // namespace
}  // namespace widzety
