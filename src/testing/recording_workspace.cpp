#include "testing/recording_workspace.h"

#include <string_view>
#include <type_traits>
#include <utility>

#include "frame/error.h"

namespace ard::testing {
namespace {

using engine::Match;
using engine::Mode;

std::wstring Shown(const Value& value) {
  if (value.is_empty()) return L"Empty";
  if (value.is_null()) return L"Null";
  if (std::holds_alternative<std::shared_ptr<Object>>(value.storage())) return L"Object";
  const bool is_text = std::holds_alternative<std::wstring>(value.storage());
  return is_text ? L"\"" + value.ToText() + L"\"" : value.ToText();
}
std::wstring Shown(Mode mode) { return std::to_wstring(static_cast<std::int32_t>(mode)); }
std::wstring Shown(Match match) { return Shown(Value(match == Match::kPartial)); }

std::wstring Call(std::wstring_view member, const auto&... arguments) {
  std::wstring call(member);
  std::wstring_view separator = L"(";
  ((call.append(separator).append(Shown(arguments)), separator = L", "), ...);
  return call + L")";
}

// Replayed values are made anew at each operation, as a caller makes them.

// An object that is recorded under `path`, such as "StockRecord.Fields".
template <class T>
class Recorder : public T {
 public:
  using Target = T;

  Recorder(std::unique_ptr<Target> target, std::wstring path, Recording& recording)
      : target_(std::move(target)),
        path_(std::move(path)),
        recording_(recording),
        slot_(recording.objects++) {}
  ~Recorder() override {
    recording_.steps.push_back(
        [slot = slot_](engine::Workspace&, ReplayedObjects& objects) { objects.Release(slot); });
  }

  std::size_t slot() const { return slot_; }

 protected:
  // Notes the operation, and carries it out.
  template <class Action>
  auto Do(std::wstring_view operation, Action action) const {
    recording_.operations.push_back(path_ + std::wstring(operation));
    recording_.steps.push_back(
        [slot = slot_, action](engine::Workspace&, ReplayedObjects& objects) {
          action(objects.Get<Target>(slot));
        });
    return action(*target_);
  }

  // The same for one that hands out an object, which is recorded under the operation.
  template <class Wrapper, class Action>
  std::unique_ptr<Wrapper> Make(std::wstring_view operation, Action action) const {
    recording_.operations.push_back(path_ + std::wstring(operation));
    std::wstring path = recording_.operations.back();
    const std::size_t step = recording_.steps.size();
    recording_.steps.push_back(
        [slot = slot_, action](engine::Workspace&, ReplayedObjects& objects) {
          action(objects.Get<Target>(slot));
        });
    auto made = std::make_unique<Wrapper>(action(*target_), std::move(path), recording_);
    recording_.steps[step] = [slot = slot_, made = made->slot(), action](engine::Workspace&,
                                                                         ReplayedObjects& objects) {
      objects.Put(made, action(objects.Get<Target>(slot)));
    };
    return made;
  }

