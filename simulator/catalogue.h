// The object names that the engine knows, and the tables behind them.
#ifndef ARD_SIMULATOR_CATALOGUE_H_
#define ARD_SIMULATOR_CATALOGUE_H_

#include <cstddef>
#include <span>
#include <string_view>

namespace ard::simulator {

// One table of a company; its file is named after the data file, "SalesData.table".
struct TableInfo {
  std::wstring_view data_file;
  std::wstring_view index;             // "" when it has none
  std::wstring_view record;            // "" when it has none
  std::wstring_view count_field = {};  // of ControlData; "" when its records are not counted
  std::span<const std::wstring_view> key = {};  // the key fields, the most significant first
};

std::span<const TableInfo> Catalogue();

enum class ObjectKind { kUnknown, kDataFile, kIndex, kRecord };

// What CreateRecordObject makes of `name` (spelled exactly as published), and the table behind it:
// its ordinal in the catalogue.
struct ObjectName {
  ObjectKind kind = ObjectKind::kUnknown;
  std::size_t table = 0;
};
ObjectName LookUp(std::wstring_view name);

}  // namespace ard::simulator

#endif  // ARD_SIMULATOR_CATALOGUE_H_
