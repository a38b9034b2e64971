#include "frame/decimal.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <cstdio>
#include <cstdlib>
#include <iterator>

namespace ard {
namespace {

// All of them exact.
constexpr double kPowers[] = {1e0,  1e1,  1e2,  1e3,  1e4,  1e5,  1e6,  1e7,
                              1e8,  1e9,  1e10, 1e11, 1e12, 1e13, 1e14, 1e15,
                              1e16, 1e17, 1e18, 1e19, 1e20, 1e21, 1e22};
constexpr int kLargestScale = static_cast<int>(std::size(kPowers)) - 1;
constexpr double kLimit = 1e15;
constexpr std::int64_t kLargestScaled = std::int64_t{1000} * std::int64_t{1000000000000000};

std::optional<Decimal> FifteenDigits(double number) {
  char text[32];
  std::snprintf(text, sizeof text, "%.14e", number);
  // d.dddddddddddddde±dd, with a sign in front when negative.
  const char* exponent = std::find(text, text + sizeof text, 'e') + 1;
  Decimal result;
  for (const char* c = text; c + 1 != exponent; ++c) {
    if (*c >= '0' && *c <= '9') result.digits = result.digits * 10 + (*c - '0');
  }
  if (text[0] == '-') result.digits = -result.digits;
  result.scale = 14 - std::atoi(exponent);
  while (result.scale > 0 && result.digits % 10 == 0) {
    result.digits /= 10;
    --result.scale;
  }
  if (result.scale < 0 || result.scale > kLargestScale) return std::nullopt;
  return result;
}

// The nearest double. Digits that a double does not hold exactly cannot be divided: that would
// round twice.
double ToDouble(const Decimal& number) {
  constexpr std::int64_t kExact = std::int64_t{1} << 53;
  if (std::abs(number.digits) <= kExact) {
    return static_cast<double>(number.digits) / kPowers[number.scale];
  }
  char text[32];  // without a point, which would be the locale's
  std::snprintf(text, sizeof text, "%llde-%d", static_cast<long long>(number.digits), number.scale);
  return std::strtod(text, nullptr);
}

// As most quantities are. The sum of two is exact.
bool IsWhole(double number) {
  return std::abs(number) < kLimit &&
         number == static_cast<double>(static_cast<std::int64_t>(number));
}

// The digits at a larger scale; nothing when they would leave the range.
std::optional<std::int64_t> AtScale(Decimal number, int scale) {
  for (; number.scale < scale; ++number.scale) {
    if (std::abs(number.digits) > kLargestScaled / 10) return std::nullopt;
    number.digits *= 10;
  }
  return number.digits;
}

// The digits, without their sign, at a smaller or the same scale, rounded half away from zero.
std::int64_t Rounded(const Decimal& number, int scale) {
  std::int64_t digits = std::abs(number.digits);
  std::int64_t dropped = 0;
  for (int at = number.scale; at > scale; --at) {
    dropped = digits % 10;
    digits /= 10;
  }
  return dropped >= 5 ? digits + 1 : digits;
}

// Most numbers are short, and 32-bit processors take ten times as long for long ones.
std::int64_t Tenth(std::int64_t digits) {
  const auto word = static_cast<std::uint32_t>(digits);
  return word == digits ? word / 10 : digits / 10;
}

// A number that is no decimal, as the C library has it; there is no minus before zero.
std::wstring FormatPlain(double number, int places) {
  const int length = std::snprintf(nullptr, 0, "%.*f", places, number);
  std::string digits(static_cast<std::size_t>(length) + 1, '\0');
  std::snprintf(digits.data(), digits.size(), "%.*f", places, number);
  std::wstring text(digits.begin(), digits.end() - 1);
  // Whatever the host's locale has for a point.
  const std::size_t point = text.find_first_not_of(L"-0123456789");
  if (point == text.npos) {
    text += L'.';
  } else if (std::isfinite(number)) {
    text[point] = L'.';
  }
  if (text.find_first_not_of(L"-0.") == text.npos) text.erase(0, text.find(L'0'));
  return text;
}

}  // namespace

std::optional<Decimal> ToDecimal(double number) {
  if (!std::isfinite(number) || std::abs(number) >= kLimit) return std::nullopt;
  // A number of a few places, as most are: digits / 10^scale, both exact, is rounded once, so it is
  // `number` only when that is the double nearest to the decimal.
  for (int scale = 0; scale <= 6; ++scale) {
    const double scaled = number * kPowers[scale];
    if (std::abs(scaled) >= kLimit) break;
    const auto digits = static_cast<std::int64_t>(scaled + std::copysign(0.5, scaled));
    if (static_cast<double>(digits) / kPowers[scale] == number) return Decimal{digits, scale};
  }
  return FifteenDigits(number);
}

double ExactSum(double a, double b) {
  if (a == 0 || b == 0 || (IsWhole(a) && IsWhole(b))) return a + b;
  const std::optional<Decimal> x = ToDecimal(a);
  const std::optional<Decimal> y = ToDecimal(b);
  if (!x || !y) return a + b;
  const int scale = std::max(x->scale, y->scale);
  const std::optional<std::int64_t> left = AtScale(*x, scale);
  const std::optional<std::int64_t> right = AtScale(*y, scale);
  if (!left || !right) return a + b;
  return ToDouble({*left + *right, scale});
}

std::wstring FormatFixed(double number, int places) {
  std::wstring text;
  AppendFixed(text, number, places);
  return text;
}

void AppendFixed(std::wstring& text, double number, int places) {
  const std::optional<Decimal> decimal = ToDecimal(number);
  if (!decimal) {
    text += FormatPlain(number, places);
    return;
  }
  const int scale = std::min(decimal->scale, places);
  std::int64_t digits = Rounded(*decimal, scale);
  const bool negative = decimal->digits < 0 && digits > 0;
  // From the last digit to the first; one at least stands in front of the point.
  wchar_t buffer[32];
  wchar_t* const end = buffer + std::size(buffer);
  wchar_t* begin = end;
  for (int behind = scale; behind >= 0 || digits > 0; --behind) {
    if (behind == 0) *--begin = L'.';
    const std::int64_t rest = Tenth(digits);
    *--begin = static_cast<wchar_t>(L'0' + (digits - rest * 10));
    digits = rest;
  }
  if (negative) *--begin = L'-';
  text.append(begin, end).append(static_cast<std::size_t>(places - scale), L'0');
}

}  // namespace ard
