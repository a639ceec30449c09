#include "base/tasks/deadline.hpp"

#include <gtest/gtest.h>

namespace base {
namespace {

using namespace std::chrono_literals;

TEST(Deadline, HasPassedOnceNothingIsLeft) {
  EXPECT_TRUE(Deadline::after(0s).passed());
  EXPECT_TRUE(Deadline::after(-1h).passed());
  EXPECT_EQ(Deadline::after(-1h).left(), 0us);
  EXPECT_FALSE(Deadline::after(1h).passed());
  EXPECT_GT(Deadline::after(1h).left(), 30min);
}

TEST(Deadline, ThatTheClockCannotReachIsNever) {
  EXPECT_EQ(Deadline::after(Deadline::Clock::duration::max()), Deadline::never());
  EXPECT_EQ(Deadline::never().plus(1h), Deadline::never());
  EXPECT_FALSE(Deadline::never().passed());
  EXPECT_GT(Deadline::never().left(), 1h);
}

TEST(Deadline, ThatComesFirstIsTheLesser) {
  const auto soon = Deadline::after(1s);
  EXPECT_EQ(std::min(soon, Deadline::after(1h)), soon);
  EXPECT_EQ(std::min(Deadline::never(), soon), soon);
  EXPECT_LT(soon, soon.plus(1ms));
}

}  // namespace
}  // namespace base
