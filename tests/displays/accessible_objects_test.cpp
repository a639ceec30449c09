#include "support/displays/accessible_objects.hpp"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "displays/sample_window.hpp"
#include "support/displays/sway_desktop.hpp"
#include "support/displays/x_desktop.hpp"
#include "support/waiting.hpp"

using support::AccessibleObject;
using support::AccessibleObjects;
using support::eventually;
using ::testing::Contains;
using ::testing::ElementsAre;

namespace {

const AccessibleObject sample{0, "frame", "A sample", "Nothing to read."};

TEST(AccessibleObjects, ReadsAWindowOnXAndHearsOfItsNewName) {
  support::XDesktop desktop;
  AccessibleObjects objects(desktop.bus());
  const auto program = sampleWindow(desktop.environment(), {"Red", "#ff0000"});
  ASSERT_TRUE(eventually([&] { return objects.of(program.id()).size() == 1; }));
  EXPECT_THAT(objects.of(program.id()), ElementsAre(sample));
  EXPECT_TRUE(eventually([&] {
    const auto active = desktop.windows().numbers(desktop.windows().root(), "_NET_ACTIVE_WINDOW");
    return active.size() == 1 && active[0] != 0;
  }));
  desktop.input().key(0xffbf);  // F2
  EXPECT_TRUE(eventually([&] { return objects.of(program.id()).at(0).name == "Renamed"; }));
  EXPECT_TRUE(eventually([&] { return !objects.changes().empty(); }));
  EXPECT_THAT(objects.changes(), Contains("accessible-name: Renamed"));
}

TEST(AccessibleObjects, ReadsAWindowOnWayland) {
  support::SwayDesktop desktop;
  AccessibleObjects objects(desktop.bus());
  const auto program = sampleWindow(desktop.environment(), {"Red", "#ff0000"});
  EXPECT_TRUE(eventually([&] { return objects.of(program.id()) == std::vector{sample}; }));
}

TEST(AccessibleObjects, AProgramThatHasNotJoinedHasNone) {
  support::XDesktop desktop;
  const auto program = sampleWindow(desktop.environment(), {"Red", "#ff0000"});
  AccessibleObjects objects(desktop.bus());
  EXPECT_TRUE(objects.of(program.id()).empty());
}

}  // namespace