 private:
  std::unique_ptr<Target> target_;
  std::wstring path_;
  Recording& recording_;
  std::size_t slot_;
};

class RecordingField : public Recorder<engine::Field> {
 public:
  using Recorder::Recorder;
  std::wstring Name() override {
    return Do(L".Name", [](Target& field) { return field.Name(); });
  }
  std::int32_t Type() override {
    return Do(L".Type", [](Target& field) { return field.Type(); });
  }
  Value GetValue() override {
    return Do(L".Value", [](Target& field) { return field.GetValue(); });
  }
  void SetValue(const Value& value) override {
    Do(L".Value = " + Shown(value), [value](Target& field) { field.SetValue(Value(value)); });
  }
};

class RecordingFields : public Recorder<engine::Fields> {
 public:
  using Recorder::Recorder;
  std::unique_ptr<engine::Field> Item(std::wstring_view name) override {
    return Make<RecordingField>(
        Call(L"", name), [name = std::wstring(name)](Target& fields) { return fields.Item(name); });
  }
  std::unique_ptr<engine::Field> Item(std::int32_t position) override {
    return Make<RecordingField>(Call(L"", position),
                                [=](Target& fields) { return fields.Item(position); });
  }
  std::int32_t Count() override {
    return Do(L".Count", [](Target& fields) { return fields.Count(); });
  }
};

// An object with fields.
template <class T>
class FieldsRecorder : public Recorder<T> {
 public:
  using Recorder<T>::Recorder;
  std::unique_ptr<engine::Fields> GetFields() override {
    return this->template Make<RecordingFields>(L".Fields",
                                                [](T& object) { return object.GetFields(); });
  }
};

class RecordingDataFile : public FieldsRecorder<engine::DataFileObject> {
 public:
  using FieldsRecorder::FieldsRecorder;
  bool Open(Mode mode) override {
    return Do(Call(L".Open", mode), [=](Target& file) { return file.Open(mode); });
  }
  bool Read(std::int32_t record) override {
    return Do(Call(L".Read", record), [=](Target& file) { return file.Read(record); });
  }
  std::int32_t Count() override {
    return Do(L".Count", [](Target& file) { return file.Count(); });
  }
  bool FindFirst(std::wstring_view field, const Value& value) override {
    return Do(Call(L".FindFirst", field, value),
              [field = std::wstring(field), value](Target& file) {
                return file.FindFirst(field, Value(value));
              });
  }
  bool FindNext(std::wstring_view field, const Value& value) override {
    return Do(Call(L".FindNext", field, value), [field = std::wstring(field), value](Target& file) {
      return file.FindNext(field, Value(value));
    });
  }
  bool Write(std::int32_t record) override {
    return Do(Call(L".Write", record), [=](Target& file) { return file.Write(record); });
  }
  void Close() override {
    Do(L".Close", [](Target& file) { file.Close(); });
  }
};

class RecordingTransactions : public FieldsRecorder<engine::TransactionsObject> {
 public:
  using FieldsRecorder::FieldsRecorder;
  std::int32_t Count() override {
    return Do(L".Count", [](Target& list) { return list.Count(); });
  }
  void MoveFirst() override {
    Do(L".MoveFirst", [](Target& list) { list.MoveFirst(); });
  }
  bool MoveNext() override {
    return Do(L".MoveNext", [](Target& list) { return list.MoveNext(); });
  }
};

class RecordingRecord : public FieldsRecorder<engine::RecordObject> {
 public:
  using FieldsRecorder::FieldsRecorder;
  bool Find(Match match) override {
    return Do(Call(L".Find", match), [=](Target& record) { return record.Find(match); });
  }
  void MoveFirst() override {
    Do(L".MoveFirst", [](Target& record) { record.MoveFirst(); });
  }
  bool MoveNext() override {
    return Do(L".MoveNext", [](Target& record) { return record.MoveNext(); });
  }
  void AddNew() override {
    Do(L".AddNew", [](Target& record) { record.AddNew(); });
  }
  void Edit() override {
    Do(L".Edit", [](Target& record) { record.Edit(); });
  }
  bool Update() override {
    return Do(L".Update", [](Target& record) { return record.Update(); });
  }
  void SetExtraText(std::wstring_view text) override {
    Do(L".ExtraText = " + Shown(text),
       [text = std::wstring(text)](Target& record) { record.SetExtraText(text); });
  }
  std::unique_ptr<engine::TransactionsObject> Transactions() override {
    return Make<RecordingTransactions>(L".Transactions",
                                       [](Target& record) { return record.Transactions(); });
  }
};

class RecordingIndex : public Recorder<engine::IndexObject> {
 public:
  using Recorder::Recorder;
  bool Open(Mode mode) override {
    return Do(Call(L".Open", mode), [=](Target& index) { return index.Open(mode); });
  }
  void SetKey(const Value& key) override {
    Do(L".Key = " + Shown(key), [key](Target& index) { index.SetKey(Value(key)); });
  }
  bool Find(Match match) override {
    return Do(Call(L".Find", match), [=](Target& index) { return index.Find(match); });
  }
  std::int32_t Position() override {
    return Do(L".Position", [](Target& index) { return index.Position(); });
  }
  std::int32_t RecordNumber() override {
    return Do(L".RecordNumber", [](Target& index) { return index.RecordNumber(); });
  }
  void MoveTo(std::int32_t position) override {
    Do(Call(L".MoveTo", position), [=](Target& index) { index.MoveTo(position); });
  }
  void MoveFirst() override {
    Do(L".MoveFirst", [](Target& index) { index.MoveFirst(); });
  }
  bool MoveNext() override {
    return Do(L".MoveNext", [](Target& index) { return index.MoveNext(); });
  }
  void Close() override {
    Do(L".Close", [](Target& index) { index.Close(); });
  }
};

class RecordingPricing : public Recorder<engine::PricingObject> {
 public:
  using Recorder::Recorder;
  double CustomerUnitPrice(std::wstring_view acc_ref, std::wstring_view stock_code) override {
    return Do(Call(L".CustomerUnitPrice", acc_ref, stock_code),
              [account = std::wstring(acc_ref), code = std::wstring(stock_code)](Target& pricing) {
                return pricing.CustomerUnitPrice(account, code);
              });
  }
  double SupplierUnitPrice(std::wstring_view stock_code, std::wstring_view acc_ref) override {
    return Do(Call(L".SupplierUnitPrice", stock_code, acc_ref),
              [account = std::wstring(acc_ref), code = std::wstring(stock_code)](Target& pricing) {
                return pricing.SupplierUnitPrice(code, account);
              });
  }
};

class RecordingWorkspace : public engine::Workspace {
 public:
  RecordingWorkspace(std::shared_ptr<engine::Workspace> workspace, Recording& recording)
      : workspace_(std::move(workspace)), recording_(recording) {}

