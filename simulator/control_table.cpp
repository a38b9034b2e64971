#include "simulator/control_table.h"

#include <utility>

#include "simulator/catalogue.h"
#include "simulator/company.h"

namespace ard::simulator {
namespace {

Columns WithCounts(Columns columns) {
  for (const TableInfo& table : Catalogue()) {
    if (table.count_field.empty()) continue;
    columns.Add({std::wstring(table.count_field), ColumnType::kLong});
  }
  return columns;
}

}  // namespace

ControlTable::ControlTable(Columns columns, Company& company)
    : MemoryTable(WithCounts(std::move(columns)), {}),
      company_(company),
      counted_(this->columns().size()) {
  for (const TableInfo& table : Catalogue()) {
    if (table.count_field.empty()) continue;
    counted_[this->columns().Require(table.count_field)] = table.data_file;
  }
}

Value ControlTable::Cell(std::int32_t record, std::size_t column) const {
  Value stated = MemoryTable::Cell(record, column);
  if (!stated.is_empty() || counted_[column].empty()) return stated;
  const Table* table = company_.Find(counted_[column]);
  return ConvertTo(columns()[column].type, table == nullptr ? 0 : table->size());
}

}  // namespace ard::simulator
