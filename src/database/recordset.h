// The guarded handle of a recordset: a step that fails is skipped and noted in the trace, and gives
// the neutral answer. Destroying it closes the recordset and releases it, on every path.
#ifndef ARD_DATABASE_RECORDSET_H_
#define ARD_DATABASE_RECORDSET_H_

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <utility>

#include "database/seam.h"
#include "frame/context.h"
#include "frame/error.h"

namespace ard::database {

class Recordset {
 public:
  // One that is still to be opened.
  explicit Recordset(const Context& context) : context_(context) {}
  Recordset(const Context& context, std::wstring_view command, Cursor cursor,
            Lock lock = Lock::kReadOnly)
      : Recordset(context) {
    Open(command, cursor, lock);
  }
  Recordset(const Recordset&) = delete;
  Recordset& operator=(const Recordset&) = delete;
  ~Recordset() {
    Do(L"Close", [](RecordsetObject& recordset) { recordset.Close(); });
  }

  // Opens `command` on the host's connection.
  void Open(std::wstring_view command, Cursor cursor, Lock lock = Lock::kReadOnly) {
    Attempt(context_.trace(), {kName, L"Open", command}, [&] {
      target_ = context_.database.Needed(L"No database connection has been set.")
                    .Open(command, cursor, lock);
    });
  }

  bool is_open() const { return target_ != nullptr; }

  // A recordset that cannot tell is at its end.
  bool Bof() {
    return Ask(L"BOF", true, [](RecordsetObject& recordset) { return recordset.Bof(); });
  }
  bool Eof() {
    return Ask(L"EOF", true, [](RecordsetObject& recordset) { return recordset.Eof(); });
  }
  bool MoveNext() {
    return Do(L"MoveNext", [](RecordsetObject& recordset) { recordset.MoveNext(); });
  }
  std::int32_t RecordCount() {
    return Ask(L"RecordCount", std::int32_t{0},
               [](RecordsetObject& recordset) { return recordset.RecordCount(); });
  }
  bool SetAbsolutePosition(std::int32_t row) {
    return Do(L"AbsolutePosition",
              [&](RecordsetObject& recordset) { recordset.SetAbsolutePosition(row); });
  }
  bool SetFilter(std::wstring_view filter) {
    return Do(L"Filter", [&](RecordsetObject& recordset) { recordset.SetFilter(filter); });
  }
  bool SetSort(std::wstring_view sort) {
    return Do(L"Sort", [&](RecordsetObject& recordset) { recordset.SetSort(sort); });
  }
  std::int32_t FieldCount() {
    return Ask(L"Fields.Count", std::int32_t{0},
               [](RecordsetObject& recordset) { return recordset.FieldCount(); });
  }
  std::wstring FieldName(std::int32_t field) {
    return Ask(L"Field.Name", std::wstring(),
               [&](RecordsetObject& recordset) { return recordset.FieldName(field); });
  }
  std::int32_t GetFieldType(std::int32_t field) {
    return Ask(L"Field.Type", std::int32_t{0},
               [&](RecordsetObject& recordset) { return recordset.GetFieldType(field); });
  }
  // Reads a field of the current row, by its name, or by its place and with the name that the trace
  // has for it, into `out`, converted to its type; a read or conversion that fails leaves `out` as
  // it was.
  template <class T>
  bool Get(Name field, T& out) {
    return Get(std::wstring_view(field), field, out);
  }
  template <class T>
  bool Get(auto field, Name name, T& out) {
    return Do(
        L"Field.Value",
        [&](RecordsetObject& recordset) { Convert(recordset.GetValue(field), out); }, name);
  }
  // Deletes the current row.
  bool Delete() {
    return Do(L"Delete", [](RecordsetObject& recordset) { recordset.Delete(); });
  }

 private:
  static constexpr std::wstring_view kName = L"Recordset";

  template <std::size_t n, class Action>
  bool Do(const wchar_t (&operation)[n], Action&& action, Name detail = L"") {
    return target_ && Attempt(
                          context_.trace(),
                          [&] {
                            return Step{kName, operation, detail};
                          },
                          [&] { action(*target_); });
  }

  template <class Answer, std::size_t n, class Action>
  Answer Ask(const wchar_t (&operation)[n], Answer neutral, Action&& action) {
    Do(operation, [&](RecordsetObject& recordset) { neutral = action(recordset); });
    return neutral;
  }

  const Context& context_;
  std::unique_ptr<RecordsetObject> target_;
};

}  // namespace ard::database

#endif  // ARD_DATABASE_RECORDSET_H_
