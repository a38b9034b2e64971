// Text, numbers, dates and exact decimals: what converts reads back the same, what does not throws
// the described errors, and arithmetic agrees with that of integers.
#include <bit>
#include <cmath>
#include <cwchar>
#include <optional>

#include "frame/date.h"
#include "frame/decimal.h"
#include "frame/error.h"
#include "frame/value.h"
#include "fuzzers/support_fuzz.h"

namespace ard::fuzz {
namespace {

// Nothing when the conversion is refused, as it may be.
template <class Convert>
auto Try(Convert convert) -> std::optional<decltype(convert())> {
  try {
    return convert();
  } catch (const Error& error) {
    Require(error.number() == kErrorTypeMismatch || error.number() == kErrorOverflow,
            "a conversion fails with a mismatch or an overflow", error.text());
    return std::nullopt;
  }
}

double HalfToEven(double number) {
  const double below = std::floor(number);
  const double rest = number - below;
  return rest < 0.5 || (rest == 0.5 && std::fmod(below, 2) == 0) ? below : below + 1;
}

// The conversions of a value agree with the number that it is.
std::optional<double> CheckNumbers(const Value& value) {
  const std::optional<double> number = Try([&] { return value.ToDouble(); });
  const auto agrees = [&](auto converted, double least, double most) {
    const double rounded = number ? HalfToEven(*number) : NAN;
    Require(converted.has_value() == (rounded >= least && rounded <= most), "a number fits or not",
            rounded);
    Require(!converted || *converted == rounded, "halves round to even", rounded);
  };
  agrees(Try([&] { return value.ToByte(); }), 0, 255);
  agrees(Try([&] { return value.ToInteger(); }), -32768, 32767);
  agrees(Try([&] { return value.ToLong(); }), -2147483648.0, 2147483647);
  if (const auto amount = Try([&] { return value.ToCurrency(); })) {
    const long double off = static_cast<long double>(amount->units) - *number * 10000.0L;
    Require(std::abs(off) <= 0.5L + std::abs(*number) * 1e-11L, "the nearest amount", *number);
  }
  const auto date = Try([&] { return value.ToDate(); });
  Require(!date || IsInRange(*date), "a date is in range", date ? date->days : 0);
  const auto truth = Try([&] { return value.ToBoolean(); });
  Require(!number || truth == (*number != 0), "what is not zero is true");
  return number;
}

// A number in text is what the C library reads there.
void CheckNumberText(const std::wstring& text) {
  const std::optional<double> number = CheckNumbers(text);
  if (!number) return;
  std::wstring plain = text;
  std::erase_if(plain, [](wchar_t c) { return c == L',' || c == L' '; });
  wchar_t* end = nullptr;
  Require(std::wcstod(plain.c_str(), &end) == *number && *end == L'\0', "text is its number", text);
}

void CheckDouble(double number) {
  CheckNumbers(number);
  if (!std::isfinite(number)) return;
  char digits[40];
  std::snprintf(digits, sizeof digits, "%.15g", number);
  const double expected = std::strtod(digits, nullptr);
  const auto again = Try([&] { return Value(Value(number).ToText()).ToDouble(); });
  Require(again ? *again == expected : std::isinf(expected), "text has 15 digits", number);
}

void CheckText(const std::wstring& a, const std::wstring& b) {
  Require(FromUtf8(ToUtf8(a)) == a, "text survives as UTF-8", a);
  const std::wstring upper = UpperCase(a);
  Require(UpperCase(upper) == upper, "the upper case of the upper case is the same", a);
  Require(CompareIgnoreCase(a, b) == (upper <=> UpperCase(b)), "the upper cases compare", a, b);
  Require(StartsWithIgnoreCase(a, b) == upper.starts_with(UpperCase(b)), "a prefix is one", a, b);
}

void CheckDate(Date date, const std::wstring& text) {
  if (const std::optional<Date> parsed = ParseIsoDate(text)) {
    const std::wstring again = FormatIsoDate(*parsed);
    Require(again == text || again + L" 00:00:00" == text, "a date reads back", text, again);
  }
  const auto formatted = Try([&] { return FormatIsoDate(date); });
  Require(formatted.has_value() == IsInRange(date), "a date in range has a text", date.days);
  if (!formatted) return;
  const std::optional<Date> again = ParseIsoDate(*formatted);
  Require(again.has_value(), "the text of a date is one", date.days, *formatted);
  const auto seconds = [](double days) {
    return (std::trunc(days) + std::abs(days - std::trunc(days))) * 86400;
  };
  Require(std::abs(seconds(again->days) - seconds(date.days)) < 0.51, "to the second", date.days);
}

std::int64_t Power(int exponent) { return exponent <= 0 ? 1 : 10 * Power(exponent - 1); }

// The double nearest to digits / 10^scale.
double Nearest(std::int64_t digits, int scale) {
  return std::strtod((std::to_string(digits) + "e-" + std::to_string(scale)).c_str(), nullptr);
}

// digits / 10^scale with so many places, at most 18.
std::wstring Fixed(std::int64_t digits, int scale, int places) {
  std::int64_t left = std::abs(digits) * (scale - places > 17 ? 0 : 1);
  if (left != 0 && scale > places) left = (left / (Power(scale - places) / 2) + 1) / 2;
  const int behind = std::min(scale, places);
  std::wstring text = std::to_wstring(left / Power(behind)) + L'.';
  const std::wstring fraction = std::to_wstring(Power(behind) + left % Power(behind)).substr(1);
  text += fraction + std::wstring(static_cast<std::size_t>(places - behind), L'0');
  return (digits < 0 && left > 0 ? L"-" : L"") + text;
}

void CheckDecimals(Input& input) {
  constexpr std::int64_t kMost = 999'999'999'999'999;
  const auto a = input.ConsumeIntegralInRange(-kMost, kMost);
  const auto b = input.ConsumeIntegralInRange(-kMost, kMost);
  const int scale_a = input.UpTo(22);
  const int scale_b = input.UpTo(22);
  const double x = Nearest(a, scale_a);
  const double y = Nearest(b, scale_b);
  const int places = input.UpTo(18);
  const std::wstring text = FormatFixed(x, places);
  Require(text == Fixed(a, scale_a, places), "halves round away from zero", x, places, text);
  const int scale = std::max(scale_a, scale_b);
  const auto meets = [&](std::int64_t digits, int more) {
    return more < 18 && std::abs(digits) <= Power(18 - more);
  };
  if (!meets(a, scale - scale_a) || !meets(b, scale - scale_b)) return;
  const double sum = Nearest(a * Power(scale - scale_a) + b * Power(scale - scale_b), scale);
  Require(ExactSum(x, y) == sum, "a sum is exact", x, y, sum);
}

void CheckDoubles(double a, double b) {
  const double difference = ExactDifference(a, b);
  Require(std::isnan(difference) || difference == -ExactDifference(b, a), "antisymmetric", a, b);
  if (!std::isfinite(a) || (std::abs(a) < 1e15 && std::abs(a) >= 1e-7)) return;
  for (const int places : {0, 2, 9}) {
    wchar_t text[400];
    std::swprintf(text, std::size(text), places == 0 ? L"%.*f." : L"%.*f", places, a);
    const bool is_zero = std::wcspbrk(text, L"123456789") == nullptr;  // then without a minus
    Require(FormatFixed(a, places) == std::wcschr(text, is_zero ? L'0' : text[0]),
            "a number of any size has its digits", a, places);
  }
}

}  // namespace
}  // namespace ard::fuzz

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  using namespace ard::fuzz;
  Input input(data, size);
  const auto any_double = [&] {
    return std::bit_cast<double>(input.ConsumeIntegral<std::uint64_t>());
  };
  CheckDecimals(input);
  CheckDouble(any_double());
  CheckDouble(input.ConsumeFloatingPointInRange(-1e10, 1e10));
  CheckDoubles(any_double(), any_double());
  CheckDate({input.ConsumeFloatingPointInRange(-660000.0, 2960000.0)},
            input.Text(20, L"0123459-: "));
  CheckDate({any_double()}, {});
  CheckNumberText(input.Text(24, L"0123456789019.,eE+-  x"));
  const std::wstring text = input.AnyText(500);
  CheckNumberText(text);
  CheckText(text,
            input.OneIn(2) ? input.AnyText(60) : ard::LowerCase(text.substr(0, text.size() / 2)));
  return 0;
}
