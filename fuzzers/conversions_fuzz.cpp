// Text, numbers, dates and exact decimals: what converts reads back the same, what does not throws
// the described errors, and arithmetic agrees with integers.
#include <bit>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <optional>
#include <string>

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
  if (rest != 0.5) return rest < 0.5 ? below : below + 1;
  return std::fmod(below, 2) == 0 ? below : below + 1;
}

// The conversions of a value agree with the number that it is.
void CheckNumbers(const Value& value) {
  const std::optional<double> number = Try([&] { return value.ToDouble(); });
  const auto agrees = [&](auto converted, double least, double most) {
    const bool fits = number && HalfToEven(*number) >= least && HalfToEven(*number) <= most;
    Require(converted.has_value() == fits, "a number that fits is taken, no other", *number);
    if (fits) Require(*converted == HalfToEven(*number), "halves round to even", *number);
  };
  agrees(Try([&] { return value.ToByte(); }), 0, 255);
  agrees(Try([&] { return value.ToInteger(); }), -32768, 32767);
  agrees(Try([&] { return value.ToLong(); }), -2147483648.0, 2147483647);
  if (const auto amount = Try([&] { return value.ToCurrency(); })) {
    Require(std::abs(static_cast<long double>(amount->units) - *number * 10000.0L) <=
                0.5L + std::abs(*number) * 1e-11L,
            "an amount is the nearest one", *number);
  }
  if (const auto date = Try([&] { return value.ToDate(); })) {
    Require(IsInRange(*date), "a date is in range", date->days);
  }
  if (const auto truth = Try([&] { return value.ToBoolean(); }); number) {
    Require(truth == (*number != 0), "what is not zero is true", *number);
  }
}

// A number in text is what the C library reads there.
void CheckNumberText(const std::wstring& text) {
  CheckNumbers(text);
  const std::optional<double> number = Try([&] { return Value(text).ToDouble(); });
  if (!number) return;
  std::string plain;
  for (const wchar_t c : text) {
    if (c != L',' && c != L' ') plain += static_cast<char>(c);
  }
  char* end = nullptr;
  Require(std::strtod(plain.c_str(), &end) == *number && *end == '\0', "text is its number", text);
}

void CheckDouble(double number) {
  CheckNumbers(number);
  if (!std::isfinite(number)) return;
  char digits[40];
  std::snprintf(digits, sizeof digits, "%.15g", number);
  const double expected = std::strtod(digits, nullptr);
  const std::wstring text = Value(number).ToText();
  const auto again = Try([&] { return Value(text).ToDouble(); });
  Require(again ? *again == expected : std::isinf(expected), "text has 15 digits", text, number);
}

void CheckText(const std::wstring& a, const std::wstring& b) {
  Require(FromUtf8(ToUtf8(a)) == a, "text survives as UTF-8", a);
  const std::wstring upper = UpperCase(a);
  Require(UpperCase(upper) == upper, "the upper case of the upper case is the same", a);
  Require(CompareIgnoreCase(a, b) == (upper <=> UpperCase(b)), "the upper cases compare", a, b);
  Require(StartsWithIgnoreCase(a, b) == upper.starts_with(UpperCase(b)), "a prefix is one", a, b);
  std::wstring trimmed = a;
  Trim(trimmed);
  Require(trimmed == Trimmed(a) && !trimmed.starts_with(L' ') && !trimmed.ends_with(L' ') &&
              a.find(trimmed) != a.npos,
          "no blanks around", a);
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
  // A whole day counts from midnight forwards, before the first day too.
  const auto moment = [](Date d) {
    return std::trunc(d.days) + std::abs(d.days - std::trunc(d.days));
  };
  Require(std::abs(moment(*again) - moment(date)) * 86400 < 0.51, "to the second", date.days);
}

// digits / 10^scale, which has at most 15 digits, as the double nearest to it.
double Nearest(std::int64_t digits, int scale) {
  return std::strtod((std::to_string(digits) + "e-" + std::to_string(scale)).c_str(), nullptr);
}

std::int64_t Power(int exponent) { return exponent == 0 ? 1 : 10 * Power(exponent - 1); }

