// Guarded handles: the accounts engine for class code. A handle owns one engine object; a step
// that fails is skipped and noted in the trace, and gives the neutral answer: Boolean operations
// answer false, numbers 0, and Get leaves its output alone. When the object could not be created,
// or the file refused to open, every step is skipped in silence (the failure has been noted).
// Destroying a handle closes what it opened and releases its engine object, on every path.
#ifndef ARD_ENGINE_HANDLES_H_
#define ARD_ENGINE_HANDLES_H_

#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <string_view>
#include <type_traits>
#include <utility>

#include "engine/seam.h"
#include "frame/context.h"
#include "frame/error.h"
#include "frame/name.h"
#include "frame/text.h"

namespace ard::engine {

// Names in the trace: as the host knows them, or the engine.
inline constexpr std::wstring_view kWorkspace = L"ArdWorkspace";
inline constexpr std::wstring_view kCreate = L"CreateRecordObject";
inline constexpr std::wstring_view kFields = L"Fields";

// Why an operation has answered False, as the trace tells it.
inline constexpr std::wstring_view kNotOpened = L"False: the engine has not opened it.";
inline constexpr std::wstring_view kNoRecord = L"False: there is no such record.";
inline constexpr std::wstring_view kNoKey = L"False: nothing has that key.";
inline constexpr std::wstring_view kNoMatch = L"False: no record matches.";
inline constexpr std::wstring_view kNotStored = L"False: the engine has not stored the record.";

// Asks Get for text without its surrounding blanks.
struct TrimmedTag {};
inline constexpr TrimmedTag kTrimmed{};

// A field's text that goes into another, trimmed: Null, which an empty field may be, is blank.
struct TextPart {
  std::wstring text;
};

namespace internal {

// The part that all handles share. `name` must outlive the handle: it is the published name of
// the engine object, a literal.
template <class Target>
class Handle {
 public:
  Handle(const Handle&) = delete;
  Handle& operator=(const Handle&) = delete;

  // Whether the engine has handed out an object.
  bool exists() const { return target_ != nullptr; }
  Trace& trace() const { return trace_; }

 protected:
  // `create` makes the object, given the workspace and the name.
  template <class Create>
  Handle(const Context& context, Name name, Create create)
      : Handle(context.trace(), name, std::unique_ptr<Target>()) {
    Attempt(
        trace_,
        [&] {
          return Step{kWorkspace, kCreate, name};
        },
        [&] {
          Workspace& workspace = context.workspace.Needed(L"No workspace has been set.");
          target_.reset(std::invoke(create, workspace, name).release());
        });
    usable_ = target_.get();
  }
  // Takes an object over that exists already; null when it does not.
  Handle(Trace& trace, Name name, std::unique_ptr<Target> target)
      : trace_(trace), name_(name), target_(std::move(target)), usable_(target_.get()) {}
  ~Handle() = default;

  // Runs a step, unless there is nothing to run it on.
  template <class Describe, class Action>
  [[gnu::always_inline]] bool Run(Describe&& describe, Action&& action) {
    return usable_ && Attempt(trace_, describe, [&] { action(*usable_); });
  }

  // Operations are literals: their lengths are not counted at every call.
  template <std::size_t n, class Action>
  bool Do(const wchar_t (&operation)[n], Action&& action) {
    return Run([&] { return Step{name_, operation}; }, action);
  }

  // Runs a step that tells whether it has done what it is for. False is noted with its reason: no
  // error tells of it.
  template <std::size_t n, class Action>
  bool Told(const wchar_t (&operation)[n], std::wstring_view why_not, Action&& action) {
    bool told = false;
    if (Do(operation, [&](Target& target) { told = action(target); }) && !told) {
      trace_.Noted({name_, operation}, why_not);
    }
    return told;
  }

  // Runs a step that has an answer; gives the neutral one when it fails.
  template <class Answer, std::size_t n, class Action>
  Answer Ask(const wchar_t (&operation)[n], Action&& action) {
    Answer answer{};
    Do(operation, [&](Target& target) { answer = action(target); });
    return answer;
  }

