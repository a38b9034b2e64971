// ControlData: states how many records each ledger has. A count that the company's own table does
// not state is that of the ledger, deleted records included.
#ifndef ARD_SIMULATOR_CONTROL_TABLE_H_
#define ARD_SIMULATOR_CONTROL_TABLE_H_

#include <vector>

#include "simulator/memory_table.h"

namespace ard::simulator {

class Company;

class ControlTable : public MemoryTable {
 public:
  // Adds the count fields that `columns` lack. `company` owns the table, and outlives it.
  ControlTable(Columns columns, Company& company);

  Value Cell(std::int32_t record, std::size_t column) const override;

 private:
  Company& company_;
  std::vector<std::wstring_view> counted_;  // by column: the table that it counts, "" for none
};

}  // namespace ard::simulator

#endif  // ARD_SIMULATOR_CONTROL_TABLE_H_