// digits / 10^scale with so many places.
std::wstring Fixed(std::int64_t digits, int scale, int places) {
  std::int64_t left = std::abs(digits);
  if (scale - places > 17) left = 0;
  if (scale > places && left != 0)
    left = (left + Power(scale - places) / 2) / Power(scale - places);
  std::wstring text = std::to_wstring(left);
  const auto behind = static_cast<std::size_t>(std::min(scale, places));
  if (text.size() <= behind) text.insert(0, behind + 1 - text.size(), L'0');
  text.insert(text.size() - behind, L".");
  text.append(static_cast<std::size_t>(places) - behind, L'0');
  return (digits < 0 && left > 0 ? L"-" : L"") + text;
}

void CheckDecimals(Input& input) {
  constexpr std::int64_t kMost = 999'999'999'999'999;
  const auto a = input.ConsumeIntegralInRange<std::int64_t>(-kMost, kMost);
  const auto b = input.ConsumeIntegralInRange<std::int64_t>(-kMost, kMost);
  const int scale_a = input.UpTo(22);
  const int scale_b = input.UpTo(22);
  const double x = Nearest(a, scale_a);
  const double y = Nearest(b, scale_b);
  const int places = input.UpTo(30);
  Require(FormatFixed(x, places) == Fixed(a, scale_a, places), "halves round away from zero", x,
          places, FormatFixed(x, places));

  const int more_a = std::max(scale_b - scale_a, 0);
  const int more_b = std::max(scale_a - scale_b, 0);
  constexpr std::int64_t kLimit = 1'000'000'000'000'000'000;
  if (more_a < 18 && more_b < 18 && std::abs(a) <= kLimit / Power(more_a) &&
      std::abs(b) <= kLimit / Power(more_b)) {
    const double sum = Nearest(a * Power(more_a) + b * Power(more_b), scale_a + more_a);
    Require(ExactSum(x, y) == sum, "a sum is exact", x, y, ExactSum(x, y), sum);
  }
}

void CheckDoubles(double a, double b) {
  const double difference = ExactDifference(a, b);
  Require(std::isnan(difference) || difference == -ExactDifference(b, a), "antisymmetric", a, b);
  if (!std::isfinite(a) || (std::abs(a) < 1e15 && std::abs(a) >= 1e-7)) return;
  // The plain formatter's, but that there is no minus before zero.
  for (const int places : {0, 2, 9}) {
    std::wstring text(400, L'\0');
    text.resize(static_cast<std::size_t>(
        std::swprintf(text.data(), text.size(), places == 0 ? L"%.*f." : L"%.*f", places, a)));
    if (text.find_first_not_of(L"-0.") == text.npos) text.erase(0, text.find(L'0'));
    Require(FormatFixed(a, places) == text, "a number of any size has its digits", a, text,
            FormatFixed(a, places));
  }
}

}  // namespace
}  // namespace ard::fuzz

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  using namespace ard::fuzz;
  Input input(data, size);
  switch (input.UpTo(5)) {
    case 0:
      CheckDecimals(input);
      break;
    case 1:
      CheckNumberText(input.Text(24, L"0123456789019.,eE+-  x"));
      CheckNumberText(input.AnyText(500));
      break;
    case 2:
      CheckDouble(std::bit_cast<double>(input.ConsumeIntegral<std::uint64_t>()));
      CheckDouble(input.ConsumeFloatingPointInRange(-1e10, 1e10));
      break;
    case 3: {
      const std::wstring text = input.AnyText(60);
      CheckText(text, input.ConsumeBool() ? input.AnyText(60) : text.substr(0, text.size() / 2));
      CheckText(ard::FromUtf8(input.ConsumeRemainingBytesAsString()), text);
      break;
    }
    case 4:
      CheckDate({input.ConsumeFloatingPointInRange(-660000.0, 2960000.0)},
                input.Text(20, L"0123459-: "));
      CheckDate({std::bit_cast<double>(input.ConsumeIntegral<std::uint64_t>())}, {});
      break;
    default:
      CheckDoubles(std::bit_cast<double>(input.ConsumeIntegral<std::uint64_t>()),
                   std::bit_cast<double>(input.ConsumeIntegral<std::uint64_t>()));
  }
  return 0;
}
