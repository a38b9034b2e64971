// A table held in memory, written through to its file when it has one, and read again when another
// process has stored a record there.
#ifndef ARD_SIMULATOR_MEMORY_TABLE_H_
#define ARD_SIMULATOR_MEMORY_TABLE_H_

#include <memory>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "simulator/table.h"
#include "simulator/table_file.h"
#include "simulator/table_text.h"

namespace ard::simulator {

class MemoryTable : public Table {
 public:
  MemoryTable(Columns columns, std::span<const std::wstring_view> key_fields)
      : Table(std::move(columns), key_fields) {}

  // Appends the records of `text`, whose columns are the first of the table's, and takes them out
  // of it. Throws CompanyError, with `file` as the name, when a key is no key.
  void Fill(TableText& text, const std::string& file);
  // Does so with what `file` holds. From now on, every record stored goes to the file first, and
  // what others store there is brought in.
  void Attach(std::unique_ptr<TableFile> file, TableText text);

  std::int32_t size() const override { return static_cast<std::int32_t>(rows_.size()); }
  Value Cell(std::int32_t record, std::size_t column) const override;
  std::int32_t RecordAt(std::int32_t position) const override;
  std::int32_t PositionOf(std::int32_t record) const override;
  std::wstring KeyAt(std::int32_t position) const override;
  std::int32_t LowerBound(std::wstring_view key) const override;
  bool Store(std::int32_t record, Row row) override;
  std::shared_ptr<void> TryHold(std::int32_t record) override;

 protected:
  void BeginTurn() override;
  void EndTurn() override;
  void Reload() override;

 private:
  struct Entry {
    std::wstring key;
    std::int32_t record;
  };

  std::wstring KeyOf(const Row& row) const;
  // The key column whose text has a NUL character: it would end the key for whoever reads it.
  std::optional<std::size_t> KeyWithNul(const Row& row) const;
  // Whether record number `record` may have the key.
  bool IsFree(const std::wstring& key_text, std::int32_t record) const;
  void Enter(std::int32_t record, std::wstring key);
  // Takes over the records of a table that holds what others have stored.
  void Adopt(MemoryTable& other);

  std::vector<Row> rows_;
  std::vector<Entry> index_;  // in key order
  std::unique_ptr<TableFile> file_;
};

}  // namespace ard::simulator

#endif  // ARD_SIMULATOR_MEMORY_TABLE_H_
