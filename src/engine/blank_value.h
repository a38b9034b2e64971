// Types of fields, and what a field of a new record is filled with.
#ifndef ARD_ENGINE_BLANK_VALUE_H_
#define ARD_ENGINE_BLANK_VALUE_H_

#include <cstdint>

#include "frame/value.h"

namespace ard::engine {

// In ODBC's numbering.
struct FieldType {
  static constexpr std::int32_t kByte = -6;
  static constexpr std::int32_t kLong = 4;
  static constexpr std::int32_t kInteger = 5;
  static constexpr std::int32_t kDouble = 8;
  static constexpr std::int32_t kDate = 9;
  static constexpr std::int32_t kText = 12;
};

// Nothing for other types. A date gets the number 1, which the engine stores as the day after day
// zero.
inline Value BlankValue(std::int32_t type) {
  switch (type) {
    case FieldType::kDate:
      return std::int16_t{1};
    case FieldType::kDouble:
      return 0.0;
    case FieldType::kLong:
      return std::int32_t{0};
    case FieldType::kInteger:
      return std::int16_t{0};
    case FieldType::kText:
      return L"";
    case FieldType::kByte:
      return std::uint8_t{0};
    default:
      return {};
  }
}

}  // namespace ard::engine

#endif  // ARD_ENGINE_BLANK_VALUE_H_
