#include "base/text/whole_number.hpp"

#include <limits>

#include <gtest/gtest.h>

namespace base {
namespace {

TEST(WholeNumber, IsTheIntegerThatADoubleIs) {
  EXPECT_EQ(wholeNumber(7.0), 7);
  EXPECT_EQ(wholeNumber(-0.0), 0);
  EXPECT_EQ(wholeNumber(1e18), 1'000'000'000'000'000'000);
  EXPECT_EQ(wholeNumber(0x1p62), std::int64_t{1} << 62);
}

TEST(WholeNumber, IsAbsentForFractionsAndBeyond64Bits) {
  using Limits = std::numeric_limits<double>;
  for (const double number : {7.5, -0.1, 0x1p63, -0x1p63, 1e19, Limits::infinity(), Limits::quiet_NaN()}) {
    EXPECT_EQ(wholeNumber(number), std::nullopt) << number;
  }
}

}  // namespace
}  // namespace base
