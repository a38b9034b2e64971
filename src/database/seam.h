// The host's own database as the library sees it: a connection that the host has opened, and the
// recordsets that the library opens on it. Every operation may throw Error; destroying a recordset
// releases it. The guarded handle (database/recordset.h) is what the rooms above use.
#ifndef ARD_DATABASE_SEAM_H_
#define ARD_DATABASE_SEAM_H_

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>

#include "frame/value.h"

namespace ard::database {

// A static recordset can be filtered and sorted, and knows its record count.
enum class Cursor { kForwardOnly, kStatic };
enum class Lock { kReadOnly, kOptimistic };

// Those of ADO's field types that are not shown as their plain text.
enum FieldType : std::int32_t {
  kDate = 7,
  kBoolean = 11,
  kDbDate = 133,
  kDbTime = 134,
  kDbTimestamp = 135,
};

// The rows that a query has given, with a current one: the first after the opening. Rows count
// from 1, fields from 0.
class RecordsetObject {
 public:
  virtual ~RecordsetObject() = default;
  virtual bool Bof() = 0;
  virtual bool Eof() = 0;
  virtual void MoveNext() = 0;
  // Of the rows that the filter lets through.
  virtual std::int32_t RecordCount() = 0;
  virtual void SetAbsolutePosition(std::int32_t row) = 0;
  // Such as "[StockCode] Like 'AB%'"; "" removes the filter. Makes the first row current.
  virtual void SetFilter(std::wstring_view filter) = 0;
  // Such as "StockCode DESC".
  virtual void SetSort(std::wstring_view sort) = 0;
  virtual std::int32_t FieldCount() = 0;
  virtual std::wstring FieldName(std::int32_t field) = 0;
  virtual std::int32_t GetFieldType(std::int32_t field) = 0;
  virtual Value GetValue(std::int32_t field) = 0;
  virtual Value GetValue(std::wstring_view field) = 0;  // by its name
  // Deletes the current row.
  virtual void Delete() = 0;
  virtual void Close() = 0;
};

class Connection {
 public:
  virtual ~Connection() = default;
  // Opens what the text of an SQL command selects.
  virtual std::unique_ptr<RecordsetObject> Open(std::wstring_view command, Cursor cursor,
                                                Lock lock) = 0;
};

}  // namespace ard::database

#endif  // ARD_DATABASE_SEAM_H_