  Trace& trace_;
  std::wstring_view name_;
  std::unique_ptr<Target> target_;
  Target* usable_;  // null while steps make no sense: a file has to be open
};

// A file, or an index: to be opened before anything else is asked of it, and closed on destruction
// when it has been.
template <class Base>
class Openable : public Base {
 public:
  bool Open(Mode mode) {
    this->usable_ = this->target_.get();
    open_ = this->Told(L"Open", kNotOpened, [&](auto& file) { return file.Open(mode); });
    if (!open_) this->usable_ = nullptr;
    return open_;
  }
  // Goes on with the file whatever it answered.
  bool OpenUntested(Mode mode) {
    const bool opened = Open(mode);
    this->usable_ = this->target_.get();
    return opened;
  }
  void Close() {
    if (open_) this->Do(L"Close", [](auto& file) { file.Close(); });
    this->usable_ = nullptr;
  }

 protected:
  template <class Create>
  Openable(const Context& context, Name name, Create create) : Base(context, name, create) {
    this->usable_ = nullptr;
  }
  ~Openable() { Close(); }

 private:
  bool open_ = false;
};

// A handle of an object with fields: those of its current record. Nothing says that a collection or
// a field follows the record, so both are taken anew for each; between two operations that may
// change the record, the collection is taken once.
template <class Target>
class FieldsHandle : public Handle<Target> {
 public:
  // Reads a field of the current record into `out`, converted to its type; a read or conversion
  // that fails leaves `out` as it was.
  template <class T>
  bool Get(Name field, T& out) {
    return WithField(field, [&](Field& item) {
      if constexpr (std::is_same_v<T, std::wstring>) {
        if (!item.ReadText(out)) Convert(Null(), out);
      } else if constexpr (std::is_same_v<T, TextPart>) {
        if (!item.ReadText(out.text)) out.text.clear();
        Trim(out.text);
      } else {
        Convert(item.GetValue(), out);
      }
    });
  }
  // The same for a field that some engines do not have: that it is not there is no failure.
  template <class T>
  void GetIfThere(Name field, T& out) {
    std::unique_ptr<Field> item;
    if (!this->usable_) return;
    try {
      item = Item(field);
    } catch (...) {
      return this->trace_.NotedByException({this->name_, kFields, field});
    }
    Attempt(this->trace_, {this->name_, kFields, field}, [&] { Convert(item->GetValue(), out); });
  }
  bool Get(Name field, std::wstring& out, TrimmedTag) {
    if (!Get(field, out)) return false;
    Trim(out);
    return true;
  }

  bool Set(Name field, const Value& value) {
    return WithField(field, [&](Field& item) { item.SetValue(value); });
  }
  // For who sets a field of the current record more than once: `item` holds it from then on.
  bool Set(Name field, std::unique_ptr<Field>& item, const Value& value) {
    return this->Run(
        [&] {
          return Step{this->name_, kFields, field};
        },
        [&](Target&) {
          if (!item) item = Item(field);
          item->SetValue(value);
        });
  }

  // Calls `action(position, field)` for each field, from position 1 to the count of fields. A field
  // for which a step fails is skipped; returns whether none was.
  template <class Action>
  bool ForEachField(Action&& action) {
    std::int32_t count = 0;
    bool all = this->Do(L"Fields.Count", [&](Target&) { count = Collection().Count(); });
    for (std::int32_t position = 1; position <= count; ++position) {
      const bool done = Attempt(this->trace_, {this->name_, kFields, L"by position"}, [&] {
        const std::unique_ptr<Field> item = Item(position);
        action(position, *item);
      });
      all = all && done;
    }
    return all;
  }

  // The field itself, by its name or by its position from 1; throws when it fails. It must not
  // outlive the record's being current.
  std::unique_ptr<Field> Item(auto field) { return Collection().Item(field); }

 protected:
  using Handle<Target>::Handle;

  // The collection has to go before the object it belongs to.
  ~FieldsHandle() { fields_.reset(); }

