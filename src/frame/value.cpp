#include "frame/value.h"

#include <charconv>
#include <cmath>
#include <cstdio>
#include <iterator>
#include <limits>
#include <optional>

#include "frame/date.h"
#include "frame/error.h"
#include "frame/text.h"

namespace ard {
namespace {

[[noreturn]] void TypeMismatch() { throw Error(kErrorTypeMismatch, L"Type mismatch."); }
[[noreturn]] void NoValue() { throw Error(kErrorNull, L"It has no value (Null)."); }
[[noreturn]] void Overflow() { throw Error(kErrorOverflow, L"Overflow."); }

template <class... Cases>
struct Overloaded : Cases... {
  using Cases::operator()...;
};
template <class... Cases>
Overloaded(Cases...) -> Overloaded<Cases...>;

std::wstring FormatInteger(auto number) {
  char text[16];
  return std::wstring(std::begin(text), std::to_chars(text, std::end(text), number).ptr);
}

constexpr bool IsDigit(wchar_t c) { return c >= L'0' && c <= L'9'; }

// A number as automation reads it from text: surrounding blanks, a sign, digits with commas
// between them as thousands separators, a decimal point, an exponent.
double ParseNumber(std::wstring_view text) {
  text = Trimmed(text);
  // Longer text may well be a number, but none that anybody writes.
  char plain[400];
  std::size_t length = 0;
  bool digits = false;
  bool fraction = false;
  if (text.size() >= sizeof plain) TypeMismatch();
  for (std::size_t i = 0; i < text.size(); ++i) {
    const wchar_t c = text[i];
    const bool sign_place = i == 0 || text[i - 1] == L'e' || text[i - 1] == L'E';
    if (IsDigit(c)) {
      digits = true;
    } else if (c == L',' && digits && !fraction) {
      continue;
    } else if (c == L'+' && sign_place) {
      continue;
    } else if (c == L'.' || c == L'e' || c == L'E') {
      fraction = true;
    } else if (c != L'-' || !sign_place) {
      TypeMismatch();
    }
    plain[length++] = static_cast<char>(c);
  }
  double number = 0;
  const auto [end, error] = std::from_chars(plain, plain + length, number);
  if (!digits || end != plain + length) TypeMismatch();
  if (error == std::errc::result_out_of_range) Overflow();
  return number;
}

std::optional<bool> ParseBooleanWord(std::wstring_view text) {
  if (EqualsIgnoreCase(text, L"True")) return true;
  if (EqualsIgnoreCase(text, L"False")) return false;
  return std::nullopt;
}

// By snprintf, for the standard library's own conversion brings 150 KB of tables along.
std::wstring FormatNumber(double number) {
  char text[40];
  const int length = std::snprintf(text, sizeof text, "%.15g", number);
  std::wstring result(text, text + length);
  for (wchar_t& c : result) {
    if (c == L'e') c = L'E';
    // Whatever the host's locale has for a point.
    if (std::isfinite(number) && std::wstring_view(L"0123456789+-E").find(c) == std::string::npos) {
      c = L'.';
    }
  }
  return result == L"-0" ? L"0" : result;
}

std::wstring FormatCurrency(Currency amount) {
  const bool negative = amount.units < 0;
  const std::uint64_t units = negative ? ~static_cast<std::uint64_t>(amount.units) + 1
                                       : static_cast<std::uint64_t>(amount.units);
  char text[40];
  std::snprintf(text, sizeof text, "%s%llu.%04llu", negative ? "-" : "",
                static_cast<unsigned long long>(units / 10000),
                static_cast<unsigned long long>(units % 10000));
  std::wstring result(text, text + std::char_traits<char>::length(text));
  result.erase(result.find_last_not_of(L'0') + 1);
  if (result.back() == L'.') result.pop_back();
  return result;
}

// Half to even, as long as the default rounding mode is in force.
template <class Integer>
Integer RoundTo(double number) {
  const double rounded = std::nearbyint(number);
  if (!(rounded >= static_cast<double>(std::numeric_limits<Integer>::min()) &&
        rounded <= static_cast<double>(std::numeric_limits<Integer>::max()))) {
    Overflow();
  }
  return static_cast<Integer>(rounded);
}

template <class Integer>
Integer ToIntegral(const Value& value) {
  return std::visit(Overloaded{
                        [](std::monostate) -> Integer { return 0; },
                        [](bool b) -> Integer { return RoundTo<Integer>(b ? -1 : 0); },
                        [](std::uint8_t n) { return RoundTo<Integer>(n); },
                        [](std::int16_t n) { return RoundTo<Integer>(n); },
                        [](std::int32_t n) { return RoundTo<Integer>(n); },
                        [&](const auto&) { return RoundTo<Integer>(value.ToDouble()); },
                    },
                    value.storage());
}

}  // namespace

bool Value::ToBoolean() const {
  if (const bool* b = std::get_if<bool>(&storage_)) return *b;
  if (const std::wstring* text = std::get_if<std::wstring>(&storage_)) {
    if (const std::optional<bool> word = ParseBooleanWord(Trimmed(*text))) return *word;
  }
  return ToDouble() != 0;
}

std::uint8_t Value::ToByte() const {
  // True is 255 as a byte: the eight bits of -1.
  if (const bool* b = std::get_if<bool>(&storage_)) return *b ? 255 : 0;
  return ToIntegral<std::uint8_t>(*this);
}

std::int16_t Value::ToInteger() const { return ToIntegral<std::int16_t>(*this); }

std::int32_t Value::ToLong() const { return ToIntegral<std::int32_t>(*this); }

double Value::ToDouble() const {
  return std::visit(Overloaded{
                        [](std::monostate) { return 0.0; },
                        [](Null) -> double { NoValue(); },
                        [](bool b) { return b ? -1.0 : 0.0; },
                        [](std::uint8_t n) { return static_cast<double>(n); },
                        [](std::int16_t n) { return static_cast<double>(n); },
                        [](std::int32_t n) { return static_cast<double>(n); },
                        [](double n) { return n; },
                        [](Currency c) { return static_cast<double>(c.units) / 10000; },
                        [](Date d) { return d.days; },
                        [](const std::wstring& text) { return ParseNumber(text); },
                        [](const std::shared_ptr<Object>&) -> double { TypeMismatch(); },
                    },
                    storage_);
}

Currency Value::ToCurrency() const {
  if (const Currency* amount = std::get_if<Currency>(&storage_)) return *amount;
  const double units = std::nearbyint(ToDouble() * 10000);
  // 2^63, exactly; as a double the largest amount below it is 2^63 - 1024.
  constexpr double kLimit = 9223372036854775808.0;
  if (!(units >= -kLimit && units < kLimit)) Overflow();
  return {static_cast<std::int64_t>(units)};
}

Date Value::ToDate() const {
  if (const std::wstring* text = std::get_if<std::wstring>(&storage_)) {
    if (const std::optional<Date> date = ParseIsoDate(Trimmed(*text))) return *date;
  }
  const Date date{ToDouble()};
  if (!IsInRange(date)) Overflow();
  return date;
}

std::wstring Value::ToText() const& {
  return std::visit(Overloaded{
                        [](std::monostate) { return std::wstring(); },
                        [](Null) -> std::wstring { NoValue(); },
                        [](bool b) { return std::wstring(b ? L"True" : L"False"); },
                        [](double n) { return FormatNumber(n); },
                        [](Currency c) { return FormatCurrency(c); },
                        [](Date d) { return FormatIsoDate(d); },
                        [](const std::wstring& text) { return text; },
                        [](const std::shared_ptr<Object>&) -> std::wstring { TypeMismatch(); },
                        [](auto integer) { return FormatInteger(integer); },
                    },
                    storage_);
}

std::wstring Value::ToText() && {
  if (std::wstring* text = std::get_if<std::wstring>(&storage_)) return std::move(*text);
  return static_cast<const Value&>(*this).ToText();
}

}  // namespace ard
