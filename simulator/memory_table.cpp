#include "simulator/memory_table.h"

#include <algorithm>
#include <utility>

#include "frame/error.h"
#include "frame/text.h"

namespace ard::simulator {
namespace {

// Text loses the blanks that pad it; one that does not fit its field is refused.
void Tidy(const Columns& columns, Row& row) {
  row.resize(columns.size());
  for (std::size_t i = 0; i < columns.size(); ++i) {
    if (columns[i].type != ColumnType::kText || row[i].is_empty()) continue;
    std::wstring text = std::move(row[i]).ToText();
    text.resize(WithoutPadding(text).size());
    if (text.size() > columns[i].length) {
      throw Error(kErrorOverflow, L"The text is too long for " + columns[i].name + L".");
    }
    row[i] = std::move(text);
  }
}

}  // namespace

Value MemoryTable::Cell(std::int32_t record, std::size_t column) const {
  return rows_[static_cast<std::size_t>(record) - 1][column];
}

std::int32_t MemoryTable::RecordAt(std::int32_t position) const {
  return index_[static_cast<std::size_t>(position) - 1].record;
}

std::int32_t MemoryTable::LowerBound(std::wstring_view key) const {
  const auto found = std::lower_bound(
      index_.begin(), index_.end(), key,
      [](const Entry& entry, const auto& k) { return CompareIgnoreCase(entry.key, k) < 0; });
  return static_cast<std::int32_t>(found - index_.begin()) + 1;
}

bool MemoryTable::Store(std::int32_t record, Row row) {
  if (record < 1 || record > size() + 1) return false;
  Tidy(columns(), row);
  std::optional<std::wstring> new_key = NewKey(record, row);
  if (!new_key) return false;
  if (writer_) writer_(record, row);

  if (record > size()) {
    rows_.push_back(std::move(row));
  } else {
    std::erase_if(index_, [record](const Entry& entry) { return entry.record == record; });
    rows_[static_cast<std::size_t>(record) - 1] = std::move(row);
  }
  if (!key().empty()) Enter(record, *std::move(new_key));
  return true;
}

std::optional<std::wstring> MemoryTable::NewKey(std::int32_t record, const Row& row) const {
  if (key().empty()) return std::wstring();
  std::vector<Value> cells;
  for (const std::size_t column : key()) cells.push_back(row[column]);
  std::wstring new_key = ComposeKey(cells).value();
  new_key.resize(WithoutPadding(new_key).size());
  if (new_key.empty()) return std::nullopt;
  const std::int32_t position = FindKey(new_key, engine::Match::kExact);
  if (position != 0 && RecordAt(position) != record) return std::nullopt;
  return new_key;
}

void MemoryTable::Enter(std::int32_t record, std::wstring key) {
  const auto position = index_.begin() + (LowerBound(key) - 1);
  index_.insert(position, {std::move(key), record});
}

}  // namespace ard::simulator
