// The one test of the built extension that really waits: a service that takes requests and never answers.
#include <chrono>

#include <absl/time/clock.h>

#include "base/text/instant.hpp"
#include "end_to_end/extension_fixture.hpp"

namespace end_to_end {
namespace {

using std::chrono::steady_clock;

using ExtensionPatienceTest = ServiceTest;

TEST_F(ExtensionPatienceTest, SilentServiceIsGivenUpAfterTwelveSecondsAndAskedAgainAQuarterOfAnHourLater) {
  everyAnswer({support::Stall{}});
  // Its bytes come all the time, so only the limit of the whole exchange ends it.
  service.script(tasksTarget, {support::Drip{"HTTP/1.1 200 OK\r\n\r\n[" + std::string(1000, ' '), 50ms}});
  const auto before = absl::Now();
  const auto begin = steady_clock::now();
  const int loading = extension().ask("timeline", boardParams());
  EXPECT_TRUE(extension().call("placeholder", boardParams()).contains("result"));
  const json answer = extension().answerTo(loading);
  const auto taken = steady_clock::now() - begin;
  const auto now = absl::Now();
  EXPECT_EQ(answer["result"]["entries"][0]["blad"], noConnection);
  EXPECT_GE(taken, 11900ms);
  const auto reload = base::parseInstant(answer["result"]["policy"]["date"].get<std::string>());
  ASSERT_TRUE(reload);
  EXPECT_LE(*reload, now + absl::Minutes(15));
  EXPECT_GE(*reload, before + absl::Milliseconds(11900) + absl::Minutes(15)) << "counted from the load's end";
}

}  // namespace
}  // namespace end_to_end
