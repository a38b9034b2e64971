// An ODBC connection, as OdbcConnection and the recordsets on it share it.
#ifndef ARD_HOST_DATABASE_SESSION_H_
#define ARD_HOST_DATABASE_SESSION_H_

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "frame/value.h"
#include "simulator/fault_plan.h"

namespace ard::host_database {

struct Column {
  std::wstring name;
  std::int32_t type;  // ADO's number
};

// What a query has given: the cells row by row.
struct Rows {
  std::vector<Column> columns;
  std::vector<Value> cells;
};

// Everything throws Error with what the driver says when it fails.
class Session {
 public:
  explicit Session(std::wstring_view connection_string);
  Session(const Session&) = delete;
  Session& operator=(const Session&) = delete;
  ~Session();

  bool is_open() const { return connection_ != nullptr; }
  void Close();
  void RequireOpen() const;

  Rows Query(std::wstring_view sql);
  void Execute(std::wstring_view sql);
  // Deletes the one row of `table` that has these cells; throws, and deletes nothing, when they are
  // not exactly those of one.
  void DeleteRow(std::wstring_view table, const std::vector<Column>& columns, const Value* cells);

  simulator::FaultPlan* faults = nullptr;
  std::int32_t open_recordsets = 0;

 private:
  // ODBC's handles.
  void* environment_ = nullptr;
  void* connection_ = nullptr;
};

}  // namespace ard::host_database

#endif  // ARD_HOST_DATABASE_SESSION_H_
