// The rows of a query, read whole when it is opened, as an ADO recordset: one current row, a filter
// and a sort order.
#ifndef ARD_HOST_DATABASE_RECORDSET_H_
#define ARD_HOST_DATABASE_RECORDSET_H_

#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "database/seam.h"
#include "host_database/filter.h"
#include "host_database/session.h"

namespace ard::host_database {

// As in ADO, a forward-only recordset has the record count -1 and refuses to be filtered, sorted or
// positioned (3251), and one that is read-only refuses to delete. Without a current row, reading
// and moving fail (3021); once it or the connection is closed, everything does (3704).
class Recordset final : public database::RecordsetObject {
 public:
  Recordset(std::shared_ptr<Session> session, std::wstring_view command, database::Cursor cursor,
            database::Lock lock);
  Recordset(const Recordset&) = delete;
  Recordset& operator=(const Recordset&) = delete;
  ~Recordset() override;

  bool is_open() const { return session_ && session_->is_open(); }

  bool Bof() override;
  bool Eof() override;
  void MoveNext() override;
  void MoveFirst();
  std::int32_t RecordCount() override;
  // ADO's -2 at the beginning of no rows, -3 at the end.
  std::int32_t AbsolutePosition();
  void SetAbsolutePosition(std::int32_t row) override;
  void SetFilter(std::wstring_view filter) override;
  void SetSort(std::wstring_view sort) override;
  std::int32_t FieldCount() override;
  // The place of a field, by its name.
  std::int32_t FindField(std::wstring_view name);
  std::wstring FieldName(std::int32_t field) override;
  std::int32_t GetFieldType(std::int32_t field) override;
  Value GetValue(std::int32_t field) override;
  Value GetValue(std::wstring_view field) override;
  void Delete() override;
  void Close() override;

 private:
  // What every operation begins with.
  void Operation() const;
  void RequireStatic() const;
  bool is_at_end() const { return !is_deleted_ && position_ >= view_.size(); }

  std::size_t PlaceOf(std::wstring_view field) const;
  const Column& ColumnAt(std::int32_t field) const;
  // The current row's cell of that field.
  const Value& CurrentCell(std::size_t field) const;
  const Value& Cell(std::size_t row, std::size_t field) const {
    return rows_.cells[row * rows_.columns.size() + field];
  }
  // The rows that such a filter lets through, in such an order.
  std::vector<std::uint32_t> View(const std::optional<Filter>& filter,
                                  const std::optional<SortOrder>& order) const;
  void Show(std::vector<std::uint32_t> view);

  std::shared_ptr<Session> session_;  // null once closed
  database::Cursor cursor_;
  database::Lock lock_;
  std::wstring table_;
  Rows rows_;
  std::vector<std::uint32_t> remaining_;  // all rows that have not been deleted
  std::vector<std::uint32_t> view_;
  std::size_t position_ = 0;  // in view_
  // The current row has been deleted; what `position_` tells is the row after it.
  bool is_deleted_ = false;
  std::optional<Filter> filter_;
  std::optional<SortOrder> order_;
};

}  // namespace ard::host_database

#endif  // ARD_HOST_DATABASE_RECORDSET_H_
