#include "simulator/memory_table.h"

#include <algorithm>
#include <compare>
#include <utility>

#include "frame/error.h"
#include "frame/text.h"
#include "simulator/company_error.h"

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

void MemoryTable::Fill(TableText& text, const std::string& file) {
  for (Row& row : text.rows) {
    const std::size_t line = text.lines.LineOf(size() + 1);
    const auto fail = [&](std::size_t column, const std::string& problem) {
      throw CompanyError(file, static_cast<int>(line) + 1, CellColumn(text.lines[line], column),
                         problem);
    };
    row.resize(columns().size());
    if (!key().empty()) {
      if (const std::optional<std::size_t> column = KeyWithNul(row))
        fail(*column, "the key has a NUL byte");
      const std::wstring key_text = KeyOf(row);
      if (key_text.empty()) fail(key().front(), "the key is blank");
      if (const std::int32_t position = FindKey(key_text, engine::Match::kExact)) {
        std::string cells;
        for (const std::size_t column : key()) {
          cells.append(cells.empty() ? "\"" : "\", \"").append(CellText(text.lines[line], column));
        }
        const std::size_t earlier = text.lines.LineOf(RecordAt(position)) + 1;
        fail(key().front(), "the key " + cells + "\" is that of line " + std::to_string(earlier));
      }
    }
    Store(size() + 1, std::move(row));
  }
}

void MemoryTable::Attach(std::unique_ptr<TableFile> file, TableText text) {
  Fill(text, file->name());
  file->Accept(std::move(text));
  file_ = std::move(file);
  stores_ = file_->stores();
  stores_seen_ = file_->stores_seen();
}

// A record that is not there any more holds nothing: somebody has taken its line out of the file.
Value MemoryTable::Cell(std::int32_t record, std::size_t column) const {
  return record <= size() ? rows_[static_cast<std::size_t>(record) - 1][column] : Value();
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
  if (!key().empty() && (KeyWithNul(row) || !IsFree(new_key, record))) return false;
  MakeRoom(rows_);
  MakeRoom(index_);
  if (file_) {
    file_->Write(record, row);
    stores_seen_ = file_->stores_seen();
  }

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

std::shared_ptr<void> MemoryTable::TryHold(std::int32_t record) {
  return file_ ? file_->TryHold(record) : Table::TryHold(record);
}

void MemoryTable::BeginTurn() {
  if (!file_) return;
  file_->BeginTurn();
  try {
    file_->IsOther() ? Reload() : Refresh();
  } catch (...) {
    EndTurn();
    throw;
  }
}

void MemoryTable::EndTurn() {
  if (file_) file_->EndTurn();
}

void MemoryTable::Reload() {
  std::vector<std::wstring_view> key_fields;
  for (const std::size_t column : key()) key_fields.push_back(columns()[column].name);
  try {
    TableText text = file_->Read();
    MemoryTable other(columns(), key_fields);
    other.Fill(text, file_->name());
    Adopt(other);
    file_->Accept(std::move(text));
  } catch (const CompanyError& error) {
    throw Error(kErrorFailed, FromUtf8(error.what()));
  }
  stores_seen_ = file_->stores_seen();
}

void MemoryTable::Adopt(MemoryTable& other) {
  changed_.resize(std::max({changed_.size(), rows_.size(), other.rows_.size()}));
  ++generation_;
  for (std::size_t i = 0; i < changed_.size(); ++i) {
    const bool kept = i < rows_.size() && i < other.rows_.size() && rows_[i] == other.rows_[i];
    if (!kept) changed_[i] = generation_;
  }
  rows_.swap(other.rows_);
  index_.swap(other.index_);
  ++order_;
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

std::optional<std::size_t> MemoryTable::KeyWithNul(const Row& row) const {
  for (const std::size_t column : key()) {
    const auto* const text = std::get_if<std::wstring>(&row[column].storage());
    if (text != nullptr && text->find(L'\0') != text->npos) return column;
  }
  return std::nullopt;
}

void MemoryTable::Enter(std::int32_t record, std::wstring key) {
  ++order_;
  const auto position = index_.begin() + (LowerBound(key) - 1);
  index_.insert(position, {std::move(key), record});
}

}  // namespace ard::simulator
