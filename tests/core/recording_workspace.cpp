#include "tests/core/recording_workspace.h"

#include <optional>
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

// "Open(64)"; "Close" without arguments.
std::wstring Call(std::wstring_view member, const auto&... arguments) {
  std::wstring call(member);
  if constexpr (sizeof...(arguments) > 0) {
    std::wstring_view separator = L"(";
    ((call.append(separator).append(Shown(arguments)), separator = L", "), ...);
    call += L")";
  }
  return call;
}

// What a step keeps of an argument, and passes on: values are made anew at each operation, as a
// caller makes them.
template <class T>
T Kept(const T& argument) {
  return argument;
}
std::wstring Kept(std::wstring_view text) { return std::wstring(text); }
template <class T>
const T& Anew(const T& kept) {
  return kept;
}
Value Anew(const Value& kept) {
  const auto* const text = std::get_if<std::wstring>(&kept.storage());
  return text ? Value(std::wstring_view(*text)) : kept;
}

// Calls the method with these arguments.
template <auto kMethod>
auto Action(const auto&... arguments) {
  return [... kept = Kept(arguments)](auto& target) { return (target.*kMethod)(Anew(kept)...); };
}

using Slots = Recording::Slots;

// What stands in a replay for the object of that slot.
template <class T>
T& Replayed(engine::Workspace& workspace, void** slots, std::size_t slot) {
  if constexpr (std::is_same_v<T, engine::Workspace>) {
    return workspace;
  } else {
    return *static_cast<T*>(slots[slot]);
  }
}

// An object that is recorded under `path`, such as "StockRecord.Fields".
template <class T>
class Recorder : public T {
 public:
  using Target = T;

  Recorder(std::shared_ptr<Target> target, std::wstring path, Recording& recording)
      : target_(std::move(target)), path_(std::move(path)), recording_(recording) {
    if constexpr (kIsWorkspace) return;
    slot_ = recording.release.size();
    recording.release.push_back([](void* object) { delete static_cast<T*>(object); });
  }
  ~Recorder() override {
    if (kIsWorkspace || is_released_) return;
    recording_.steps.push_back([slot = slot_](engine::Workspace&, void** slots) {
      delete static_cast<T*>(std::exchange(slots[slot], nullptr));
    });
  }

  std::size_t slot() const { return slot_; }

 protected:
  std::size_t steps() const { return recording_.steps.size(); }
  // The steps from `first` on become one, which releases the object, too.
  void Fuse(std::size_t first, const Recording::Step& step) {
    recording_.steps.erase(recording_.steps.begin() + static_cast<std::ptrdiff_t>(first),
                           recording_.steps.end());
    recording_.steps.push_back(step);
    is_released_ = true;
  }

  // Notes the call of a method, and carries it out.
  template <auto kMethod>
  auto Do(std::wstring_view member, const auto&... arguments) {
    return Note(Call(member, arguments...), Action<kMethod>(arguments...));
  }
  // The same for the setting of a property.
  template <auto kMethod>
  void Put(std::wstring_view property, const auto& value) {
    Note(std::wstring(property) + L" = " + Shown(value), Action<kMethod>(value));
  }
  // The same for a method that hands out an object, which is recorded under the call.
  template <class Wrapper, auto kMethod>
  std::unique_ptr<Wrapper> Make(std::wstring_view member, const auto&... arguments) {
    const std::wstring call = Call(member, arguments...);
    return MakeAt<Wrapper>(path_ + call, call, Action<kMethod>(arguments...));
  }
  // The same, recorded under another path.
  template <class Wrapper>
  std::unique_ptr<Wrapper> MakeAt(std::wstring path, const std::wstring& call, auto action) {
    auto object = Note(call, action);
    if (!object) return nullptr;
    auto made = std::make_unique<Wrapper>(std::move(object), std::move(path), recording_);
    recording_.steps.back() = [slot = slot_, made = made->slot(), action](
                                  engine::Workspace& workspace, void** slots) {
      slots[made] = action(Replayed<T>(workspace, slots, slot)).release();
    };
    return made;
  }

 private:
  static constexpr bool kIsWorkspace = std::is_same_v<T, engine::Workspace>;

  auto Note(const std::wstring& call, auto action) {
    recording_.operations.push_back(path_ + call);
    recording_.steps.push_back([slot = slot_, action](engine::Workspace& workspace, void** slots) {
      action(Replayed<T>(workspace, slots, slot));
    });
    return action(*target_);
  }

  std::shared_ptr<Target> target_;
  std::wstring path_;
  Recording& recording_;
  std::size_t slot_ = 0;
  bool is_released_ = false;  // by a step that has been recorded
};

