#include "host_database/session.h"

#ifdef _WIN32
#define SQL_NOUNICODEMAP
#include <windows.h>
#endif
// After windows.h.
#include <sql.h>
#include <sqlext.h>

#include <chrono>
#include <cmath>
#include <cstddef>
#include <deque>
#include <iterator>

#include "database/seam.h"
#include "frame/date.h"
#include "frame/text.h"
#include "host_database/ado_error.h"

namespace ard::host_database {
namespace {

// All text is UTF-8 by the narrow functions. The driver managers turn the wide ones into these for
// drivers that have no others, by the locale of the process, which loses characters.
SQLCHAR* ForSql(std::string& text) { return reinterpret_cast<SQLCHAR*>(text.data()); }

std::wstring FromSql(const SQLCHAR* text) { return FromUtf8(reinterpret_cast<const char*>(text)); }

[[noreturn]] void ThrowDiagnosis(SQLSMALLINT type, SQLHANDLE handle) {
  SQLCHAR state[6];
  SQLCHAR message[512];
  SQLINTEGER native = 0;
  SQLSMALLINT length = 0;
  const SQLRETURN result = SQLGetDiagRec(type, handle, 1, state, &native, message,
                                         static_cast<SQLSMALLINT>(std::size(message)), &length);
  if (!SQL_SUCCEEDED(result)) throw Error(kErrorFailed, L"The database reports a failure.");
  throw Error(kErrorFailed, FromSql(message));
}

// No data is a success without a row.
void Check(SQLRETURN result, SQLSMALLINT type, SQLHANDLE handle) {
  if (!SQL_SUCCEEDED(result) && result != SQL_NO_DATA) ThrowDiagnosis(type, handle);
}

class Statement {
 public:
  explicit Statement(SQLHDBC connection) {
    host_database::Check(SQLAllocHandle(SQL_HANDLE_STMT, connection, &handle_), SQL_HANDLE_DBC,
                         connection);
  }
  Statement(const Statement&) = delete;
  Statement& operator=(const Statement&) = delete;
  ~Statement() { SQLFreeHandle(SQL_HANDLE_STMT, handle_); }

  // Gives the next parameter its value.
  void Bind(std::int32_t number) {
    Parameter& parameter = parameters_.emplace_back();
    parameter.number = number;
    Bind(SQL_C_SLONG, SQL_INTEGER, 0, &parameter.number, sizeof parameter.number);
  }
  void Bind(double number) {
    Parameter& parameter = parameters_.emplace_back();
    parameter.real = number;
    Bind(SQL_C_DOUBLE, SQL_DOUBLE, 0, &parameter.real, sizeof parameter.real);
  }
  void Bind(std::wstring_view text) {
    Parameter& parameter = parameters_.emplace_back();
    parameter.text = ToUtf8(text);
    const std::size_t length = parameter.text.size();
    Bind(SQL_C_CHAR, SQL_VARCHAR, length + 1, parameter.text.data(), length);
  }

  void Execute(std::wstring_view sql) {
    std::string text = ToUtf8(sql);
    Check(SQLExecDirect(handle_, ForSql(text), SQL_NTS));
  }

  SQLLEN RowCount() {
    SQLLEN count = 0;
    Check(SQLRowCount(handle_, &count));
    return count;
  }

  SQLSMALLINT ColumnCount() {
    SQLSMALLINT count = 0;
    Check(SQLNumResultCols(handle_, &count));
    return count;
  }

  // Columns count from 1.
  SQLSMALLINT Describe(SQLUSMALLINT column, std::wstring& name) {
    SQLCHAR text[256];
    SQLSMALLINT length = 0;
    SQLSMALLINT type = 0;
    SQLSMALLINT digits = 0;
    SQLSMALLINT nullable = 0;
    SQLULEN size = 0;
    Check(SQLDescribeCol(handle_, column, text, static_cast<SQLSMALLINT>(std::size(text)), &length,
                         &type, &size, &digits, &nullable));
    name = FromSql(text);
    return type;
  }

  bool Fetch() {
    const SQLRETURN result = SQLFetch(handle_);
    Check(result);
    return result != SQL_NO_DATA;
  }

  // Reads a cell into `out`; false when it is NULL.
  template <class Content>
  bool Get(SQLUSMALLINT column, SQLSMALLINT type, Content& out) {
    SQLLEN length = 0;
    Check(SQLGetData(handle_, column, type, &out, sizeof out, &length));
    return length != SQL_NULL_DATA;
  }
  bool GetText(SQLUSMALLINT column, std::wstring& out) {
    std::string text;
    for (;;) {
      char part[256];
      SQLLEN length = 0;
      const SQLRETURN result = SQLGetData(handle_, column, SQL_C_CHAR, part, sizeof part, &length);
      Check(result);
      if (length == SQL_NULL_DATA) return false;
      if (result == SQL_NO_DATA) break;
      // A part that is cut off is full but for the NUL at its end.
      const bool is_last = result != SQL_SUCCESS_WITH_INFO;
      text.append(part, is_last ? static_cast<std::size_t>(length) : sizeof part - 1);
      if (is_last) break;
    }
    out = FromUtf8(text);
    return true;
  }

