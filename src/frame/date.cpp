#include "frame/date.h"

#include <chrono>
#include <cmath>
#include <cstdio>
#include <cwchar>

#include "frame/error.h"

namespace ard {
namespace {

using std::chrono::days;
using std::chrono::sys_days;
using std::chrono::year_month_day;

constexpr sys_days kDayZero =
    std::chrono::year(1899) / std::chrono::December / std::chrono::day(30);
constexpr int kSecondsPerDay = 24 * 60 * 60;

// Reads exactly `count` digits off the front of `text`.
std::optional<int> TakeDigits(std::wstring_view& text, std::size_t count) {
  if (text.size() < count) return std::nullopt;
  int number = 0;
  for (const wchar_t c : text.substr(0, count)) {
    if (c < L'0' || c > L'9') return std::nullopt;
    number = number * 10 + (c - L'0');
  }
  text.remove_prefix(count);
  return number;
}

bool TakeCharacter(std::wstring_view& text, wchar_t expected) {
  if (text.empty() || text.front() != expected) return false;
  text.remove_prefix(1);
  return true;
}

// The seconds of "09:30:00".
std::optional<int> TakeTime(std::wstring_view& text) {
  const auto hour = TakeDigits(text, 2);
  if (!hour || *hour > 23 || !TakeCharacter(text, L':')) return std::nullopt;
  const auto minute = TakeDigits(text, 2);
  if (!minute || *minute > 59 || !TakeCharacter(text, L':')) return std::nullopt;
  const auto second = TakeDigits(text, 2);
  if (!second || *second > 59) return std::nullopt;
  return (*hour * 60 + *minute) * 60 + *second;
}

}  // namespace

bool IsInRange(Date date) { return date.days > -657435.0 && date.days < 2958466.0; }

std::wstring FormatIsoDate(Date date) {
  if (!IsInRange(date)) throw Error(kErrorOverflow, L"Overflow.");
  double whole = std::trunc(date.days);
  int seconds = static_cast<int>(std::lround(std::fabs(date.days - whole) * kSecondsPerDay));
  if (seconds == kSecondsPerDay) {
    seconds = 0;
    whole += 1;
  }
  const year_month_day ymd(kDayZero + days(static_cast<int>(whole)));
  wchar_t text[40];
  int length = std::swprintf(text, 40, L"%04d-%02u-%02u", static_cast<int>(ymd.year()),
                             static_cast<unsigned>(ymd.month()), static_cast<unsigned>(ymd.day()));
  if (seconds != 0) {
    length += std::swprintf(text + length, static_cast<std::size_t>(40 - length),
                            L" %02d:%02d:%02d", seconds / 3600, seconds / 60 % 60, seconds % 60);
  }
  return std::wstring(text, static_cast<std::size_t>(length));
}

std::optional<Date> ParseIsoDate(std::wstring_view text) {
  const auto year = TakeDigits(text, 4);
  if (!year || !TakeCharacter(text, L'-')) return std::nullopt;
  const auto month = TakeDigits(text, 2);
  if (!month || !TakeCharacter(text, L'-')) return std::nullopt;
  const auto day = TakeDigits(text, 2);
  if (!day) return std::nullopt;
  const year_month_day ymd(std::chrono::year(*year),
                           std::chrono::month(static_cast<unsigned>(*month)),
                           std::chrono::day(static_cast<unsigned>(*day)));
  if (!ymd.ok()) return std::nullopt;
  int seconds = 0;
  if (TakeCharacter(text, L' ')) {
    const auto time = TakeTime(text);
    if (!time) return std::nullopt;
    seconds = *time;
  }
  if (!text.empty()) return std::nullopt;
  const double whole = static_cast<double>((sys_days(ymd) - kDayZero).count());
  const double fraction = static_cast<double>(seconds) / kSecondsPerDay;
  const Date date{whole < 0 ? whole - fraction : whole + fraction};
  return IsInRange(date) ? std::optional(date) : std::nullopt;
}

}  // namespace ard
