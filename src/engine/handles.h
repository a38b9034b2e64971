// Guarded handles: the accounts engine for class code. A handle owns one engine object; a step
// that fails is skipped and noted in the trace, and gives the neutral answer: Boolean operations
// answer false, numbers 0, and Get leaves its output alone. When the object could not be created,
// every step is skipped in silence (the failed creation has been noted). Destroying a handle
// closes what it opened and releases its engine object, on every path.
#ifndef ARD_ENGINE_HANDLES_H_
#define ARD_ENGINE_HANDLES_H_

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <utility>

#include "engine/seam.h"
#include "frame/context.h"
#include "frame/error.h"
#include "frame/text.h"

namespace ard::engine {

// Asks Get for text without its surrounding blanks.
struct TrimmedTag {};
inline constexpr TrimmedTag kTrimmed{};

namespace internal {

// The part that all handles share. `name` must outlive the handle: it is the published name of
// the engine object, a literal.
template <class Target>
class Handle {
 public:
  Handle(const Handle&) = delete;
  Handle& operator=(const Handle&) = delete;

 protected:
  using Factory = std::unique_ptr<Target> (Workspace::*)(std::wstring_view);

  Handle(const Context& context, std::wstring_view name, Factory create)
      : trace_(context.trace()), name_(name) {
    Attempt(trace_, {name, L"CreateRecordObject"}, [&] {
      if (!context.workspace) throw Error(kErrorFailed, L"No workspace has been set.");
      target_ = (context.workspace.get()->*create)(name);
    });
  }
  ~Handle() = default;

  template <class Action>
  bool Do(std::wstring_view operation, Action&& action) {
    return target_ && Attempt(trace_, {name_, operation}, [&] { action(*target_); });
  }

  // Runs a step that has an answer; gives the neutral one when it fails.
  template <class Answer, class Action>
  Answer Ask(std::wstring_view operation, Action&& action) {
    Answer answer{};
    Do(operation, [&](Target& target) { answer = action(target); });
    return answer;
  }

  Trace& trace_;
  std::wstring_view name_;
  std::unique_ptr<Target> target_;
};

// A handle of an object with fields. The fields collection is taken once and kept: it follows the
// object's current record.
template <class Target>
class FieldsHandle : public Handle<Target> {
 public:
  // Reads a field of the current record into `out`, converted to its type; a read or conversion
  // that fails leaves `out` as it was.
  template <class T>
  bool Get(std::wstring_view field, T& out) {
    return WithField(field, [&](Field& item) { Convert(item.GetValue(), out); });
  }
  bool Get(std::wstring_view field, std::wstring& out, TrimmedTag) {
    if (!Get(field, out)) return false;
    Trim(out);
    return true;
  }

  bool Set(std::wstring_view field, const Value& value) {
    return WithField(field, [&](Field& item) { item.SetValue(value); });
  }

  // The named field itself, for a column that is read on many records; throws when it fails.
  std::unique_ptr<Field> Item(std::wstring_view field) {
    if (!fields_) fields_ = this->target_->GetFields();
    return fields_->Item(field);
  }

  Trace& trace() { return this->trace_; }
  std::wstring_view name() const { return this->name_; }
  bool exists() const { return this->target_ != nullptr; }

 protected:
  using Handle<Target>::Handle;

  // The collection has to go before the object it belongs to.
  ~FieldsHandle() { fields_.reset(); }

 private:
  template <class Action>
  bool WithField(std::wstring_view field, Action&& action) {
    return this->target_ && Attempt(this->trace_, {this->name_, L"Fields", field}, [&] {
             const std::unique_ptr<Field> item = Item(field);
             action(*item);
           });
  }

  std::unique_ptr<Fields> fields_;
};

}  // namespace internal

// A data file: numbered records, from 1, with a current one.
class DataFile : public internal::FieldsHandle<DataFileObject> {
 public:
  DataFile(const Context& context, std::wstring_view name)
      : FieldsHandle(context, name, &Workspace::CreateDataFile) {}
  ~DataFile() { Close(); }

