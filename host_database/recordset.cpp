#include "host_database/recordset.h"

#include <algorithm>
#include <numeric>
#include <utility>

#include "frame/text.h"
#include "host_database/ado_error.h"

namespace ard::host_database {
namespace {

// The table that a command selects from, as it is written there.
std::wstring_view TableOf(std::wstring_view command) {
  constexpr std::wstring_view kFrom = L" FROM ";
  const std::size_t from = UpperCase(command).find(kFrom);
  if (from == command.npos) return {};
  const std::wstring_view rest = Trimmed(command.substr(from + kFrom.size()));
  return rest.starts_with(L'[') ? rest.substr(0, rest.find(L']') + 1)
                                : rest.substr(0, rest.find_first_of(L" ;,"));
}

// Null is before everything else.
bool IsBefore(const Value& a, const Value& b) {
  if (a.is_null() || b.is_null()) return a.is_null() && !b.is_null();
  const auto* text_a = std::get_if<std::wstring>(&a.storage());
  const auto* text_b = std::get_if<std::wstring>(&b.storage());
  if (text_a && text_b) return CompareIgnoreCase(*text_a, *text_b) < 0;
  return a.ToDouble() < b.ToDouble();
}

}  // namespace

Recordset::Recordset(std::shared_ptr<Session> session, std::wstring_view command,
                     database::Cursor cursor, database::Lock lock)
    : session_(std::move(session)), cursor_(cursor), lock_(lock), table_(TableOf(command)) {
  Operation();
  rows_ = session_->Query(command);
  if (rows_.columns.empty()) Throw(AdoError::kInvalidArgument, L"The command selects nothing.");
  remaining_.resize(rows_.cells.size() / rows_.columns.size());
  std::iota(remaining_.begin(), remaining_.end(), 0);
  view_ = remaining_;
  ++session_->open_recordsets;
}

Recordset::~Recordset() {
  if (session_) --session_->open_recordsets;
}

void Recordset::Operation() const {
  if (session_ && session_->faults) session_->faults->Operation();
  if (!is_open()) Throw(AdoError::kObjectClosed, L"The recordset or its connection is closed.");
}

void Recordset::RequireStatic() const {
  if (cursor_ == database::Cursor::kStatic) return;
  Throw(AdoError::kNotSupported, L"A forward-only recordset cannot do this.");
}

bool Recordset::Bof() {
  Operation();
  return is_at_end() && view_.empty();
}

bool Recordset::Eof() {
  Operation();
  return is_at_end();
}

void Recordset::MoveNext() {
  Operation();
  if (is_at_end()) Throw(AdoError::kNoCurrentRecord, L"There is no row after the last.");
  if (!std::exchange(is_deleted_, false)) ++position_;
}

void Recordset::MoveFirst() {
  Operation();
  RequireStatic();
  if (view_.empty()) Throw(AdoError::kNoCurrentRecord, L"There are no rows.");
  position_ = 0;
  is_deleted_ = false;
}

std::int32_t Recordset::RecordCount() {
  Operation();
  return cursor_ == database::Cursor::kStatic ? static_cast<std::int32_t>(view_.size()) : -1;
}

std::int32_t Recordset::AbsolutePosition() {
  Operation();
  RequireStatic();
  if (is_at_end()) return view_.empty() ? -2 : -3;
  return static_cast<std::int32_t>(position_) + 1;
}

void Recordset::SetAbsolutePosition(std::int32_t row) {
  Operation();
  RequireStatic();
  if (row < 1 || static_cast<std::size_t>(row) > view_.size()) {
    Throw(AdoError::kInvalidArgument, L"There is no row " + std::to_wstring(row) + L".");
  }
  position_ = static_cast<std::size_t>(row) - 1;
  is_deleted_ = false;
}

void Recordset::SetFilter(std::wstring_view filter) {
  Operation();
  RequireStatic();
  std::optional<Filter> parsed;
  if (!filter.empty()) parsed.emplace(filter);
  Show(View(parsed, order_));
  filter_ = std::move(parsed);
}

void Recordset::SetSort(std::wstring_view sort) {
  Operation();
  RequireStatic();
  std::optional<SortOrder> parsed;
  if (!sort.empty()) parsed.emplace(sort);
  Show(View(filter_, parsed));
  order_ = std::move(parsed);
}

std::int32_t Recordset::FieldCount() {
  Operation();
  return static_cast<std::int32_t>(rows_.columns.size());
}

std::int32_t Recordset::FindField(std::wstring_view name) {
  Operation();
  return static_cast<std::int32_t>(PlaceOf(name));
}

std::wstring Recordset::FieldName(std::int32_t field) {
  Operation();
  return ColumnAt(field).name;
}

std::int32_t Recordset::GetFieldType(std::int32_t field) {
  Operation();
  return ColumnAt(field).type;
}

Value Recordset::GetValue(std::int32_t field) {
  Operation();
  ColumnAt(field);
  return CurrentCell(static_cast<std::size_t>(field));
}

Value Recordset::GetValue(std::wstring_view field) {
  Operation();
  return CurrentCell(PlaceOf(field));
}

void Recordset::Delete() {
  Operation();
  if (lock_ != database::Lock::kOptimistic) {
    Throw(AdoError::kNotSupported, L"The recordset is read-only.");
  }
  if (is_at_end()) Throw(AdoError::kNoCurrentRecord, L"There is no current row.");
  if (is_deleted_) Throw(AdoError::kRowIsDeleted, L"The current row has been deleted.");
  const std::uint32_t row = view_[position_];
  session_->DeleteRow(table_, rows_.columns, &Cell(row, 0));
  view_.erase(view_.begin() + static_cast<std::ptrdiff_t>(position_));
  std::erase(remaining_, row);
  is_deleted_ = true;
}

void Recordset::Close() {
  Operation();
  --session_->open_recordsets;
  session_ = nullptr;
}

std::size_t Recordset::PlaceOf(std::wstring_view field) const {
  const auto found =
      std::find_if(rows_.columns.begin(), rows_.columns.end(),
                   [&](const Column& column) { return EqualsIgnoreCase(column.name, field); });
  if (found == rows_.columns.end()) {
    Throw(AdoError::kItemNotFound, L"There is no field " + std::wstring(field) + L".");
  }
  return static_cast<std::size_t>(found - rows_.columns.begin());
}

const Column& Recordset::ColumnAt(std::int32_t field) const {
  if (field < 0 || static_cast<std::size_t>(field) >= rows_.columns.size()) {
    Throw(AdoError::kItemNotFound, L"There is no field " + std::to_wstring(field) + L".");
  }
  return rows_.columns[static_cast<std::size_t>(field)];
}

const Value& Recordset::CurrentCell(std::size_t field) const {
  if (is_at_end()) Throw(AdoError::kNoCurrentRecord, L"There is no current row.");
  if (is_deleted_) Throw(AdoError::kRowIsDeleted, L"The current row has been deleted.");
  return Cell(view_[position_], field);
}

std::vector<std::uint32_t> Recordset::View(const std::optional<Filter>& filter,
                                           const std::optional<SortOrder>& order) const {
  std::vector<std::uint32_t> view = remaining_;
  if (filter) {
    const std::size_t field = PlaceOf(filter->field());
    std::erase_if(view, [&](std::uint32_t row) { return !filter->Passes(Cell(row, field)); });
  }
  if (order) {
    const std::size_t field = PlaceOf(order->field);
    std::stable_sort(view.begin(), view.end(), [&](std::uint32_t a, std::uint32_t b) {
      if (order->descending) std::swap(a, b);
      return IsBefore(Cell(a, field), Cell(b, field));
    });
  }
  return view;
}

void Recordset::Show(std::vector<std::uint32_t> view) {
  view_ = std::move(view);
  position_ = 0;
  is_deleted_ = false;
}

}  // namespace ard::host_database
