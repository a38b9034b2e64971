// A table held in memory, written through to its file when it has one.
#ifndef ARD_SIMULATOR_MEMORY_TABLE_H_
#define ARD_SIMULATOR_MEMORY_TABLE_H_

#include <functional>
#include <span>
#include <string_view>
#include <vector>

#include "simulator/table.h"

namespace ard::simulator {

class MemoryTable : public Table {
 public:
  // Puts a record on permanent storage before it counts as stored; throws Error when it cannot.
  using Writer = std::function<void(std::int32_t record, const Row& row)>;

  MemoryTable(Columns columns, std::span<const std::wstring_view> key_fields)
      : Table(std::move(columns), key_fields) {}

  // From now on, every record stored goes through `writer` first.
  void set_writer(Writer writer) { writer_ = std::move(writer); }

  std::int32_t size() const override { return static_cast<std::int32_t>(rows_.size()); }
  Value Cell(std::int32_t record, std::size_t column) const override;
  std::int32_t RecordAt(std::int32_t position) const override;
  std::int32_t PositionOf(std::int32_t record) const override;
  std::wstring KeyAt(std::int32_t position) const override;
  std::int32_t LowerBound(std::wstring_view key) const override;
  bool Store(std::int32_t record, Row row) override;

 private:
  struct Entry {
    std::wstring key;
    std::int32_t record;
  };

  std::wstring KeyOf(const Row& row) const;
  // Whether record number `record` may have the key.
  bool IsFree(const std::wstring& key_text, std::int32_t record) const;
  void Enter(std::int32_t record, std::wstring key);

  std::vector<Row> rows_;
  std::vector<Entry> index_;  // in key order
  Writer writer_;
};

}  // namespace ard::simulator

#endif  // ARD_SIMULATOR_MEMORY_TABLE_H_