  bool Open(Mode mode) {
    return open_ = Ask<bool>(L"Open", [&](DataFileObject& file) { return file.Open(mode); });
  }
  bool Read(std::int32_t record) {
    return Ask<bool>(L"Read", [&](DataFileObject& file) { return file.Read(record); });
  }
  std::int32_t Count() {
    return Ask<std::int32_t>(L"Count", [](DataFileObject& file) { return file.Count(); });
  }
  bool FindFirst(std::wstring_view field, const Value& value) {
    return Ask<bool>(L"FindFirst",
                     [&](DataFileObject& file) { return file.FindFirst(field, value); });
  }
  bool FindNext(std::wstring_view field, const Value& value) {
    return Ask<bool>(L"FindNext",
                     [&](DataFileObject& file) { return file.FindNext(field, value); });
  }
  bool Write(std::int32_t record) {
    return Ask<bool>(L"Write", [&](DataFileObject& file) { return file.Write(record); });
  }
  void Close() {
    if (!std::exchange(open_, false)) return;
    Do(L"Close", [](DataFileObject& file) { file.Close(); });
  }

 private:
  bool open_ = false;
};

// A keyed record: set its key field, then Find.
class Record : public internal::FieldsHandle<RecordObject> {
 public:
  Record(const Context& context, std::wstring_view name)
      : FieldsHandle(context, name, &Workspace::CreateRecord) {}

  bool Find(Match match) {
    return Ask<bool>(L"Find", [&](RecordObject& record) { return record.Find(match); });
  }
  bool MoveFirst() {
    return Do(L"MoveFirst", [](RecordObject& record) { record.MoveFirst(); });
  }
  bool MoveNext() {
    return Ask<bool>(L"MoveNext", [](RecordObject& record) { return record.MoveNext(); });
  }
  bool AddNew() {
    return Do(L"AddNew", [](RecordObject& record) { record.AddNew(); });
  }
  bool Edit() {
    return Do(L"Edit", [](RecordObject& record) { record.Edit(); });
  }
  bool Update() {
    return Ask<bool>(L"Update", [](RecordObject& record) { return record.Update(); });
  }
  bool SetExtraText(std::wstring_view text) {
    return Do(L"ExtraText", [&](RecordObject& record) { record.SetExtraText(text); });
  }
};

// An index: the entries of a data file in key order, from position 1. Closed on destruction when
// Open succeeded.
class Index : public internal::Handle<IndexObject> {
 public:
  Index(const Context& context, std::wstring_view name)
      : Handle(context, name, &Workspace::CreateIndex) {}
  ~Index() { Close(); }

  bool Open(Mode mode) {
    return open_ = Ask<bool>(L"Open", [&](IndexObject& index) { return index.Open(mode); });
  }
  bool SetKey(const Value& key) {
    return Do(L"Key", [&](IndexObject& index) { index.SetKey(key); });
  }
  bool Find(Match match) {
    return Ask<bool>(L"Find", [&](IndexObject& index) { return index.Find(match); });
  }
  // 0 when the step fails: no entry has that position or record number.
  std::int32_t Position() {
    return Ask<std::int32_t>(L"Position", [](IndexObject& index) { return index.Position(); });
  }
  std::int32_t RecordNumber() {
    return Ask<std::int32_t>(L"RecordNumber",
                             [](IndexObject& index) { return index.RecordNumber(); });
  }
  bool MoveTo(std::int32_t position) {
    return Do(L"MoveTo", [&](IndexObject& index) { index.MoveTo(position); });
  }
  bool MoveFirst() {
    return Do(L"MoveFirst", [](IndexObject& index) { index.MoveFirst(); });
  }
  bool MoveNext() {
    return Ask<bool>(L"MoveNext", [](IndexObject& index) { return index.MoveNext(); });
  }
  void Close() {
    if (!std::exchange(open_, false)) return;
    Do(L"Close", [](IndexObject& index) { index.Close(); });
  }

 private:
  bool open_ = false;
};

// A field of a data file that is read on many records: the field object is taken at the first
// read and kept. It must not outlive its file.
class Column {
 public:
  Column(DataFile& file, std::wstring_view field) : file_(file), name_(field) {}

  template <class T>
  bool Get(T& out) {
    return file_.exists() && Attempt(file_.trace(), {file_.name(), L"Fields", name_}, [&] {
             if (!item_) item_ = file_.Item(name_);
             Convert(item_->GetValue(), out);
           });
  }

 private:
  DataFile& file_;
  std::wstring_view name_;
  std::unique_ptr<Field> item_;
};

}  // namespace ard::engine

#endif  // ARD_ENGINE_HANDLES_H_
