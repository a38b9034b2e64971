#include "frame/decimal.h"

#include <gtest/gtest.h>

#include <limits>
#include <random>

#include "frame/error.h"

namespace ard {
namespace {

TEST(DecimalTest, DifferencesAreExact) {
  const struct {
    double a;
    double b;
    double difference;
  } cases[] = {{10.3, 10.1, 0.2},
               {0.3, 0.1, 0.2},
               {5, 7, -2},
               {0, 0, 0},
               {0, 0.1, -0.1},
               {1.1, 0, 1.1},
               {-0.1, -0.3, 0.2},
               {-10.3, 0.1, -10.4},
               {123456789012345, 123456789012344, 1},
               {999999999999999, 0.000001, 999999999999998.999999},
               {1e22, 1, 1e22 - 1},
               {1e300, 1e-300, 1e300},
               {4.35, 4.35, 0}};
  for (const auto& c : cases) {
    EXPECT_EQ(ExactDifference(c.a, c.b), c.difference) << c.a << " - " << c.b;
    EXPECT_EQ(ExactDifference(c.b, c.a), -c.difference) << c.b << " - " << c.a;
    EXPECT_EQ(ExactSum(c.difference, c.b), ExactSum(c.b, c.difference));
  }
}

TEST(DecimalTest, AgreesWithIntegersOfHundredths) {
  std::mt19937_64 random(31);
  for (int i = 0; i < 20000; ++i) {
    const auto a = static_cast<std::int64_t>(random() % 2000000) - 1000000;
    const auto b = static_cast<std::int64_t>(random() % 2000000) - 1000000;
    const double x = static_cast<double>(a) / 100;
    const double y = static_cast<double>(b) / 100;
    ASSERT_EQ(ExactSum(x, y), static_cast<double>(a + b) / 100) << x << " + " << y;
    ASSERT_EQ(ExactDifference(x, y), static_cast<double>(a - b) / 100) << x << " - " << y;
  }
}

TEST(DecimalTest, WhatIsNoNumberOverflows) {
  EXPECT_THROW(ExactSum(std::numeric_limits<double>::infinity(), 1), Error);
  EXPECT_THROW(ExactDifference(1, std::numeric_limits<double>::quiet_NaN()), Error);
}

}  // namespace
}  // namespace ard
