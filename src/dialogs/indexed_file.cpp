#include "dialogs/indexed_file.h"

#include <limits>

namespace ard::dialogs {
namespace {

using engine::Mode;

// Selecting a row this far below the wanted one first leaves the wanted one near the top.
constexpr std::int32_t kRowsBelow = 12;

}  // namespace

std::optional<std::int32_t> RecordCount(const Context& context, const ListedFile& file) {
  std::int32_t count = 0;
  engine::DataFile control(context, L"ControlData");
  if (control.Open(Mode::kRead) && control.Read(1) && control.Get(file.count_field, count)) {
    return count;
  }
  return std::nullopt;
}

void DescribeList(const ListedFile& file, ListModel& list) {
  list.SetName(file.records);
  for (const FieldColumn& c : file.columns) list.AddColumn(c.header, c.width, c.number);
}

IndexedFile::IndexedFile(const Context& context, const ListedFile& file)
    : context_(context),
      file_(file),
      data_file_(context, file.data_file),
      index_file_(context, file.index_file) {}

void IndexedFile::Open(ListModel& list, std::optional<std::int32_t> row_count) {
  const bool data_is_open = data_file_.OpenUntested(Mode::kRead);
  const bool index_is_open = index_file_.OpenUntested(Mode::kRead);
  const bool readable = data_is_open && index_is_open && row_count;
  list.SetReading(readable ? Reading::kDone : Reading::kFailed);
}

bool IndexedFile::LoadPage(std::int32_t first, std::int32_t last, std::vector<Row>& rows) {
  if (!index_file_.MoveTo(first)) return false;
  rows.reserve(rows.size() + static_cast<std::size_t>(last - first + 1));
  bool readable = false;
  for (std::int32_t position = first; position <= last; ++position) {
    bool deleted = false;
    if (engine::ReadEntry(index_file_, data_file_)) {
      readable = true;
      data_file_.Get(L"DELETED_FLAG", deleted);
      if (!deleted) {
        rows.push_back({position, RowText()});
        if (file_.is_red && file_.is_red(data_file_)) rows.back().color = kRed;
      }
    }
    if (!index_file_.MoveNext()) break;
  }
  return readable;
}

std::vector<std::wstring> IndexedFile::FirstRows(std::int32_t count) {
  std::vector<std::wstring> rows;
  if (!index_file_.MoveFirst()) return rows;
  for (std::int32_t i = 1; i <= count; ++i) {
    if (engine::ReadEntry(index_file_, data_file_)) rows.push_back(RowText());
    if (!index_file_.MoveNext()) break;
  }
  return rows;
}

void IndexedFile::TypeAhead(wchar_t key, ListModel& list) {
  const std::wstring pattern = UpperCase(std::wstring_view(&key, 1)) + L'*';
  Value found;  // as it is: not every key is a text
  if (!data_file_.FindFirst(key_field(), pattern) || !data_file_.Get(key_field(), found)) {
    return;
  }
  list.SelectFrom(FindPosition(found), {&key, 1});
}

void IndexedFile::PositionOn(std::wstring_view criteria, ListModel& list) {
  engine::DataFile search(context_, file_.data_file);
  search.Open(Mode::kQuery);
  // Found or not, the record that the file now stands on is the one wanted.
  search.FindFirst(key_field(), criteria);
  Value found;
  if (!search.Get(key_field(), found)) return;
  const std::int32_t position = FindPosition(found);
  if (position == 0) return;
  if (position <= std::numeric_limits<std::int32_t>::max() - kRowsBelow) {
    list.SelectItem(position + kRowsBelow);
  }
  list.SelectItem(position);
}

std::wstring IndexedFile::RowText() {
  std::wstring text;
  data_file_.Get(key_field(), text);
  text.reserve(kRowLength);
  std::wstring cell;
  for (const FieldColumn& column : file_.columns.subspan(1)) {
    cell.clear();
    data_file_.Get(column.field, cell);
    text += L'\t';
    text += cell;
  }
  return text;
}

std::int32_t IndexedFile::FindPosition(const Value& key) {
  return index_file_.FindKey(key) ? index_file_.Position() : 0;
}

}  // namespace ard::dialogs
