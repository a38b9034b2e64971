// The host's database through ODBC, behind the library's seam: what a host's ADO connection is,
// where there is no ADO. Works the same natively and on Windows.
#ifndef ARD_HOST_DATABASE_ODBC_CONNECTION_H_
#define ARD_HOST_DATABASE_ODBC_CONNECTION_H_

#include <cstdint>
#include <memory>
#include <string_view>

#include "database/seam.h"
#include "host_database/recordset.h"
#include "host_database/session.h"
#include "simulator/fault_plan.h"

namespace ard::host_database {

class OdbcConnection : public database::Connection {
 public:
  // Such as "Driver=SQLite3;Database=/home/me/stock.db". Throws Error with the driver's own text.
  explicit OdbcConnection(std::wstring_view connection_string)
      : session_(std::make_shared<Session>(connection_string)) {}

  // From now on every operation that the library asks for, here or of a recordset, asks `plan`
  // first whether it is to fail. The plan outlives the connection.
  void Obey(simulator::FaultPlan& plan) { session_->faults = &plan; }

  // Runs a command that gives no rows.
  void Execute(std::wstring_view sql) { session_->Execute(sql); }
  // Recordsets that are still open are closed with it.
  void Close() { session_->Close(); }
  bool is_open() const { return session_->is_open(); }

  // Recordsets that have been neither closed nor released.
  std::int32_t open_recordsets() const { return session_->open_recordsets; }

  std::unique_ptr<database::RecordsetObject> Open(std::wstring_view command,
                                                  database::Cursor cursor,
                                                  database::Lock lock) override {
    return OpenRecordset(command, cursor, lock);
  }
  std::unique_ptr<Recordset> OpenRecordset(std::wstring_view command, database::Cursor cursor,
                                           database::Lock lock) {
    return std::make_unique<Recordset>(session_, command, cursor, lock);
  }

 private:
  std::shared_ptr<Session> session_;
};

}  // namespace ard::host_database

#endif  // ARD_HOST_DATABASE_ODBC_CONNECTION_H_
