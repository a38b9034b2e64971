#include "host_database/windows/ado_objects.h"

#include <cstdint>
#include <map>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <utility>

#include "host_database/ado_error.h"
#include "host_database/odbc_connection.h"
#include "simulator/windows/automation.h"

namespace ard::host_database {
namespace {

using database::Cursor;
using database::Lock;
using simulator::Automation;
using simulator::Call;
using simulator::kCall;
using simulator::kPut;
using simulator::Member;
using windows::ComPtr;

constexpr DISPID kDefaultMember = DISPID_VALUE;
constexpr std::int32_t kUseClient = 3;
constexpr std::int32_t kOpenForwardOnly = 0;
constexpr std::int32_t kOpenStatic = 3;
constexpr std::int32_t kLockReadOnly = 1;
constexpr std::int32_t kLockOptimistic = 3;
constexpr std::int32_t kCommandText = 1;
constexpr std::int32_t kStateOpen = 1;

std::int32_t StateOf(bool is_open) { return is_open ? kStateOpen : 0; }

struct HostConnection {
  simulator::FaultPlan faults;
  std::optional<OdbcConnection> opened;

  bool is_open() const { return opened && opened->is_open(); }
  OdbcConnection& Required() {
    if (!opened) Throw(AdoError::kObjectClosed, L"The connection is closed.");
    return *opened;
  }
};

// The connections that live, by the objects that hosts know them as.
class Connections {
 public:
  void Add(IDispatch* object, const std::shared_ptr<HostConnection>& connection) {
    const std::lock_guard lock(mutex_);
    std::erase_if(all_, [](const auto& entry) { return entry.second.expired(); });
    all_[object] = connection;
  }
  std::shared_ptr<HostConnection> Find(const Value& object) {
    const std::lock_guard lock(mutex_);
    const auto* pointer = std::get_if<std::shared_ptr<Object>>(&object.storage());
    const auto* dispatch =
        pointer ? dynamic_cast<const windows::DispatchObject*>(pointer->get()) : nullptr;
    const auto found = all_.find(dispatch ? dispatch->get() : nullptr);
    auto connection = found == all_.end() ? nullptr : found->second.lock();
    if (!connection) Throw(AdoError::kInvalidArgument, L"This is no connection.");
    return connection;
  }

 private:
  std::mutex mutex_;
  std::map<IDispatch*, std::weak_ptr<HostConnection>> all_;
};

Connections connections;

struct ConnectionTarget {
  std::shared_ptr<HostConnection> connection;
};

constexpr Member<ConnectionTarget> kConnectionMembers[] = {
    {L"Open", 1, kCall, 1,
     [](ConnectionTarget& self, Call& call) {
       HostConnection& connection = *self.connection;
       if (connection.is_open()) Throw(AdoError::kObjectOpen, L"The connection is open.");
       connection.opened.emplace(call.Text(0)).Obey(connection.faults);
     }},
    {L"Execute", 2, kCall, 1,
     [](ConnectionTarget& self, Call& call) { self.connection->Required().Execute(call.Text(0)); }},
    {L"Close", 3, kCall, 0,
     [](ConnectionTarget& self, Call&) { self.connection->Required().Close(); }},
    {L"State", 4, kCall, 0,
     [](ConnectionTarget& self, Call& call) { call.Return(StateOf(self.connection->is_open())); }},
    {L"OpenRecordsets", 100, kCall, 0,
     [](ConnectionTarget& self, Call& call) {
       call.Return(self.connection->Required().open_recordsets());
     }},
    {L"FailFrom", 101, kCall, 2,
     [](ConnectionTarget& self, Call& call) {
       self.connection->faults.FailFrom(call.Long(0), call.Boolean(1));
     }},
    // As a double, because the count can grow beyond a Long.
    {L"Operations", 102, kCall, 0,
     [](ConnectionTarget& self, Call& call) {
       call.Return(static_cast<double>(self.connection->faults.operations()));
     }},
};

// What a recordset shares with its fields.
struct Rows {
  std::int32_t cursor_location = 2;  // of the server, as in ADO
  std::shared_ptr<HostConnection> connection;
  std::unique_ptr<Recordset> recordset;

  bool is_open() const { return recordset && recordset->is_open(); }
  Recordset& Required() {
    if (!recordset) Throw(AdoError::kObjectClosed, L"The recordset is closed.");
    return *recordset;
  }
};

struct FieldTarget {
  std::shared_ptr<Rows> rows;
  std::int32_t place;

  Recordset& recordset() { return rows->Required(); }
};

constexpr Member<FieldTarget> kFieldMembers[] = {
    {L"Value", kDefaultMember, kCall, 0,
     [](FieldTarget& self, Call& call) { call.Return(self.recordset().GetValue(self.place)); }},
    {L"Name", 1, kCall, 0,
     [](FieldTarget& self, Call& call) { call.Return(self.recordset().FieldName(self.place)); }},
    {L"Type", 2, kCall, 0,
     [](FieldTarget& self, Call& call) { call.Return(self.recordset().GetFieldType(self.place)); }},
};

struct RecordsetTarget {
  std::shared_ptr<Rows> rows = std::make_shared<Rows>();