  // An operation that may change the current record.
  template <std::size_t n, class Action>
  bool Move(const wchar_t (&operation)[n], Action&& action) {
    fields_.reset();
    return this->Do(operation, action);
  }
  // The same for a step to the next record, which there may be.
  template <std::size_t n, class Action>
  bool AskToMove(const wchar_t (&operation)[n], Action&& action) {
    bool moved = false;
    Move(operation, [&](Target& target) { moved = action(target); });
    return moved;
  }
  // The same for one that is to find a record.
  template <std::size_t n, class Action>
  bool ToldMove(const wchar_t (&operation)[n], std::wstring_view why_not, Action&& action) {
    fields_.reset();
    return this->Told(operation, why_not, action);
  }

 private:
  Fields& Collection() {
    if (!fields_) fields_ = this->target_->GetFields();
    return *fields_;
  }

  template <class Action>
  bool WithField(Name field, Action&& action) {
    return this->Run(
        [&] {
          return Step{this->name_, kFields, field};
        },
        [&](Target&) {
          const std::unique_ptr<Field> item = Item(field);
          action(*item);
        });
  }

  std::unique_ptr<Fields> fields_;
};

}  // namespace internal

// A data file: numbered records, from 1, with a current one.
class DataFile : public internal::Openable<internal::FieldsHandle<DataFileObject>> {
 public:
  DataFile(const Context& context, Name name)
      : Openable(context, name, &Workspace::CreateDataFile) {}

  bool Read(std::int32_t record) {
    return ToldMove(L"Read", kNoRecord, [&](DataFileObject& file) { return file.Read(record); });
  }
  std::int32_t Count() {
    std::int32_t count = 0;
    Count(count);
    return count;
  }
  // For who must not take a failure for an empty file.
  bool Count(std::int32_t& count) {
    return Do(L"Count", [&](DataFileObject& file) { count = file.Count(); });
  }
  bool FindFirst(Name field, const Value& value) {
    bool found = false;
    return FindFirst(field, value, found) && found;
  }
  // For who has to know the difference: false when the search failed, and so tells nothing.
  bool FindFirst(Name field, const Value& value, bool& found) {
    const bool done =
        Move(L"FindFirst", [&](DataFileObject& file) { found = file.FindFirst(field, value); });
    if (done && !found) trace_.Noted({name_, L"FindFirst", field}, kNoMatch);
    return done;
  }
  bool FindNext(Name field, const Value& value) {
    return AskToMove(L"FindNext",
                     [&](DataFileObject& file) { return file.FindNext(field, value); });
  }
  bool Write(std::int32_t record) {
    return Told(L"Write", kNotStored, [&](DataFileObject& file) { return file.Write(record); });
  }
};

// A keyed record: set its key field, then Find.
class Record : public internal::FieldsHandle<RecordObject> {
 public:
  Record(const Context& context, Name name)
      : FieldsHandle(context, name, &Workspace::CreateRecord) {}
  // Takes over a record that the host has handed in.
  Record(const Context& context, Name name, std::unique_ptr<RecordObject> record)
      : FieldsHandle(context.trace(), name, std::move(record)) {}

  bool Find(Match match) {
    return ToldMove(L"Find", kNoKey, [&](RecordObject& record) { return record.Find(match); });
  }
  bool MoveFirst() {
    return Move(L"MoveFirst", [](RecordObject& record) { record.MoveFirst(); });
  }
  bool MoveNext() {
    return AskToMove(L"MoveNext", [](RecordObject& record) { return record.MoveNext(); });
  }
  bool AddNew() {
    return Move(L"AddNew", [](RecordObject& record) { record.AddNew(); });
  }
  bool Edit() {
    return Move(L"Edit", [](RecordObject& record) { record.Edit(); });
  }
  bool Update() {
    return Told(L"Update", kNotStored, [](RecordObject& record) { return record.Update(); });
  }
  bool SetExtraText(std::wstring_view text) {
    return Do(L"ExtraText", [&](RecordObject& record) { record.SetExtraText(text); });
  }
  // Those of a stock record; null when the step fails.
  std::unique_ptr<TransactionsObject> TakeTransactions() {
    return Ask<std::unique_ptr<TransactionsObject>>(
        L"Transactions", [](RecordObject& record) { return record.Transactions(); });
  }
};

// The stock transactions of a stock record, which must outlive it.
class Transactions : public internal::FieldsHandle<TransactionsObject> {
 public:
  explicit Transactions(Record& record)
      : FieldsHandle(record.trace(), L"Transactions", record.TakeTransactions()) {}

