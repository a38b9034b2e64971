// Table: the records of one engine file, numbered from 1, and their key order. What stands behind
// the engine's data files, indexes and records, whether it is kept in memory or made up.
#ifndef ARD_SIMULATOR_TABLE_H_
#define ARD_SIMULATOR_TABLE_H_

#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "engine/seam.h"
#include "frame/value.h"
#include "simulator/column.h"

namespace ard::simulator {

// Records are never removed: one that is deleted stays, with its DELETED_FLAG set.
//
// A key is a text. Its parts stand in it one after the other, each padded with blanks to the
// length of its field; a number is ten digits, but one that begins a key of several parts is the
// character of that code. Keys as they are stored have no blanks at the end. Keys compare without
// regard to case.
class Table {
 public:
  Table(const Table&) = delete;
  Table& operator=(const Table&) = delete;
  virtual ~Table() = default;

  const Columns& columns() const { return columns_; }
  // The columns of the key, the most significant first; none when the table has no key order.
  const std::vector<std::size_t>& key() const { return key_; }

  virtual std::int32_t size() const = 0;
  // The cell of a record, 1..size(), empty when it holds nothing.
  virtual Value Cell(std::int32_t record, std::size_t column) const = 0;

  // The key order. An ordinal and a record are both 1..size().
  virtual std::int32_t RecordAt(std::int32_t position) const = 0;
  virtual std::int32_t PositionOf(std::int32_t record) const = 0;
  virtual std::wstring KeyAt(std::int32_t position) const = 0;
  // The first ordinal whose key does not come before `key`; size() + 1 when they all do.
  virtual std::int32_t LowerBound(std::wstring_view key) const = 0;

  // Makes `row`, whose cells fit their columns, record number `record`; size() + 1 appends. False,
  // and nothing stored, when the number is another, the key is blank or another record has it.
  // Throws Error when a text is too long or the table cannot be written.
  virtual bool Store(std::int32_t record, Row row) = 0;
  // How often that has stored one.
  std::int64_t records_written() const { return records_written_; }

  // The key put together from the key cells; nothing when a text is too long for its field.
  std::optional<std::wstring> ComposeKey(std::span<const Value> cells) const;
  // A key as a caller gives it: the whole text, or the number of a table numbered by its key.
  std::wstring KeyFrom(const Value& value) const;

  // The ordinal of the entry found, 0 when there is none. Exact: the entry whose key equals `key`,
  // which has no blanks at its end or all that fill its last field. Partial: the first entry whose
  // key begins with `key`.
  std::int32_t FindKey(std::wstring_view key, engine::Match match) const;

 protected:
  // Throws Error when a key field is missing or is of a type that makes no key.
  Table(Columns columns, std::span<const std::wstring_view> key_fields);

  std::int64_t records_written_ = 0;

 private:
  Columns columns_;
  std::vector<std::size_t> key_;
  std::vector<std::size_t> part_lengths_;
  std::size_t key_length_ = 0;  // of a key with all its padding
};

// Whether a column of this type can be part of a key.
bool MakesKey(ColumnType type);

}  // namespace ard::simulator

#endif  // ARD_SIMULATOR_TABLE_H_
