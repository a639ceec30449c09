#include "desktop/placement/monitor.hpp"

#include <vector>

#include <gtest/gtest.h>

namespace desktop {
namespace {

Monitor monitorWith(MonitorIdentity identity, Rect area = {0, 0, 1920, 1080}, bool primary = false) {
  return {std::move(identity), area, primary};
}

TEST(FindMonitor, GoesByMakeModelAndSerialThenByConnector) {
  const std::vector<Monitor> monitors{
      monitorWith({"Acme", "P27", "A1", "DP-1"}),   // 0
      monitorWith({"Acme", "P27", "A2", "DP-2"}),   // 1
      monitorWith({"Other", "P27", "A1", "DP-3"}),  // 2
      monitorWith({"Twin", "T24", "0", "DP-4"}),    // 3: shares its serial with 4
      monitorWith({"Twin", "T24", "0", "DP-5"}),    // 4
      monitorWith({"Plain", "M1", "", "HDMI-1"}),   // 5: has no serial, like 6
      monitorWith({"Plain", "M1", "", "HDMI-2"}),   // 6
      monitorWith({"", "", "", "VIRTUAL-1"}),       // 7
  };
  const struct {
    MonitorIdentity wanted;
    std::optional<std::size_t> found;
    const char* why;
  } cases[] = {
      {{"Acme", "P27", "A1", "DP-1"}, 0, "all is equal"},
      {{"Acme", "P27", "A2", "DP-1"}, 1, "plugged in elsewhere"},
      {{"Acme", "P27", "A1", "DP-9"}, 0, "plugged in where none was"},
      {{"Acme", "P27", "A3", "DP-1"}, std::nullopt, "another one of its kind at its connector"},
      {{"Acme", "P32", "A1", "DP-1"}, std::nullopt, "another model"},
      {{"Other", "P27", "A1", "DP-1"}, 2, "a serial counts within its make"},
      {{"Twin", "T24", "0", "DP-5"}, 4, "alike: the connector decides"},
      {{"Twin", "T24", "0", "DP-9"}, 3, "alike, none at its connector: the first"},
      {{"Plain", "M1", "", "HDMI-2"}, 6, "without serial: the connector"},
      {{"Plain", "M1", "", "HDMI-3"}, std::nullopt, "without serial, elsewhere: not known to be the same"},
      {{"Plain", "M1", "S", "HDMI-1"}, 5, "the display server tells no serial any more"},
      {{"Acme", "P27", "", "DP-2"}, 1, "the serial was not told when it was stored"},
      {{"", "", "", "VIRTUAL-1"}, 7, "nothing but a connector"},
      {{"", "", "", ""}, std::nullopt, "nothing at all"},
  };
  for (const auto& [wanted, found, why] : cases) EXPECT_EQ(findMonitor(wanted, monitors), found) << why;
}

TEST(FindMonitor, FindsNoneAmongNone) { EXPECT_EQ(findMonitor({}, {}), std::nullopt); }

TEST(PrimaryMonitor, IsTheFirstWhereNoneIsMarked) {
  EXPECT_EQ(primaryMonitor({}), std::nullopt);
  EXPECT_EQ(primaryMonitor(std::vector{monitorWith({}), monitorWith({})}), 0U);
  EXPECT_EQ(primaryMonitor(std::vector{monitorWith({}), monitorWith({}, {}, true)}), 1U);
}

TEST(MonitorUnder, IsTheOneThatShowsMostElseTheNearest) {
  const std::vector<Monitor> monitors{monitorWith({}, {0, 0, 1000, 1000}), monitorWith({}, {1000, 0, 1000, 1000}),
                                      monitorWith({}, {0, 1000, 1000, 1000})};
  const struct {
    Rect rect;
    std::size_t under;
  } cases[] = {
      {{10, 10, 200, 100}, 0},   {{890, 10, 200, 100}, 0}, {{910, 10, 200, 100}, 1}, {{900, 910, 50, 200}, 2},
      {{-5000, -50, 10, 10}, 0}, {{5000, 500, 10, 10}, 1}, {{300, 9000, 10, 10}, 2}, {{2100, 1500, 200, 100}, 1},
  };
  for (const auto& [rect, under] : cases) EXPECT_EQ(monitorUnder(rect, monitors), under) << rect.x << "," << rect.y;
  EXPECT_EQ(monitorUnder({0, 0, 1, 1}, {}), std::nullopt);
}

}  // namespace
}  // namespace desktop
