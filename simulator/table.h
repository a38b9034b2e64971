// Table: the records of one engine file, numbered from 1, and their key order. What stands behind
// the engine's data files, indexes and records, whether it is kept in memory or made up.
#ifndef ARD_SIMULATOR_TABLE_H_
#define ARD_SIMULATOR_TABLE_H_

#include <atomic>
#include <cstdint>
#include <memory>
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

  // Brings in what other processes have stored since, which all that is told above may change.
  // Costs one look at memory when they have not. Throws Error.
  void Refresh() {
    if (stores_ == nullptr) return;
    if (std::atomic_ref(*stores_).load(std::memory_order_acquire) != stores_seen_) Reload();
  }
  // The same when a file is opened: then it may cost more.
  virtual void Reopen() { Refresh(); }

  // How often that has brought in something, and whether it has changed the record, or appended it,
  // after the first `generation` times.
  std::uint32_t generation() const { return generation_; }
  bool IsChangedSince(std::int32_t record, std::uint32_t generation) const {
    const auto place = static_cast<std::size_t>(record) - 1;
    return place < changed_.size() && changed_[place] > generation;
  }
  // Differs when records may have other places in the key order than they had.
  std::uint32_t order() const { return order_; }

  // While one lives, nobody else stores a record of the table; begins with Refresh. Throws Error.
  class Turn {
   public:
    explicit Turn(Table& table) : table_(table) { table_.BeginTurn(); }
    Turn(const Turn&) = delete;
    Turn& operator=(const Turn&) = delete;
    ~Turn() { table_.EndTurn(); }

   private:
    Table& table_;
  };
  // Holds a record while it is edited. Null when another process does.
  virtual std::shared_ptr<void> TryHold(std::int32_t) { return std::make_shared<char>(); }

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

  virtual void BeginTurn() {}
  virtual void EndTurn() {}
  // Called when others have stored: takes their records, and note of their count.
  virtual void Reload() {}

  std::int64_t records_written_ = 0;
  std::uint32_t* stores_ = nullptr;  // counts what all processes store; null for a table of our own
  std::uint32_t stores_seen_ = 0;
  std::uint32_t generation_ = 0;
  std::vector<std::uint32_t> changed_;  // by record: the generation that brought it
  std::uint32_t order_ = 0;

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
