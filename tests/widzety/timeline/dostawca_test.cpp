#include "widzety/timeline/dostawca.hpp"

#include <future>

#include <gtest/gtest.h>

#include "support/fixed_clock.hpp"
#include "support/service_stand_in.hpp"

namespace widzety {
namespace {

using platform::Completion;
using platform::Timeline;

class DostawcaTest : public testing::Test {
 protected:
  std::future<Timeline<Wpis>> os() {
    auto obietnica = std::make_shared<std::promise<Timeline<Wpis>>>();
    dostawca_.getTimeline({}, Completion<Timeline<Wpis>>(
                                  [obietnica](Timeline<Wpis> timeline) { obietnica->set_value(std::move(timeline)); }));
    return obietnica->get_future();
  }
  std::future<Wpis> migawka(bool podglad) {
    auto obietnica = std::make_shared<std::promise<Wpis>>();
    dostawca_.getSnapshot({.isPreview = podglad},
                          Completion<Wpis>([obietnica](Wpis wpis) { obietnica->set_value(std::move(wpis)); }));
    return obietnica->get_future();
  }
  static bool gotowe(const auto& przyszlosc) {
    return przyszlosc.wait_for(std::chrono::seconds(0)) == std::future_status::ready;
  }

  support::FixedClock zegar_{"2025-03-14 10:30", support::zone("Europe/Warsaw")};
  support::ServiceStandIn serwis_;
  std::vector<std::string> linie_;  // of one load at a time
  base::TaskGroup taski_;
  const Dostawca dostawca_{
      Otoczenie{zegar_, serwis_.keychain, taski_, [this](std::string_view linia) { linie_.emplace_back(linia); }}};
};

TEST_F(DostawcaTest, PlaceholderAndPreviewAreTheSampleAtOnceAndTouchNothing) {
  EXPECT_EQ(dostawca_.placeholder({}).doDecyzji, 3);
  auto podglad = migawka(true);
  ASSERT_TRUE(gotowe(podglad));
  EXPECT_EQ(podglad.get().zadania.size(), 2U);
  EXPECT_EQ(serwis_.keychain.reads(), 0);
  EXPECT_TRUE(serwis_.server.requests().empty());
}

TEST_F(DostawcaTest, LiveSnapshotReturnsAtOnceAndLoadsADay) {
  const auto puszczenie = std::make_shared<support::Event>();
  serwis_.server.script("/api/moje/zadania",
                        {support::Await{puszczenie}, support::Send{support::HttpAnswer{.body = "[]"}.bytes()}});
  auto zywa = migawka(false);
  EXPECT_FALSE(gotowe(zywa));
  puszczenie->set();
  EXPECT_EQ(zywa.get().blad, std::nullopt);
}

TEST_F(DostawcaTest, TimelineHoldsOneEntryAndReloadsAQuarterAfterLoadingEnded) {
  const auto puszczenie = std::make_shared<support::Event>();
  serwis_.server.script("/api/moje/zadania",
                        {support::Await{puszczenie}, support::Send{support::HttpAnswer{.body = "[]"}.bytes()}});
  auto linia = os();
  ASSERT_TRUE(serwis_.server.waitForRequests(3));
  zegar_.advance(absl::Seconds(10));  // what the load takes
  puszczenie->set();
  const auto timeline = linia.get();
  ASSERT_EQ(timeline.entries.size(), 1U);
  EXPECT_EQ(timeline.entries[0].date, zegar_.now());
  EXPECT_EQ(timeline.policy.date, zegar_.now() + absl::Minutes(15));
}

TEST_F(DostawcaTest, SignedOutTimelineAsksToSignInAndReloadsAsUsual) {
  serwis_.keychain.store("token-urzadzenia", "");
  const auto timeline = os().get();
  ASSERT_EQ(timeline.entries.size(), 1U);
  EXPECT_EQ(timeline.entries[0].blad, "Zaloguj się w aplikacji Vamba.");
  EXPECT_EQ(timeline.policy.date, zegar_.now() + absl::Minutes(15));
}

TEST_F(DostawcaTest, RequestsAtOnceLoadIndependently) {
  std::vector<std::future<Timeline<Wpis>>> linie;
  for (int i = 0; i < 8; ++i) linie.push_back(os());
  for (auto& linia : linie) EXPECT_EQ(linia.get().entries[0].blad, std::nullopt);
  EXPECT_EQ(serwis_.server.requests().size(), 24U);
}

TEST_F(DostawcaTest, CancelledLoadStillCompletesItsRequest) {
  serwis_.server.script("/api/moje/zadania", {support::Stall{}});
  auto linia = os();
  ASSERT_TRUE(serwis_.server.waitForRequests(3));
  taski_.cancelAll();
  EXPECT_EQ(linia.get().entries[0].blad, "Brak połączenia z Vambą.");
  EXPECT_EQ(linie_, std::vector<std::string>{}) << "the request was given up, not cancelled";
}

}  // namespace
}  // namespace widzety
