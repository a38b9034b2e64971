#include "frame/decimal.h"

#include <gtest/gtest.h>

#include <limits>

namespace ard {
namespace {

TEST(Decimal, DifferencesAreThoseOfTheWrittenNumbers) {
  struct {
    double a, b, difference;
  } const cases[] = {
      {10.3, 10.1, 0.2},
      {0.3, 0.1, 0.2},
      {5, 7, -2},
      {-0.1, 0.2, -0.3},
      {1000000.1, 0.1, 1000000},
      {123456789012.345, 123456789012.344, 0.001},
      {0.1 + 0.2, 0.3, 0},  // the noise is behind the fifteenth digit
      {1.0 / 3, 0.3, 0.033333333333333},
      {1e-20, 1e-21, 9e-21},
      {99999999999999.9, -0.1, 1e14},
      // Beyond decimals, and too far apart for them.
      {1e300, 1e299, 1e300 - 1e299},
      {123456789012345, 1e-10, 123456789012345},
      {std::numeric_limits<double>::infinity(), 1, std::numeric_limits<double>::infinity()},
  };
  for (const auto& c : cases) {
    EXPECT_EQ(ExactDifference(c.a, c.b), c.difference) << c.a << " - " << c.b;
    EXPECT_EQ(ExactSum(-c.a, c.b), -c.difference) << c.a << " - " << c.b;
  }
}

}  // namespace
}  // namespace ard
