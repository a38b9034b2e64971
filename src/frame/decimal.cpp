#include "frame/decimal.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <cstdint>
#include <cstring>

#include "frame/error.h"

namespace ard {
namespace {

constexpr int kDigits = 15;
// Two operands further apart than this are not aligned: the digits of the smaller one then lie
// beyond any that could cancel out, and a plain sum is as good.
constexpr int kMostShift = 22;

// digits * 10^exponent, with at most 15 digits and no zeros at their end.
struct Decimal {
  bool negative = false;
  std::uint64_t digits = 0;
  int exponent = 0;
};

Decimal FromDouble(double number) {
  if (!std::isfinite(number)) throw Error(kErrorOverflow, L"Overflow.");
  char text[40];
  const auto [end, error] = std::to_chars(text, text + sizeof text, std::fabs(number),
                                          std::chars_format::scientific, kDigits - 1);
  if (error != std::errc()) throw Error(kErrorOverflow, L"Overflow.");
  // d.ddddddddddddddE+xx
  Decimal decimal{std::signbit(number), static_cast<std::uint64_t>(text[0] - '0'), 0};
  for (int i = 0; i < kDigits - 1; ++i) {
    decimal.digits = decimal.digits * 10 + static_cast<std::uint64_t>(text[2 + i] - '0');
  }
  const char* exponent = text + kDigits + 2;
  if (*exponent == '+') ++exponent;
  std::from_chars(exponent, end, decimal.exponent);
  decimal.exponent -= kDigits - 1;
  while (decimal.digits != 0 && decimal.digits % 10 == 0) {
    decimal.digits /= 10;
    ++decimal.exponent;
  }
  if (decimal.digits == 0) decimal.exponent = 0;
  return decimal;
}

// An unsigned number of 128 bits: room for 15 digits shifted by kMostShift places.
struct Wide {
  std::uint64_t high = 0;
  std::uint64_t low = 0;

  auto operator<=>(const Wide&) const = default;
};

Wide Shifted(std::uint64_t digits, int places) {
  Wide wide{0, digits};
  for (; places > 0; --places) {
    const std::uint64_t low_half = (wide.low & 0xFFFFFFFF) * 10;
    const std::uint64_t high_half = (wide.low >> 32) * 10 + (low_half >> 32);
    wide.high = wide.high * 10 + (high_half >> 32);
    wide.low = (high_half << 32) | (low_half & 0xFFFFFFFF);
  }
  return wide;
}

Wide Plus(const Wide& a, const Wide& b) {
  const std::uint64_t low = a.low + b.low;
  return {a.high + b.high + (low < a.low ? 1 : 0), low};
}

Wide Minus(const Wide& a, const Wide& b) {
  return {a.high - b.high - (a.low < b.low ? 1 : 0), a.low - b.low};
}

// Divides by 10 and returns the remainder.
unsigned TakeDigit(Wide& wide) {
  std::uint64_t remainder = 0;
  std::uint64_t limbs[4] = {wide.high >> 32, wide.high & 0xFFFFFFFF, wide.low >> 32,
                            wide.low & 0xFFFFFFFF};
  for (std::uint64_t& limb : limbs) {
    const std::uint64_t dividend = (remainder << 32) | limb;
    limb = dividend / 10;
    remainder = dividend % 10;
  }
  wide = {(limbs[0] << 32) | limbs[1], (limbs[2] << 32) | limbs[3]};
  return static_cast<unsigned>(remainder);
}

double ToDouble(bool negative, Wide digits, int exponent) {
  if (digits == Wide{}) return 0;
  char text[64];
  char* const end = text + sizeof text;
  char* begin = end - 8;
  const auto [exponent_end, error] = std::to_chars(begin, end, exponent);
  if (error != std::errc()) throw Error(kErrorOverflow, L"Overflow.");
  *--begin = 'e';
  while (digits != Wide{}) *--begin = static_cast<char>('0' + TakeDigit(digits));
  double number = 0;
  std::from_chars(begin, exponent_end, number);
  return negative ? -number : number;
}

}  // namespace

double ExactSum(double a, double b) {
  Decimal x = FromDouble(a);
  Decimal y = FromDouble(b);
  if (y.digits == 0) y.exponent = x.exponent;
  if (x.digits == 0) x.exponent = y.exponent;
  const int exponent = std::min(x.exponent, y.exponent);
  if (std::max(x.exponent, y.exponent) - exponent > kMostShift) return a + b;
  const Wide wide_x = Shifted(x.digits, x.exponent - exponent);
  const Wide wide_y = Shifted(y.digits, y.exponent - exponent);
  if (x.negative == y.negative) return ToDouble(x.negative, Plus(wide_x, wide_y), exponent);
  if (wide_x >= wide_y) return ToDouble(x.negative, Minus(wide_x, wide_y), exponent);
  return ToDouble(y.negative, Minus(wide_y, wide_x), exponent);
}

double ExactDifference(double a, double b) { return ExactSum(a, -b); }

}  // namespace ard
