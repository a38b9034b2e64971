// The columns that a table usually has: for companies that are made up rather than read from files.
#ifndef ARD_SIMULATOR_STANDARD_COLUMNS_H_
#define ARD_SIMULATOR_STANDARD_COLUMNS_H_

#include <string_view>

#include "simulator/column.h"

namespace ard::simulator {

// `table` is the name of a data file. Throws Error (unknown name) when it has no standard columns.
const Columns& StandardColumns(std::wstring_view table);

}  // namespace ard::simulator

#endif  // ARD_SIMULATOR_STANDARD_COLUMNS_H_
