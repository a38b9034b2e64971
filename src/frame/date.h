// Automation dates: days since 30 December 1899 as a double. Before that day the fraction still
// counts forward from midnight, so -1.25 is 29 December 1899, 06:00.
#ifndef ARD_FRAME_DATE_H_
#define ARD_FRAME_DATE_H_

#include <optional>
#include <string>
#include <string_view>

#include "frame/value.h"

namespace ard {

// 1 January 100 to 31 December 9999.
bool IsInRange(Date date);

// "2026-11-21", followed by " 09:30:00" when there is a time of day. Text is the same in every
// locale. Throws Error (overflow) when the date is out of range.
std::wstring FormatIsoDate(Date date);

// Reads what FormatIsoDate writes; nothing when `text` is not such a date.
std::optional<Date> ParseIsoDate(std::wstring_view text);

}  // namespace ard

#endif  // ARD_FRAME_DATE_H_
