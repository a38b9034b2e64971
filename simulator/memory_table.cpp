#include "simulator/memory_table.h"

#include <algorithm>
#include <compare>
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
    row[i] = text.empty() ? Value() : Value(std::move(text));
  }
}

// For one element more, so that adding it cannot fail.
template <class Element>
void MakeRoom(std::vector<Element>& elements) {
  if (elements.size() == elements.capacity()) elements.reserve(2 * elements.size() + 1);
}

}  // namespace

Value MemoryTable::Cell(std::int32_t record, std::size_t column) const {
  return rows_[static_cast<std::size_t>(record) - 1][column];
}

std::int32_t MemoryTable::RecordAt(std::int32_t position) const {
  return index_[static_cast<std::size_t>(position) - 1].record;
}

std::int32_t MemoryTable::PositionOf(std::int32_t record) const {
  return LowerBound(KeyOf(rows_[static_cast<std::size_t>(record) - 1]));
}

std::wstring MemoryTable::KeyAt(std::int32_t position) const {
  return index_[static_cast<std::size_t>(position) - 1].key;
}

std::int32_t MemoryTable::LowerBound(std::wstring_view key) const {
  const auto found =
      std::lower_bound(index_.begin(), index_.end(), key, [](const Entry& entry, const auto& k) {
        return std::is_lt(CompareIgnoreCase(entry.key, k));
      });
  return static_cast<std::int32_t>(found - index_.begin()) + 1;
}

bool MemoryTable::Store(std::int32_t record, Row row) {
  if (record < 1 || record > size() + 1) return false;
  Tidy(columns(), row);
  std::wstring new_key = KeyOf(row);
  if (!key().empty() && !IsFree(new_key, record)) return false;
  MakeRoom(rows_);
  MakeRoom(index_);
  if (writer_) writer_(record, row);

  if (record > size()) {
    rows_.push_back(std::move(row));
  } else {
    std::erase_if(index_, [record](const Entry& entry) { return entry.record == record; });
    rows_[static_cast<std::size_t>(record) - 1] = std::move(row);
  }
  if (!key().empty()) Enter(record, std::move(new_key));
  ++records_written_;
  return true;
}

std::wstring MemoryTable::KeyOf(const Row& row) const {
  std::vector<Value> cells;
  cells.reserve(key().size());
  for (const std::size_t column : key()) cells.push_back(row[column]);
  std::wstring key_text = ComposeKey(cells).value();
  key_text.resize(WithoutPadding(key_text).size());
  return key_text;
}

bool MemoryTable::IsFree(const std::wstring& key_text, std::int32_t record) const {
  if (key_text.empty()) return false;
  const std::int32_t position = FindKey(key_text, engine::Match::kExact);
  return position == 0 || RecordAt(position) == record;
}

void MemoryTable::Enter(std::int32_t record, std::wstring key) {
  const auto position = index_.begin() + (LowerBound(key) - 1);
  index_.insert(position, {std::move(key), record});
}

}  // namespace ard::simulator