  std::int32_t Count() {
    return Ask<std::int32_t>(L"Count", [](TransactionsObject& list) { return list.Count(); });
  }
  bool MoveFirst() {
    return Move(L"MoveFirst", [](TransactionsObject& list) { list.MoveFirst(); });
  }
  bool MoveNext() {
    return AskToMove(L"MoveNext", [](TransactionsObject& list) { return list.MoveNext(); });
  }
};

// The engine's pricing service; it does not exist when the engine offers none.
class Pricing : public internal::Handle<PricingObject> {
 public:
  explicit Pricing(const Context& context)
      : Handle(context, L"Pricing", [&](Workspace& workspace, Name name) {
          std::unique_ptr<PricingObject> service = workspace.CreatePricing();
          if (!service)
            context.trace().Noted({kWorkspace, kCreate, name}, L"The engine offers none.");
          return service;
        }) {}

  double CustomerUnitPrice(std::wstring_view acc_ref, std::wstring_view stock_code) {
    return Ask<double>(L"CustomerUnitPrice", [&](PricingObject& pricing) {
      return pricing.CustomerUnitPrice(acc_ref, stock_code);
    });
  }
  double SupplierUnitPrice(std::wstring_view stock_code, std::wstring_view acc_ref) {
    return Ask<double>(L"SupplierUnitPrice", [&](PricingObject& pricing) {
      return pricing.SupplierUnitPrice(stock_code, acc_ref);
    });
  }
};

// An index: the entries of a data file in key order, from position 1.
class Index : public internal::Openable<internal::Handle<IndexObject>> {
 public:
  Index(const Context& context, Name name) : Openable(context, name, &Workspace::CreateIndex) {}

  bool SetKey(const Value& key) {
    return Do(L"Key", [&](IndexObject& index) { index.SetKey(key); });
  }
  bool Find(Match match) {
    return Told(L"Find", kNoKey, [&](IndexObject& index) { return index.Find(match); });
  }
  // Positions the index on the entry with that key; false when there is none.
  bool FindKey(const Value& key) { return SetKey(key) && Find(Match::kExact); }
  // 0 when the step fails: no entry has that position.
  std::int32_t Position() {
    return Ask<std::int32_t>(L"Position", [](IndexObject& index) { return index.Position(); });
  }
  bool RecordNumber(std::int32_t& record) {
    return Do(L"RecordNumber", [&](IndexObject& index) { record = index.RecordNumber(); });
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
};

// Makes the record at which the index stands the current one of its data file.
inline bool ReadEntry(Index& index, DataFile& data) {
  std::int32_t record = 0;
  return index.RecordNumber(record) && data.Read(record);
}

// The look-up through an index: makes the record with that key current; false when there is none,
// or when it cannot be read.
inline bool ReadKey(Index& index, DataFile& data, const Value& key) {
  return index.FindKey(key) && ReadEntry(index, data);
}

// What the engine says of its last error; what it does not say stays as it is.
inline void ReadLastError(const Context& context, std::wstring& number, std::wstring& text) {
  Attempt(context.trace(), {L"ArdEngine", L"LastError"}, [&] {
    const std::unique_ptr<EngineError> error =
        context.engine.Needed(L"No engine has been set.").LastError();
    Attempt(context.trace(), {L"Error", L"Number"},
            [&] { number = std::to_wstring(error->Number()); });
    Attempt(context.trace(), {L"Error", L"Text"}, [&] { text = error->Text(); });
  });
}

// The engine's version text; "" when it cannot be told.
inline std::wstring EngineVersion(const Context& context) {
  std::wstring version;
  Attempt(context.trace(), {kWorkspace, L"Version"}, [&] {
    if (context.workspace) version = context.workspace->Version();
  });
  return version;
}

}  // namespace ard::engine

#endif  // ARD_ENGINE_HANDLES_H_