 private:
  struct Parameter {
    SQLINTEGER number = 0;
    double real = 0;
    std::string text;
    SQLLEN length = 0;
  };

  void Bind(SQLSMALLINT c_type, SQLSMALLINT sql_type, std::size_t size, SQLPOINTER content,
            std::size_t length) {
    parameters_.back().length = static_cast<SQLLEN>(length);
    Check(SQLBindParameter(handle_, static_cast<SQLUSMALLINT>(parameters_.size()), SQL_PARAM_INPUT,
                           c_type, sql_type, size, 0, content, static_cast<SQLLEN>(length),
                           &parameters_.back().length));
  }

  void Check(SQLRETURN result) { host_database::Check(result, SQL_HANDLE_STMT, handle_); }

  SQLHSTMT handle_ = SQL_NULL_HANDLE;
  std::deque<Parameter> parameters_;  // stays where the driver has been told that it is
};

// Takes back what has been done, unless it is committed.
class Transaction {
 public:
  explicit Transaction(SQLHDBC connection) : connection_(connection) {
    Check(SetAutocommit(SQL_AUTOCOMMIT_OFF), SQL_HANDLE_DBC, connection_);
  }
  Transaction(const Transaction&) = delete;
  Transaction& operator=(const Transaction&) = delete;
  ~Transaction() {
    SQLEndTran(SQL_HANDLE_DBC, connection_, SQL_ROLLBACK);
    SetAutocommit(SQL_AUTOCOMMIT_ON);
  }

  void Commit() {
    Check(SQLEndTran(SQL_HANDLE_DBC, connection_, SQL_COMMIT), SQL_HANDLE_DBC, connection_);
  }

 private:
  SQLRETURN SetAutocommit(SQLULEN mode) {
    return SQLSetConnectAttr(connection_, SQL_ATTR_AUTOCOMMIT, reinterpret_cast<SQLPOINTER>(mode),
                             SQL_IS_UINTEGER);
  }

