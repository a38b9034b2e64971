#include "windows/database/ado.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <utility>

#include "windows/engine/dispatch_call.h"
#include "windows/other_bits.h"
#include "windows/system_error.h"

namespace ard::windows {
namespace {

using database::Cursor;
using database::Lock;

// The members that are used, each of one type of object: a recordset, its fields, a field.
enum Name : std::size_t {
  kCursorLocation,
  kOpen,
  kState,
  kClose,
  kBof,
  kEof,
  kMoveNext,
  kRecordCount,
  kAbsolutePosition,
  kFilter,
  kSort,
  kDelete,
  kFields,
  kFieldsCount,
  kFieldsItem,
  kFieldName,
  kFieldType,
  kFieldValue,
  kNames,
};
constexpr std::array<const wchar_t*, kNames> kNameTexts = {
    L"CursorLocation", L"Open",        L"State",
    L"Close",          L"BOF",         L"EOF",
    L"MoveNext",       L"RecordCount", L"AbsolutePosition",
    L"Filter",         L"Sort",        L"Delete",
    L"Fields",         L"Count",       L"Item",
    L"Name",           L"Type",        L"Value",
};

// ADO's constants.
constexpr std::int32_t kUseClient = 3;
constexpr std::int32_t kOpenForwardOnly = 0;
constexpr std::int32_t kOpenStatic = 3;
constexpr std::int32_t kLockReadOnly = 1;
constexpr std::int32_t kLockOptimistic = 3;
constexpr std::int32_t kCommandText = 1;
constexpr std::int32_t kFilterNone = 0;
constexpr std::int32_t kStateClosed = 0;

// What is looked up once for a connection and everything opened on it.
struct LookedUp {
  std::optional<CLSID> recordset_class;
  NamedIds<kNameTexts> ids;
};
using LookedUpPtr = std::shared_ptr<LookedUp>;

// An object whose members are known by name.
class Named {
 public:
  Named(ComPtr<IDispatch> object, LookedUpPtr looked_up)
      : object_(std::move(object)), looked_up_(std::move(looked_up)) {}

  bool AskBoolean(Name name) const { return object_.AskBoolean(Id(name)); }
  std::int32_t AskLong(Name name) const { return object_.AskLong(Id(name)); }
  std::wstring AskText(Name name) const { return object_.AskText(Id(name)); }
  Value Ask(Name name) const { return FromVariant(object_.Ask(Id(name))); }
  Named AskObject(Name name, const auto&... arguments) const {
    return Named(object_.AskObject(Id(name), arguments...), looked_up_);
  }
  void Do(Name name, const auto&... arguments) const { object_.Do(Id(name), arguments...); }
  void Put(Name name, const auto& value) const { object_.Put(Id(name), value); }

 private:
  DISPID Id(Name name) const { return looked_up_->ids.Get(object_, name); }

  LateBound object_;
  LookedUpPtr looked_up_;
};

constexpr wchar_t kRecordset[] = L"ADODB.Recordset";

void Check(HRESULT result) {
  if (SUCCEEDED(result)) return;
  const std::wstring why = OtherBitsOnly(kRecordset);
  throw Error(result, std::wstring(kRecordset) + L" cannot be created in a program of " +
                          std::to_wstring(8 * sizeof(void*)) + L" bits: " +
                          (why.empty() ? SystemError(result).text() : why));
}

class AdoRecordset final : public database::RecordsetObject {
 public:
  explicit AdoRecordset(Named recordset) : recordset_(std::move(recordset)) {}

  bool Bof() override { return recordset_.AskBoolean(kBof); }
  bool Eof() override { return recordset_.AskBoolean(kEof); }
  void MoveNext() override { recordset_.Do(kMoveNext); }
  std::int32_t RecordCount() override { return recordset_.AskLong(kRecordCount); }
  void SetAbsolutePosition(std::int32_t row) override { recordset_.Put(kAbsolutePosition, row); }
  void SetFilter(std::wstring_view filter) override {
    if (filter.empty()) {
      recordset_.Put(kFilter, kFilterNone);
    } else {
      recordset_.Put(kFilter, filter);
    }
  }
  void SetSort(std::wstring_view sort) override { recordset_.Put(kSort, sort); }
  std::int32_t FieldCount() override { return Fields().AskLong(kFieldsCount); }
  std::wstring FieldName(std::int32_t field) override { return FieldAt(field).AskText(kFieldName); }
  std::int32_t GetFieldType(std::int32_t field) override {
    return FieldAt(field).AskLong(kFieldType);
  }
  Value GetValue(std::int32_t field) override { return FieldAt(field).Ask(kFieldValue); }
  Value GetValue(std::wstring_view field) override {
    return Fields().AskObject(kFieldsItem, field).Ask(kFieldValue);
  }
  void Delete() override { recordset_.Do(kDelete); }
  void Close() override {
    if (recordset_.AskLong(kState) != kStateClosed) recordset_.Do(kClose);
  }

 private:
  const Named& Fields() {
    if (!fields_) fields_ = recordset_.AskObject(kFields);
    return *fields_;
  }

  // A field object shows the current row, whichever that is, so it is asked for once.
  const Named& FieldAt(std::int32_t field) {
    auto known = field_.find(field);
    if (known == field_.end()) {
      known = field_.emplace(field, Fields().AskObject(kFieldsItem, field)).first;
    }
    return known->second;
  }

  Named recordset_;
  std::optional<Named> fields_;
  std::map<std::int32_t, Named> field_;
};

class AdoConnection final : public database::Connection {
 public:
  explicit AdoConnection(ComPtr<IDispatch> connection) : connection_(std::move(connection)) {}

  std::unique_ptr<database::RecordsetObject> Open(std::wstring_view command, Cursor cursor,
                                                  Lock lock) override {
    const Named recordset(NewRecordset(), looked_up_);
    const bool is_static = cursor == Cursor::kStatic;
    if (is_static) recordset.Put(kCursorLocation, kUseClient);
    recordset.Do(kOpen, command, connection_, is_static ? kOpenStatic : kOpenForwardOnly,
                 lock == Lock::kOptimistic ? kLockOptimistic : kLockReadOnly, kCommandText);
    return std::make_unique<AdoRecordset>(recordset);
  }

 private:
  ComPtr<IDispatch> NewRecordset() {
    std::optional<CLSID>& known = looked_up_->recordset_class;
    if (!known) {
      CLSID found;
      Check(CLSIDFromProgID(kRecordset, &found));
      known = found;
    }
    void* recordset = nullptr;
    const HRESULT outcome =
        CoCreateInstance(*known, nullptr, CLSCTX_INPROC_SERVER, IID_IDispatch, &recordset);
    FloatingPoint::Establish();
    Check(outcome);
    return ComPtr<IDispatch>::Adopt(static_cast<IDispatch*>(recordset));
  }

  ComPtr<IDispatch> connection_;
  LookedUpPtr looked_up_ = std::make_shared<LookedUp>();
};

}  // namespace

std::shared_ptr<database::Connection> WrapConnection(IDispatch* connection) {
  if (!connection) return nullptr;
  return std::make_shared<AdoConnection>(ComPtr<IDispatch>(connection));
}

}  // namespace ard::windows