  Recordset& recordset() { return rows->Required(); }
};

constexpr Member<RecordsetTarget> kFieldsMembers[] = {
    {L"Item", kDefaultMember, kCall, 1,
     [](RecordsetTarget& self, Call& call) {
       const Value which = call.Argument(0);
       const bool by_name = std::holds_alternative<std::wstring>(which.storage());
       const std::int32_t place =
           by_name ? self.recordset().FindField(which.ToText()) : which.ToLong();
       self.recordset().FieldName(place);  // fails for one that is not there
       call.Return(Automation<FieldTarget>::Create(kFieldMembers, {self.rows, place}));
     }},
    {L"Count", 1, kCall, 0,
     [](RecordsetTarget& self, Call& call) { call.Return(self.recordset().FieldCount()); }},
};

constexpr Member<RecordsetTarget> kRecordsetMembers[] = {
    {L"CursorLocation", 1, kPut, 1,
     [](RecordsetTarget& self, Call& call) {
       if (self.rows->is_open()) Throw(AdoError::kObjectOpen, L"The recordset is open.");
       self.rows->cursor_location = call.Long(0);
     }},
    // The command, the connection, cursor and lock type, and that the command is text. Only two
    // kinds of cursor are there.
    {L"Open", 2, kCall, 5,
     [](RecordsetTarget& self, Call& call) {
       if (self.rows->is_open()) Throw(AdoError::kObjectOpen, L"The recordset is open.");
       const bool is_client = self.rows->cursor_location == kUseClient;
       const std::int32_t lock = call.Long(3);
       if (call.Long(2) != (is_client ? kOpenStatic : kOpenForwardOnly) ||
           (lock != kLockReadOnly && lock != kLockOptimistic) || call.Long(4) != kCommandText) {
         Throw(AdoError::kInvalidArgument, L"No such recordset is served.");
       }
       self.rows->connection = connections.Find(call.Argument(1));
       self.rows->recordset = self.rows->connection->Required().OpenRecordset(
           call.Text(0), is_client ? Cursor::kStatic : Cursor::kForwardOnly,
           lock == kLockOptimistic ? Lock::kOptimistic : Lock::kReadOnly);
     }},
    {L"Close", 3, kCall, 0, [](RecordsetTarget& self, Call&) { self.recordset().Close(); }},
    {L"State", 4, kCall, 0,
     [](RecordsetTarget& self, Call& call) { call.Return(StateOf(self.rows->is_open())); }},
    {L"BOF", 5, kCall, 0,
     [](RecordsetTarget& self, Call& call) { call.Return(self.recordset().Bof()); }},
    {L"EOF", 6, kCall, 0,
     [](RecordsetTarget& self, Call& call) { call.Return(self.recordset().Eof()); }},
    {L"MoveFirst", 7, kCall, 0, [](RecordsetTarget& self, Call&) { self.recordset().MoveFirst(); }},
    {L"MoveNext", 8, kCall, 0, [](RecordsetTarget& self, Call&) { self.recordset().MoveNext(); }},
    {L"RecordCount", 9, kCall, 0,
     [](RecordsetTarget& self, Call& call) { call.Return(self.recordset().RecordCount()); }},
    {L"AbsolutePosition", 10, kCall, 0,
     [](RecordsetTarget& self, Call& call) { call.Return(self.recordset().AbsolutePosition()); }},
    {L"AbsolutePosition", 10, kPut, 1,
     [](RecordsetTarget& self, Call& call) { self.recordset().SetAbsolutePosition(call.Long(0)); }},
    // The number 0 is ADO's "no filter".
    {L"Filter", 11, kPut, 1,
     [](RecordsetTarget& self, Call& call) {
       const std::wstring filter = call.Text(0);
       self.recordset().SetFilter(filter == L"0" ? L"" : filter);
     }},
    {L"Sort", 12, kPut, 1,
     [](RecordsetTarget& self, Call& call) { self.recordset().SetSort(call.Text(0)); }},
    {L"Fields", 13, kCall, 0,
     [](RecordsetTarget& self, Call& call) {
       call.Return(Automation<RecordsetTarget>::Create(kFieldsMembers, self));
     }},
    {L"Delete", 14, kCall, 0, [](RecordsetTarget& self, Call&) { self.recordset().Delete(); }},
};

}  // namespace

ComPtr<IDispatch> CreateConnectionObject() {
  auto connection = std::make_shared<HostConnection>();
  auto object = Automation<ConnectionTarget>::Create(kConnectionMembers, {connection});
  connections.Add(object.get(), connection);
  return object;
}

ComPtr<IDispatch> CreateRecordsetObject() {
  return Automation<RecordsetTarget>::Create(kRecordsetMembers, {});
}

}  // namespace ard::host_database