  SQLHDBC connection_;
};

constexpr double kSecondsPerDay = 24 * 60 * 60;

double PartOfDay(int hour, int minute, double second) {
  return ((hour * 60 + minute) * 60 + second) / kSecondsPerDay;
}

// How cells of each type are read.

Value ReadBoolean(Statement& statement, SQLUSMALLINT column) {
  SQLCHAR content = 0;
  return statement.Get(column, SQL_C_BIT, content) ? Value(content != 0) : Null();
}

Value ReadInteger(Statement& statement, SQLUSMALLINT column) {
  SQLINTEGER content = 0;
  return statement.Get(column, SQL_C_SLONG, content) ? Value(std::int32_t{content}) : Null();
}

// One with more digits than the text of a double, such as a key, is its text.
Value ReadLong(Statement& statement, SQLUSMALLINT column) {
  SQLBIGINT content = 0;
  if (!statement.Get(column, SQL_C_SBIGINT, content)) return Null();
  constexpr double kFirstTooLong = 1e15;
  const auto number = static_cast<double>(content);
  return std::fabs(number) < kFirstTooLong ? Value(number) : Value(std::to_wstring(content));
}

Value ReadDouble(Statement& statement, SQLUSMALLINT column) {
  double content = 0;
  return statement.Get(column, SQL_C_DOUBLE, content) ? Value(content) : Null();
}

Value ReadDate(Statement& statement, SQLUSMALLINT column) {
  using namespace std::chrono;  // NOLINT(google-build-using-namespace): year / month / day
  constexpr sys_days kDayZero = year(1899) / December / 30;
  SQL_TIMESTAMP_STRUCT content{};
  if (!statement.Get(column, SQL_C_TYPE_TIMESTAMP, content)) return Null();
  const year_month_day date = year(content.year) / month(content.month) / day(content.day);
  if (!date.ok()) throw Error(kErrorTypeMismatch, L"The database has a date that is none.");
  const auto days = static_cast<double>((sys_days(date) - kDayZero).count());
  const double time =
      PartOfDay(content.hour, content.minute, content.second + content.fraction / 1e9);
  return Date{days < 0 ? days - time : days + time};
}

Value ReadTime(Statement& statement, SQLUSMALLINT column) {
  SQL_TIME_STRUCT content{};
  if (!statement.Get(column, SQL_C_TYPE_TIME, content)) return Null();
  return Date{PartOfDay(content.hour, content.minute, content.second)};
}

Value ReadText(Statement& statement, SQLUSMALLINT column) {
  std::wstring content;
  return statement.GetText(column, content) ? Value(std::move(content)) : Null();
}

struct ColumnType {
  SQLSMALLINT sql;
  std::int32_t ado;
  Value (*read)(Statement& statement, SQLUSMALLINT column);
};

constexpr ColumnType kOtherType = {SQL_VARCHAR, 202, ReadText};
constexpr ColumnType kColumnTypes[] = {
    {SQL_BIT, 11, ReadBoolean},          {SQL_TINYINT, 17, ReadInteger},
    {SQL_SMALLINT, 2, ReadInteger},      {SQL_INTEGER, 3, ReadInteger},
    {SQL_BIGINT, 20, ReadLong},          {SQL_REAL, 4, ReadDouble},
    {SQL_FLOAT, 5, ReadDouble},          {SQL_DOUBLE, 5, ReadDouble},
    {SQL_NUMERIC, 131, ReadDouble},      {SQL_DECIMAL, 131, ReadDouble},
    {SQL_TYPE_DATE, 133, ReadDate},      {SQL_TYPE_TIME, 134, ReadTime},
    {SQL_TYPE_TIMESTAMP, 135, ReadDate}, {SQL_LONGVARCHAR, 203, ReadText},
    {SQL_WLONGVARCHAR, 203, ReadText},
};

const ColumnType& TypeOf(SQLSMALLINT sql) {
  for (const ColumnType& type : kColumnTypes) {
    if (type.sql == sql) return type;
  }
  return kOtherType;
}

// A date as text, as databases store and compare it: a time stamp has its time at midnight too.
std::wstring DateText(Date date, std::int32_t type) {
  if (type == database::kDbTime) return FormatIsoDate({date.days + 1}).substr(11);
  std::wstring text = FormatIsoDate(date);
  const bool without_time = date.days == std::trunc(date.days);
  return type == database::kDbTimestamp && without_time ? text.append(L" 00:00:00") : text;
}

void Bind(Statement& statement, const Value& value, std::int32_t type) {
  if (const auto* flag = std::get_if<bool>(&value.storage())) {
    statement.Bind(std::int32_t{*flag});
  } else if (const auto* number = std::get_if<std::int32_t>(&value.storage())) {
    statement.Bind(*number);
  } else if (const auto* real = std::get_if<double>(&value.storage())) {
    statement.Bind(*real);
  } else if (const auto* date = std::get_if<Date>(&value.storage())) {
    statement.Bind(DateText(*date, type));
  } else {
    statement.Bind(value.ToText());
  }
}

}  // namespace

Session::Session(std::wstring_view connection_string) {
  std::string text = ToUtf8(connection_string);
  try {
    if (!SQL_SUCCEEDED(SQLAllocHandle(SQL_HANDLE_ENV, SQL_NULL_HANDLE, &environment_))) {
      throw Error(kErrorFailed, L"ODBC is not available.");
    }
    Check(SQLSetEnvAttr(environment_, SQL_ATTR_ODBC_VERSION,
                        reinterpret_cast<SQLPOINTER>(SQL_OV_ODBC3), SQL_IS_UINTEGER),
          SQL_HANDLE_ENV, environment_);
    Check(SQLAllocHandle(SQL_HANDLE_DBC, environment_, &connection_), SQL_HANDLE_ENV, environment_);
    Check(SQLDriverConnect(connection_, nullptr, ForSql(text), SQL_NTS, nullptr, 0, nullptr,
                           SQL_DRIVER_NOPROMPT),
          SQL_HANDLE_DBC, connection_);
  } catch (...) {
    Close();
    throw;
  }
}

Session::~Session() { Close(); }

void Session::Close() {
  if (connection_) {
    SQLDisconnect(connection_);
    SQLFreeHandle(SQL_HANDLE_DBC, connection_);
  }
  if (environment_) SQLFreeHandle(SQL_HANDLE_ENV, environment_);
  connection_ = nullptr;
  environment_ = nullptr;
}

void Session::RequireOpen() const {
  if (!is_open()) Throw(AdoError::kObjectClosed, L"The connection is closed.");
}

Rows Session::Query(std::wstring_view sql) {
  RequireOpen();
  Statement statement(connection_);
  statement.Execute(sql);
  Rows rows;
  std::vector<const ColumnType*> types;
  for (SQLUSMALLINT i = 1; i <= statement.ColumnCount(); ++i) {
    Column& column = rows.columns.emplace_back();
    types.push_back(&TypeOf(statement.Describe(i, column.name)));
    column.type = types.back()->ado;
  }
  while (!types.empty() && statement.Fetch()) {
    for (std::size_t i = 0; i < types.size(); ++i) {
      rows.cells.push_back(types[i]->read(statement, static_cast<SQLUSMALLINT>(i + 1)));
    }
  }
  return rows;
}

void Session::Execute(std::wstring_view sql) {
  RequireOpen();
  Statement(connection_).Execute(sql);
}

void Session::DeleteRow(std::wstring_view table, const std::vector<Column>& columns,
                        const Value* cells) {
  RequireOpen();
  Transaction transaction(connection_);
  Statement statement(connection_);
  std::wstring sql = std::wstring(L"DELETE FROM ").append(table);
  for (std::size_t i = 0; i < columns.size(); ++i) {
    const bool is_null = cells[i].is_null();
    sql.append(i == 0 ? L" WHERE [" : L" AND [").append(columns[i].name);
    sql.append(is_null ? L"] IS NULL" : L"] = ?");
    if (!is_null) Bind(statement, cells[i], columns[i].type);
  }
  statement.Execute(sql);
  if (statement.RowCount() != 1) {
    throw Error(kErrorFailed, L"The row is not there any more, or not the only one of its kind.");
  }
  transaction.Commit();
}

}  // namespace ard::host_database
