#include <gtest/gtest.h>

#include "support/environment.hpp"
#include "widzety/model/data_serwera.hpp"

namespace widzety {
namespace {

TEST(StrefaDatySerwera, IsTheDevicesWhereTheSystemKnowsNoWarsaw) {
  support::ScopedEnvironment environment;
  environment.set("TZDIR", "/nonexistent");
  environment.set("TZ", "XXX5");  // five hours west, a rule that needs no zone files
  absl::TimeZone warszawa;
  ASSERT_FALSE(absl::LoadTimeZone("Europe/Warsaw", &warszawa));

  const absl::TimeZone strefa = strefaDatySerwera();
  EXPECT_EQ(wczytajDate("2025-07-01", strefa).value(),
            absl::FromCivil(absl::CivilHour(2025, 7, 1, 5), absl::UTCTimeZone()));
  EXPECT_EQ(wczytajDate("2025-07-01T00:00:00Z", strefa).value(),
            absl::FromCivil(absl::CivilDay(2025, 7, 1), absl::UTCTimeZone()));
}

}  // namespace
}  // namespace widzety
