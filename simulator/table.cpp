#include "simulator/table.h"

#include <utility>

#include "frame/error.h"
#include "frame/text.h"

namespace ard::simulator {
namespace {

constexpr std::size_t kNumberLength = 10;

// Ten digits that sort like the number, negative ones included.
std::wstring Digits(std::int32_t number) {
  std::wstring digits = std::to_wstring(std::int64_t{number} + (std::int64_t{1} << 31));
  return digits.insert(0, kNumberLength - digits.size(), L'0');
}

// A number is one character where its part of the key has room for no more.
std::wstring KeyPart(const Column& column, std::size_t length, const Value& cell) {
  if (column.type == ColumnType::kText) return cell.ToText();
  return length == 1 ? std::wstring(1, static_cast<wchar_t>(cell.ToLong())) : Digits(cell.ToLong());
}

}  // namespace

bool MakesKey(ColumnType type) {
  return type == ColumnType::kText || type == ColumnType::kInteger8 ||
         type == ColumnType::kInteger16 || type == ColumnType::kLong;
}

Table::Table(Columns columns, std::span<const std::wstring_view> key_fields)
    : columns_(std::move(columns)) {
  for (const std::wstring_view field : key_fields) {
    const std::size_t column = columns_.Require(field);
    if (!MakesKey(columns_[column].type)) {
      throw Error(kErrorTypeMismatch, std::wstring(field) + L" cannot be a key.");
    }
    const bool begins_several = key_.empty() && key_fields.size() > 1;
    const std::size_t number_length = begins_several ? 1 : kNumberLength;
    const bool is_text = columns_[column].type == ColumnType::kText;
    key_.push_back(column);
    part_lengths_.push_back(is_text ? columns_[column].length : number_length);
    key_length_ += part_lengths_.back();
  }
}

std::optional<std::wstring> Table::ComposeKey(std::span<const Value> cells) const {
  std::wstring key;
  std::size_t end = 0;
  for (std::size_t i = 0; i < key_.size(); ++i) {
    key.resize(end, L' ');
    const std::wstring part = KeyPart(columns_[key_[i]], part_lengths_[i], cells[i]);
    if (part.size() > part_lengths_[i]) return std::nullopt;
    key += part;
    end += part_lengths_[i];
  }
  return key;
}

std::wstring Table::KeyFrom(const Value& value) const {
  if (key_.size() != 1) return value.ToText();
  return KeyPart(columns_[key_[0]], part_lengths_[0], value);
}

std::int32_t Table::FindKey(std::wstring_view key, engine::Match match) const {
  const std::wstring_view wanted = match == engine::Match::kExact ? WithoutPadding(key) : key;
  const std::int32_t position = LowerBound(wanted);
  if (position > size()) return 0;
  const std::wstring found = KeyAt(position);
  if (match == engine::Match::kPartial) return StartsWithIgnoreCase(found, wanted) ? position : 0;
  const bool padding_fits = key.size() == wanted.size() || key.size() == key_length_;
  return padding_fits && EqualsIgnoreCase(found, wanted) ? position : 0;
}

}  // namespace ard::simulator
