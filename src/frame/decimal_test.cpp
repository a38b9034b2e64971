#include "frame/decimal.h"

#include <gtest/gtest.h>

#include <limits>
#include <tuple>

namespace ard {
namespace {

TEST(Decimal, DifferencesAreThoseOfTheWrittenNumbers) {
  struct {
    double a, b, difference;
  } const cases[] = {
      {10.3, 10.1, 0.2},
      {0.3, 0.1, 0.2},
      {0.1 + 0.2, 0.3, 0},  // the noise is behind the fifteenth digit
      {1.0 / 3, 0.3, 0.033333333333333},
      {1.0 / 3, 0, 1.0 / 3},
      {742893.282994773, -479.969600195727, 743373.252594968727},  // rounded once
      // Beyond decimals, and too far apart for them.
      {1e300, 1e299, 1e300 - 1e299},
      {1e14, 1e-8, 1e14},
      {1e-8, 1e14, -1e14},
      {std::numeric_limits<double>::infinity(), 1, std::numeric_limits<double>::infinity()},
  };
  for (const auto& c : cases) {
    EXPECT_EQ(ExactDifference(c.a, c.b), c.difference) << c.a << " - " << c.b;
    EXPECT_EQ(ExactSum(-c.a, c.b), -c.difference) << c.a << " - " << c.b;
  }
}

TEST(Decimal, ComparesTheWrittenNumbers) {
  const double nan = std::numeric_limits<double>::quiet_NaN();
  const double third = ExactDifference(1.0 / 3, 0.1);
  for (const auto& [a, b, at_least] : {std::tuple(0.3, 0.1 + 0.2, true),
                                       {0.1 + 0.2, 0.3, true},
                                       {0.3, 0.300000000000001, false},
                                       {third, 1.0 / 3 - 0.1, true},
                                       {nan, 1.0, false},
                                       {1.0, nan, false}}) {
    EXPECT_EQ(AtLeast(a, b), at_least) << a << " " << b;
  }
}

TEST(DecimalTest, FormatsWithFixedPlacesRoundingHalfAwayFromZero) {
  const struct {
    double number;
    int places;
    std::wstring text;
  } cases[] = {{17.5, 2, L"17.50"},
               {0, 2, L"0.00"},
               {0, 0, L"0."},
               {2.675, 2, L"2.68"},
               {-2.675, 2, L"-2.68"},
               {-0.004, 2, L"0.00"},
               {4503599627370495.5, 1, L"4503599627370495.5"},
               {1.23456789012345e-10, 12, L"0.000000000123"},
               // The most places that a decimal has, and one more.
               {1.11111111111111e-8, 26, L"0.00000001111111111111110000"},
               {1.23456789012347e-9, 26, L"0.00000000123456789012347006"},
               {-std::numeric_limits<double>::infinity(), 2, L"-inf"}};
  for (const auto& c : cases) EXPECT_EQ(FormatFixed(c.number, c.places), c.text);
}

}  // namespace
}  // namespace ard
