#include "dialogs/product_info.h"

#include "frame/date.h"
#include "frame/text.h"

namespace ard::dialogs {
namespace {

constexpr int kCodeWidth = 20;
constexpr int kTextWidth = 55;

// The words of a field's name: "Stock Code" of "StockCode".
std::wstring WordsOf(std::wstring_view name) {
  const auto is_capital = [](wchar_t c) { return LowerCase({&c, 1}).front() != c; };
  std::wstring words;
  for (const wchar_t c : name) {
    if (!words.empty() && is_capital(c) && !is_capital(words.back())) words += L' ';
    words += c;
  }
  return words;
}

struct Cell {
  std::int32_t type;
  std::wstring text;
};

// Part of the step that reads the field: a date out of range, say, leaves its cell blank.
void Convert(Value&& value, Cell& cell) {
  if (value.is_null()) return;
  switch (cell.type) {
    case database::kDate:
    case database::kDbDate:
    case database::kDbTime:
    case database::kDbTimestamp:
      cell.text = FormatIsoDate(value.ToDate()).substr(0, 10);
      break;
    case database::kBoolean:
      cell.text = value.ToBoolean() ? L"Yes" : L"No";
      break;
    default:
      cell.text = std::move(value).ToText();
  }
}

}  // namespace

void ProductInfo::Open(ListModel& list, std::wstring_view query) {
  recordset_.Open(query, database::Cursor::kStatic);
  list.SetName(L"products");
  list.SetReading(recordset_.is_open() ? Reading::kDone : Reading::kFailed);
  const std::int32_t count = recordset_.FieldCount();
  for (std::int32_t i = 0; i < count; ++i) {
    fields_.push_back({recordset_.FieldName(i), recordset_.GetFieldType(i)});
  }
  if (fields_.empty()) {
    list.AddColumn(L"Stock Code", kCodeWidth);
    list.AddColumn(L"Description", kTextWidth);
  }
  for (std::size_t i = 0; i < fields_.size(); ++i) {
    list.AddColumn(WordsOf(fields_[i].name), i == 1 ? kTextWidth : kCodeWidth);
  }
}

bool ProductInfo::LoadPage(std::int32_t first, std::int32_t last, std::vector<Row>& rows) {
  if (!recordset_.SetAbsolutePosition(first)) return false;
  rows.reserve(rows.size() + static_cast<std::size_t>(last - first + 1));
  for (std::int32_t position = first; position <= last && !recordset_.Eof(); ++position) {
    rows.push_back({position, RowText(), kDefaultColor});
    if (!recordset_.MoveNext()) break;
  }
  return !rows.empty();
}

bool ProductInfo::Sort(std::size_t column, SortOrder order) {
  if (column >= fields_.size()) return false;
  const std::wstring direction = order == SortOrder::kDescending ? L" DESC" : L" ASC";
  return recordset_.SetSort(fields_[column].name + direction);
}

std::wstring ProductInfo::RowText() {
  std::wstring text = fields_.empty() ? std::wstring() : CellText(0);
  const auto count = static_cast<std::int32_t>(fields_.size());
  for (std::int32_t field = 1; field < count; ++field) {
    text += L'\t';
    text += CellText(field);
  }
  return text;
}

std::wstring ProductInfo::CellText(std::int32_t field) {
  const auto& [name, type] = fields_[static_cast<std::size_t>(field)];
  Cell cell{type, {}};
  recordset_.Get(field, name, cell);
  return std::move(cell.text);
}

}  // namespace ard::dialogs
