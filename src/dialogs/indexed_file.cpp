#include "dialogs/indexed_file.h"

#include <limits>

namespace ard::dialogs {
namespace {

using engine::Match;
using engine::Mode;

// Selecting a row this far below the wanted one first leaves the wanted one near the top.
constexpr std::int32_t kRowsBelow = 12;

}  // namespace

bool IsOverCreditLimit(Currency balance, Currency limit) {
  return limit > Currency{} && balance > limit;
}

std::int32_t RecordCount(const Context& context, const ListedFile& file) {
  std::int32_t count = 0;
  engine::DataFile control(context, L"ControlData");
  if (control.Open(Mode::kRead) && control.Read(1)) control.Get(file.count_field, count);
  return count;
}

IndexedFile::IndexedFile(const Context& context, const ListedFile& file)
    : context_(context),
      file_(file),
      data_file_(context, file.data_file),
      index_file_(context, file.index_file) {
  columns_.reserve(file.columns.size());
  for (const FieldColumn& column : file.columns) columns_.emplace_back(data_file_, column.field);
}

void IndexedFile::Open() {
  data_file_.Open(Mode::kRead);
  index_file_.Open(Mode::kRead);
}

void IndexedFile::AddColumns(ListModel& list) const {
  for (const FieldColumn& column : file_.columns) list.AddColumn(column.header, column.width);
}

void IndexedFile::LoadPage(std::int32_t first, std::int32_t last, std::vector<Row>& rows) {
  if (!index_file_.MoveTo(first)) return;
  rows.reserve(rows.size() + static_cast<std::size_t>(last - first + 1));
  for (std::int32_t position = first; position <= last; ++position) {
    bool deleted = false;
    if (ReadCurrentEntry()) {
      deleted_.Get(deleted);
      if (!deleted) rows.push_back({position, RowText(), OverLimit() ? kRed : kDefaultColor});
    }
    if (!index_file_.MoveNext()) break;
  }
}

std::vector<std::wstring> IndexedFile::FirstRows(std::int32_t count) {
  std::vector<std::wstring> rows;
  if (!index_file_.MoveFirst()) return rows;
  for (std::int32_t i = 1; i <= count; ++i) {
    if (ReadCurrentEntry()) rows.push_back(RowText());
    if (!index_file_.MoveNext()) break;
  }
  return rows;
}

bool IndexedFile::ReadKey(std::wstring_view key) {
  return index_file_.SetKey(key) && index_file_.Find(Match::kExact) && ReadCurrentEntry();
}

void IndexedFile::TypeAhead(wchar_t key, ListModel& list) {
  const std::wstring pattern = UpperCase(std::wstring_view(&key, 1)) + L'*';
  std::wstring found;
  if (!data_file_.FindFirst(key_field(), pattern) || !columns_.front().Get(found)) return;
  list.SelectItem(FindPosition(found));
}

void IndexedFile::PositionOn(std::wstring_view criteria, ListModel& list) {
  std::wstring found;
  {
    engine::DataFile search(context_, file_.data_file);
    search.Open(Mode::kQuery);
    // Found or not, the record that the file now stands on is the one wanted.
    search.FindFirst(key_field(), criteria);
    if (!search.Get(key_field(), found)) return;
  }
  const std::int32_t position = FindPosition(found);
  if (position == 0) return;
  if (position <= std::numeric_limits<std::int32_t>::max() - kRowsBelow) {
    list.SelectItem(position + kRowsBelow);
  }
  list.SelectItem(position);
}

bool IndexedFile::ReadCurrentEntry() {
  const std::int32_t record = index_file_.RecordNumber();
  return record != 0 && data_file_.Read(record);
}

std::wstring IndexedFile::RowText() {
  std::wstring text;
  columns_.front().Get(text);
  text.reserve(kRowLength);
  std::wstring cell;
  for (std::size_t i = 1; i < columns_.size(); ++i) {
    cell.clear();
    columns_[i].Get(cell);
    text += L'\t';
    text += cell;
  }
  return text;
}

bool IndexedFile::OverLimit() {
  if (!file_.red_rows) return false;
  Currency balance;
  Currency limit;
  credit_limit_.Get(limit);
  // An account without a limit is never over it, whatever its balance.
  return limit > Currency{} && balance_.Get(balance) && IsOverCreditLimit(balance, limit);
}

std::int32_t IndexedFile::FindPosition(std::wstring_view key) {
  if (!index_file_.SetKey(key) || !index_file_.Find(Match::kExact)) return 0;
  return index_file_.Position();
}

}  // namespace ard::dialogs
