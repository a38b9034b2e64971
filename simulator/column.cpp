#include "simulator/column.h"

#include <utility>

#include "frame/error.h"
#include "frame/text.h"

namespace ard::simulator {

Value Blank(ColumnType type) {
  switch (type) {
    case ColumnType::kBoolean:
      return false;
    case ColumnType::kInteger8:
      return std::uint8_t{0};
    case ColumnType::kCurrency:
      return Currency{};
    case ColumnType::kLong:
      return std::int32_t{0};
    case ColumnType::kInteger16:
      return std::int16_t{0};
    case ColumnType::kDouble:
      return 0.0;
    case ColumnType::kDate:
      return Null{};
    case ColumnType::kText:
      break;
  }
  return std::wstring();
}

Value ConvertTo(ColumnType type, const Value& value) {
  if (value.is_empty()) return value;
  switch (type) {
    case ColumnType::kBoolean:
      return value.ToBoolean();
    case ColumnType::kInteger8:
      return value.ToByte();
    case ColumnType::kCurrency:
      return value.ToCurrency();
    case ColumnType::kLong:
      return value.ToLong();
    case ColumnType::kInteger16:
      return value.ToInteger();
    case ColumnType::kDouble:
      return value.ToDouble();
    case ColumnType::kDate:
      return value.is_null() ? Value() : Value(value.ToDate());
    case ColumnType::kText:
      break;
  }
  return value.ToText();
}

std::wstring_view WithoutPadding(std::wstring_view text) {
  return text.substr(0, text.find_last_not_of(L' ') + 1);
}

bool Columns::Add(Column column) {
  const int index = static_cast<int>(columns_.size());
  if (!by_name_.emplace(column.name, index).second) return false;
  columns_.push_back(std::move(column));
  return true;
}

int Columns::Find(std::wstring_view name) const {
  const auto found = by_name_.find(name);
  return found == by_name_.end() ? -1 : found->second;
}

std::size_t Columns::Require(std::wstring_view name) const {
  const int index = Find(name);
  if (index < 0) throw Error(kErrorUnknownName, L"There is no field " + std::wstring(name) + L".");
  return static_cast<std::size_t>(index);
}

// Names that differ in case only have to hash alike; names of columns are plain ASCII.
std::size_t Columns::Hash::operator()(std::wstring_view name) const {
  std::size_t hash = 2166136261u;
  for (const wchar_t c : name) hash = (hash ^ (static_cast<std::size_t>(c) | 0x20)) * 16777619u;
  return hash;
}

bool Columns::Equal::operator()(std::wstring_view a, std::wstring_view b) const {
  return a == b || EqualsIgnoreCase(a, b);
}

}  // namespace ard::simulator