// To take a field by its name, to read or set it once and to release it is one step, as it is one
// expression to a caller: beside it, what a replay takes for each step of its own would show.
class RecordingField : public Recorder<engine::Field> {
 public:
  using Recorder::Recorder;
  ~RecordingField() override {
    if (whole_ && steps() == taken_ + 1) Fuse(taken_ - 1, *whole_);
  }
  // By the last step, out of the collection in that slot.
  void TakenFrom(std::size_t collection, std::wstring_view name) {
    collection_ = collection;
    name_ = name;
    taken_ = steps();
  }

  std::wstring Name() override { return Do<&Target::Name>(L".Name"); }
  std::int32_t Type() override { return Do<&Target::Type>(L".Type"); }
  Value GetValue() override {
    NoteWhole([](engine::Field& field) { field.GetValue(); });
    return Do<&Target::GetValue>(L".Value");
  }
  void SetValue(const Value& value) override {
    NoteWhole([value](engine::Field& field) { field.SetValue(Anew(value)); });
    Put<&Target::SetValue>(L".Value", value);
  }

 private:
  void NoteWhole(auto action) {
    if (taken_ == 0) return;
    whole_ = [collection = collection_, name = name_, action](engine::Workspace&, void** slots) {
      action(*static_cast<engine::Fields*>(slots[collection])->Item(name));
    };
  }

  std::size_t collection_ = 0;
  std::wstring name_;
  std::size_t taken_ = 0;  // so many steps had been recorded then
  std::optional<Recording::Step> whole_;
};

class RecordingFields : public Recorder<engine::Fields> {
  using ByName = std::unique_ptr<engine::Field> (Target::*)(std::wstring_view);
  using ByPosition = std::unique_ptr<engine::Field> (Target::*)(std::int32_t);

 public:
  using Recorder::Recorder;
  std::unique_ptr<engine::Field> Item(std::wstring_view name) override {
    auto field = Make<RecordingField, static_cast<ByName>(&Target::Item)>(L"", name);
    if (field) field->TakenFrom(slot(), name);
    return field;
  }
  std::unique_ptr<engine::Field> Item(std::int32_t position) override {
    return Make<RecordingField, static_cast<ByPosition>(&Target::Item)>(L"", position);
  }
  std::int32_t Count() override { return Do<&Target::Count>(L".Count"); }
};

// An object with fields.
template <class T>
class FieldsRecorder : public Recorder<T> {
 public:
  using Recorder<T>::Recorder;
  std::unique_ptr<engine::Fields> GetFields() override {
    return this->template Make<RecordingFields, &T::GetFields>(L".Fields");
  }
};

class RecordingDataFile : public FieldsRecorder<engine::DataFileObject> {
 public:
  using FieldsRecorder::FieldsRecorder;
  bool Open(Mode mode) override { return Do<&Target::Open>(L".Open", mode); }
  bool Read(std::int32_t record) override { return Do<&Target::Read>(L".Read", record); }
  std::int32_t Count() override { return Do<&Target::Count>(L".Count"); }
  bool FindFirst(std::wstring_view field, const Value& value) override {
    return Do<&Target::FindFirst>(L".FindFirst", field, value);
  }
  bool FindNext(std::wstring_view field, const Value& value) override {
    return Do<&Target::FindNext>(L".FindNext", field, value);
  }
  bool Write(std::int32_t record) override { return Do<&Target::Write>(L".Write", record); }
  void Close() override { Do<&Target::Close>(L".Close"); }
};

class RecordingTransactions : public FieldsRecorder<engine::TransactionsObject> {
 public:
  using FieldsRecorder::FieldsRecorder;
  std::int32_t Count() override { return Do<&Target::Count>(L".Count"); }
  void MoveFirst() override { Do<&Target::MoveFirst>(L".MoveFirst"); }
  bool MoveNext() override { return Do<&Target::MoveNext>(L".MoveNext"); }
};

class RecordingRecord : public FieldsRecorder<engine::RecordObject> {
 public:
  using FieldsRecorder::FieldsRecorder;
  bool Find(Match match) override { return Do<&Target::Find>(L".Find", match); }
  void MoveFirst() override { Do<&Target::MoveFirst>(L".MoveFirst"); }
  bool MoveNext() override { return Do<&Target::MoveNext>(L".MoveNext"); }
  void AddNew() override { Do<&Target::AddNew>(L".AddNew"); }
  void Edit() override { Do<&Target::Edit>(L".Edit"); }
  bool Update() override { return Do<&Target::Update>(L".Update"); }
  void SetExtraText(std::wstring_view text) override {
    Put<&Target::SetExtraText>(L".ExtraText", text);
  }
  std::unique_ptr<engine::TransactionsObject> Transactions() override {
    return Make<RecordingTransactions, &Target::Transactions>(L".Transactions");
  }
};

