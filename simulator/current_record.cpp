#include "simulator/current_record.h"

namespace ard::simulator {
namespace {

std::wstring Padded(std::wstring text, std::size_t length) {
  if (text.size() < length) text.resize(length, L' ');
  return text;
}

}  // namespace

void CurrentRecord::Attach(Table* table) {
  table_ = table;
  MoveTo(table != nullptr && table->size() > 0 ? 1 : 0);
}

void CurrentRecord::MoveTo(std::int32_t record) {
  Stored(record);
  generation_ = table_ != nullptr ? table_->generation() : 0;
}

void CurrentRecord::Stored(std::int32_t record) {
  record_ = record;
  ++state_;
  set_.clear();
}

Value CurrentRecord::Get(std::size_t column) const {
  const Column& shown = table_->columns()[column];
  Value value = Raw(column);
  if (shown.type != ColumnType::kText) return value.is_empty() ? Blank(shown.type) : value;
  return Padded(std::move(value).ToText(), shown.length);
}

void CurrentRecord::Set(std::size_t column, const Value& value) {
  set_[column] = ConvertTo(table_->columns()[column].type, value);
}

Row CurrentRecord::Contents() const {
  Row row;
  row.reserve(table_->columns().size());
  for (std::size_t i = 0; i < table_->columns().size(); ++i) row.push_back(Raw(i));
  return row;
}

std::vector<Value> CurrentRecord::Key() const {
  std::vector<Value> key;
  key.reserve(table_->key().size());
  for (const std::size_t column : table_->key()) key.push_back(Raw(column));
  return key;
}

Value CurrentRecord::Raw(std::size_t column) const {
  const auto set = set_.find(column);
  if (set != set_.end()) return set->second;
  return record_ == 0 ? Value() : table_->Cell(record_, column);
}

}  // namespace ard::simulator
