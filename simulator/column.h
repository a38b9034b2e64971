// The columns of a table: their names, their types, and the values that fit them.
#ifndef ARD_SIMULATOR_COLUMN_H_
#define ARD_SIMULATOR_COLUMN_H_

#include <cstdint>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "frame/value.h"

namespace ard::simulator {

// The numbers that a field reports as its type, in the ODBC numbering of SQL data types.
enum class ColumnType : std::int32_t {
  kBoolean = -7,
  kInteger8 = -6,
  kCurrency = 3,
  kLong = 4,
  kInteger16 = 5,
  kDouble = 8,
  kDate = 9,
  kText = 12,
};

struct Column {
  std::wstring name;
  ColumnType type = ColumnType::kText;
  std::size_t length = 0;  // of text: the characters that the field holds

  bool operator==(const Column&) const = default;
};

// A record's cells in column order. An empty Value is a cell that holds nothing, whatever the
// column's type; text is kept without the blanks that pad it.
using Row = std::vector<Value>;

// What a field of this type reads when its cell holds nothing: 0, no, "", and Null for a date.
Value Blank(ColumnType type);

// `value` as a cell of this type holds it: an empty value, and Null in a date, are a cell that
// holds nothing. Throws Error (type mismatch, overflow) when the value does not convert.
Value ConvertTo(ColumnType type, const Value& value);

// `text` without trailing blanks.
std::wstring_view WithoutPadding(std::wstring_view text);

// Column names compare without regard to case, as the engine compares them.
class Columns {
 public:
  Columns() = default;

  // False, and nothing added, when a column of that name is there already.
  bool Add(Column column);

  std::size_t size() const { return columns_.size(); }
  const Column& operator[](std::size_t index) const { return columns_[index]; }
  auto begin() const { return columns_.begin(); }
  auto end() const { return columns_.end(); }

  // The index of the named column, -1 when there is none.
  int Find(std::wstring_view name) const;
  // The same; throws Error (unknown name) when there is none.
  std::size_t Require(std::wstring_view name) const;

 private:
  struct Hash {
    using is_transparent = void;  // NOLINT(readability-identifier-naming): the library's name
    std::size_t operator()(std::wstring_view name) const;
  };
  struct Equal {
    using is_transparent = void;  // NOLINT(readability-identifier-naming)
    bool operator()(std::wstring_view a, std::wstring_view b) const;
  };

  std::vector<Column> columns_;
  std::unordered_map<std::wstring, int, Hash, Equal> by_name_;
};

}  // namespace ard::simulator

#endif  // ARD_SIMULATOR_COLUMN_H_