class RecordingIndex : public Recorder<engine::IndexObject> {
 public:
  using Recorder::Recorder;
  bool Open(Mode mode) override { return Do<&Target::Open>(L".Open", mode); }
  void SetKey(const Value& key) override { Put<&Target::SetKey>(L".Key", key); }
  bool Find(Match match) override { return Do<&Target::Find>(L".Find", match); }
  std::int32_t Position() override { return Do<&Target::Position>(L".Position"); }
  std::int32_t RecordNumber() override { return Do<&Target::RecordNumber>(L".RecordNumber"); }
  void MoveTo(std::int32_t position) override { Do<&Target::MoveTo>(L".MoveTo", position); }
  void MoveFirst() override { Do<&Target::MoveFirst>(L".MoveFirst"); }
  bool MoveNext() override { return Do<&Target::MoveNext>(L".MoveNext"); }
  void Close() override { Do<&Target::Close>(L".Close"); }
};

class RecordingPricing : public Recorder<engine::PricingObject> {
 public:
  using Recorder::Recorder;
  double CustomerUnitPrice(std::wstring_view acc_ref, std::wstring_view stock_code) override {
    return Do<&Target::CustomerUnitPrice>(L".CustomerUnitPrice", acc_ref, stock_code);
  }
  double SupplierUnitPrice(std::wstring_view stock_code, std::wstring_view acc_ref) override {
    return Do<&Target::SupplierUnitPrice>(L".SupplierUnitPrice", stock_code, acc_ref);
  }
};

class RecordingWorkspace : public Recorder<engine::Workspace> {
 public:
  RecordingWorkspace(std::shared_ptr<engine::Workspace> workspace, Recording& recording)
      : Recorder(std::move(workspace), L"Workspace", recording) {}

  std::unique_ptr<engine::DataFileObject> CreateDataFile(std::wstring_view name) override {
    return Create<RecordingDataFile>(name, Action<&Target::CreateDataFile>(name));
  }
  std::unique_ptr<engine::RecordObject> CreateRecord(std::wstring_view name) override {
    return Create<RecordingRecord>(name, Action<&Target::CreateRecord>(name));
  }
  std::unique_ptr<engine::IndexObject> CreateIndex(std::wstring_view name) override {
    return Create<RecordingIndex>(name, Action<&Target::CreateIndex>(name));
  }
  std::unique_ptr<engine::PricingObject> CreatePricing() override {
    return Create<RecordingPricing>(L"Pricing", Action<&Target::CreatePricing>());
  }
  bool Connect(std::wstring_view data_path, std::wstring_view user, std::wstring_view password,
               std::wstring_view unique_id) override {
    return Do<&Target::Connect>(L".Connect", data_path, user, password, unique_id);
  }
  bool ConnectNT(std::wstring_view data_path, std::wstring_view account, std::wstring_view password,
                 std::wstring_view unique_id) override {
    return Do<&Target::ConnectNT>(L".ConnectNT", data_path, account, password, unique_id);
  }
  void Disconnect() override { Do<&Target::Disconnect>(L".Disconnect"); }
  std::wstring Version() override { return Do<&Target::Version>(L".Version"); }

 private:
  template <class Wrapper>
  std::unique_ptr<Wrapper> Create(std::wstring_view name, auto action) {
    return MakeAt<Wrapper>(std::wstring(name), Call(L".CreateRecordObject", name), action);
  }
};

}  // namespace

void Recording::Replay(engine::Workspace& workspace, Slots& slots, std::size_t first,
                       std::size_t last) const {
  slots.resize(release.size());
  const Step* step = steps.data() + first;
  const Step* const end = steps.data() + last;
  void** const objects = slots.data();
  while (step != end) {
    try {
      // Steps in turn come from different places, so that the processor foresees where they go.
#pragma GCC unroll 16
      while (step != end) (*step++)(workspace, objects);
    } catch (const Error&) {
      // As when it was recorded.
    }
  }
}

void Recording::Release(Slots& slots) const {
  for (std::size_t i = slots.size(); i > 0; --i) {
    if (slots[i - 1]) release[i - 1](std::exchange(slots[i - 1], nullptr));
  }
}

std::shared_ptr<engine::Workspace> Recorded(std::shared_ptr<engine::Workspace> workspace,
                                            Recording& recording) {
  return std::make_shared<RecordingWorkspace>(std::move(workspace), recording);
}

}  // namespace ard::testing
