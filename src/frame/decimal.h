// Exact decimal arithmetic on doubles: what a person writes as 10.3 - 10.1 is 0.2, not 0.2000...18.
#ifndef ARD_FRAME_DECIMAL_H_
#define ARD_FRAME_DECIMAL_H_

#include <cstdint>
#include <optional>
#include <string>

namespace ard {

// digits × 10^-scale, with at most 15 digits.
struct Decimal {
  std::int64_t digits = 0;
  int scale = 0;
};

// The decimal that the first 15 significant digits of `number` make, without trailing zeros behind
// the point. Nothing for numbers that are not finite, from 10^15, or with more than 22 places.
std::optional<Decimal> ToDecimal(double number);

// The sum of the two decimals, to the nearest double. Numbers that are no decimals in the sense of
// ToDecimal, or so far apart that no digit of one meets a digit of the other, are added as doubles.
// Adding 0 changes nothing.
double ExactSum(double a, double b);
inline double ExactDifference(double a, double b) { return ExactSum(a, -b); }
// Whether the decimal of `a` is that of `b` or more; false when either is not a number.
inline bool AtLeast(double a, double b) { return ExactDifference(a, b) >= 0; }

// The number with so many places, at least 0, rounded half away from zero on its decimal digits.
// There is always a point, 1 with no places is "1.", and never a minus before zero. What is no
// decimal in the sense of ToDecimal has the places that the C library gives it.
std::wstring FormatFixed(double number, int places);
// The same, behind `text`.
void AppendFixed(std::wstring& text, double number, int places);

}  // namespace ard

#endif  // ARD_FRAME_DECIMAL_H_