  std::unique_ptr<engine::DataFileObject> CreateDataFile(std::wstring_view name) override {
    return Create<RecordingDataFile>(name,
                                     [name = std::wstring(name)](engine::Workspace& workspace) {
                                       return workspace.CreateDataFile(name);
                                     });
  }
  std::unique_ptr<engine::RecordObject> CreateRecord(std::wstring_view name) override {
    return Create<RecordingRecord>(name, [name = std::wstring(name)](engine::Workspace& workspace) {
      return workspace.CreateRecord(name);
    });
  }
  std::unique_ptr<engine::IndexObject> CreateIndex(std::wstring_view name) override {
    return Create<RecordingIndex>(name, [name = std::wstring(name)](engine::Workspace& workspace) {
      return workspace.CreateIndex(name);
    });
  }
  std::unique_ptr<engine::PricingObject> CreatePricing() override {
    return Create<RecordingPricing>(
        L"Pricing", [](engine::Workspace& workspace) { return workspace.CreatePricing(); });
  }
  bool Connect(std::wstring_view data_path, std::wstring_view user, std::wstring_view password,
               std::wstring_view unique_id) override {
    return Do(Call(L"Connect", data_path, user, password, unique_id),
              [path = std::wstring(data_path), user = std::wstring(user),
               password = std::wstring(password),
               id = std::wstring(unique_id)](engine::Workspace& workspace) {
                return workspace.Connect(path, user, password, id);
              });
  }
  bool ConnectNT(std::wstring_view data_path, std::wstring_view account, std::wstring_view password,
                 std::wstring_view unique_id) override {
    return Do(Call(L"ConnectNT", data_path, account, password, unique_id),
              [path = std::wstring(data_path), account = std::wstring(account),
               password = std::wstring(password),
               id = std::wstring(unique_id)](engine::Workspace& workspace) {
                return workspace.ConnectNT(path, account, password, id);
              });
  }
  void Disconnect() override {
    Do(L"Disconnect", [](engine::Workspace& workspace) { workspace.Disconnect(); });
  }
  std::wstring Version() override {
    return Do(L"Version", [](engine::Workspace& workspace) { return workspace.Version(); });
  }

 private:
  template <class Action>
  std::invoke_result_t<Action, engine::Workspace&> Do(std::wstring_view operation,
                                                      Action action) const {
    recording_.operations.push_back(L"Workspace." + std::wstring(operation));
    recording_.steps.push_back(
        [action](engine::Workspace& workspace, ReplayedObjects&) { action(workspace); });
    return action(*workspace_);
  }

  template <class Wrapper, class Action>
  std::unique_ptr<Wrapper> Create(std::wstring_view name, Action action) const {
    auto object = Do(Call(L"CreateRecordObject", name), action);
    auto made = std::make_unique<Wrapper>(std::move(object), std::wstring(name), recording_);
    recording_.steps.back() = [slot = made->slot(), action](engine::Workspace& workspace,
                                                            ReplayedObjects& objects) {
      objects.Put(slot, action(workspace));
    };
    return made;
  }

  std::shared_ptr<engine::Workspace> workspace_;
  Recording& recording_;
};

}  // namespace

void Recording::Replay(engine::Workspace& workspace) const {
  ReplayedObjects replayed(objects);
  for (const Step& step : steps) {
    try {
      step(workspace, replayed);
    } catch (const Error&) {
      // As when it was recorded.
    }
  }
}

std::shared_ptr<engine::Workspace> Recorded(std::shared_ptr<engine::Workspace> workspace,
                                            Recording& recording) {
  return std::make_shared<RecordingWorkspace>(std::move(workspace), recording);
}

}  // namespace ard::testing
