#include "testing/recording_workspace.h"

#include <string_view>
#include <utility>

namespace ard::testing {
namespace {

using Operations = std::vector<std::wstring>;
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

// An object that is recorded under `path`, such as "StockRecord.Fields".
template <class Target>
class Recorder : public Target {
 public:
  Recorder(std::unique_ptr<Target> target, std::wstring path, Operations& operations)
      : target_(std::move(target)), path_(std::move(path)), operations_(operations) {}

 protected:
  // The object that is asked, after a line for the operation.
  Target& Note(std::wstring_view operation) const {
    operations_.push_back(path_ + std::wstring(operation));
    return *target_;
  }

  // What `make` makes of the object, recorded under `operation`.
  template <class Recording>
  std::unique_ptr<Recording> Make(std::wstring_view operation, auto make) const {
    auto made = make(Note(operation));
    return std::make_unique<Recording>(std::move(made), operations_.back(), operations_);
  }

 private:
  std::unique_ptr<Target> target_;
  std::wstring path_;
  Operations& operations_;
};

class RecordingField : public Recorder<engine::Field> {
 public:
  using Recorder::Recorder;
  std::wstring Name() override { return Note(L".Name").Name(); }
  std::int32_t Type() override { return Note(L".Type").Type(); }
  Value GetValue() override { return Note(L".Value").GetValue(); }
  void SetValue(const Value& value) override { Note(L".Value = " + Shown(value)).SetValue(value); }
};

class RecordingFields : public Recorder<engine::Fields> {
 public:
  using Recorder::Recorder;
  std::unique_ptr<engine::Field> Item(std::wstring_view name) override { return Get(name); }
  std::unique_ptr<engine::Field> Item(std::int32_t position) override { return Get(position); }
  std::int32_t Count() override { return Note(L".Count").Count(); }

 private:
  std::unique_ptr<engine::Field> Get(auto field) const {
    return Make<RecordingField>(Call(L"", field),
                                [&](engine::Fields& fields) { return fields.Item(field); });
  }
};

// An object with fields.
template <class Target>
class FieldsRecorder : public Recorder<Target> {
 public:
  using Recorder<Target>::Recorder;
  std::unique_ptr<engine::Fields> GetFields() override {
    return this->template Make<RecordingFields>(L".Fields",
                                                [](Target& target) { return target.GetFields(); });
  }
};

class RecordingDataFile : public FieldsRecorder<engine::DataFileObject> {
 public:
  using FieldsRecorder::FieldsRecorder;
  bool Open(Mode mode) override { return Note(Call(L".Open", mode)).Open(mode); }
  bool Read(std::int32_t record) override { return Note(Call(L".Read", record)).Read(record); }
  std::int32_t Count() override { return Note(L".Count").Count(); }
  bool FindFirst(std::wstring_view field, const Value& value) override {
    return Note(Call(L".FindFirst", field, value)).FindFirst(field, value);
  }
  bool FindNext(std::wstring_view field, const Value& value) override {
    return Note(Call(L".FindNext", field, value)).FindNext(field, value);
  }
  bool Write(std::int32_t record) override { return Note(Call(L".Write", record)).Write(record); }
  void Close() override { Note(L".Close").Close(); }
};

class RecordingTransactions : public FieldsRecorder<engine::TransactionsObject> {
 public:
  using FieldsRecorder::FieldsRecorder;
  std::int32_t Count() override { return Note(L".Count").Count(); }
  void MoveFirst() override { Note(L".MoveFirst").MoveFirst(); }
  bool MoveNext() override { return Note(L".MoveNext").MoveNext(); }
};

class RecordingRecord : public FieldsRecorder<engine::RecordObject> {
 public:
  using FieldsRecorder::FieldsRecorder;
  bool Find(Match match) override { return Note(Call(L".Find", match)).Find(match); }
  void MoveFirst() override { Note(L".MoveFirst").MoveFirst(); }
  bool MoveNext() override { return Note(L".MoveNext").MoveNext(); }
  void AddNew() override { Note(L".AddNew").AddNew(); }
  void Edit() override { Note(L".Edit").Edit(); }
  bool Update() override { return Note(L".Update").Update(); }
  void SetExtraText(std::wstring_view text) override {
    Note(L".ExtraText = " + Shown(text)).SetExtraText(text);
  }
  std::unique_ptr<engine::TransactionsObject> Transactions() override {
    return Make<RecordingTransactions>(
        L".Transactions", [](engine::RecordObject& record) { return record.Transactions(); });
  }
};

class RecordingIndex : public Recorder<engine::IndexObject> {
 public:
  using Recorder::Recorder;
  bool Open(Mode mode) override { return Note(Call(L".Open", mode)).Open(mode); }
  void SetKey(const Value& key) override { Note(L".Key = " + Shown(key)).SetKey(key); }
  bool Find(Match match) override { return Note(Call(L".Find", match)).Find(match); }
  std::int32_t Position() override { return Note(L".Position").Position(); }
  std::int32_t RecordNumber() override { return Note(L".RecordNumber").RecordNumber(); }
  void MoveTo(std::int32_t position) override { Note(Call(L".MoveTo", position)).MoveTo(position); }
  void MoveFirst() override { Note(L".MoveFirst").MoveFirst(); }
  bool MoveNext() override { return Note(L".MoveNext").MoveNext(); }
  void Close() override { Note(L".Close").Close(); }
};

class RecordingPricing : public Recorder<engine::PricingObject> {
 public:
  using Recorder::Recorder;
  double CustomerUnitPrice(std::wstring_view acc_ref, std::wstring_view stock_code) override {
    return Note(Call(L".CustomerUnitPrice", acc_ref, stock_code))
        .CustomerUnitPrice(acc_ref, stock_code);
  }
  double SupplierUnitPrice(std::wstring_view stock_code, std::wstring_view acc_ref) override {
    return Note(Call(L".SupplierUnitPrice", stock_code, acc_ref))
        .SupplierUnitPrice(stock_code, acc_ref);
  }
};

class RecordingWorkspace : public engine::Workspace {
 public:
  RecordingWorkspace(std::shared_ptr<engine::Workspace> workspace, Operations& operations)
      : workspace_(std::move(workspace)), operations_(operations) {}

  std::unique_ptr<engine::DataFileObject> CreateDataFile(std::wstring_view name) override {
    return Create<RecordingDataFile>(name, [&] { return workspace_->CreateDataFile(name); });
  }
  std::unique_ptr<engine::RecordObject> CreateRecord(std::wstring_view name) override {
    return Create<RecordingRecord>(name, [&] { return workspace_->CreateRecord(name); });
  }
  std::unique_ptr<engine::IndexObject> CreateIndex(std::wstring_view name) override {
    return Create<RecordingIndex>(name, [&] { return workspace_->CreateIndex(name); });
  }
  std::unique_ptr<engine::PricingObject> CreatePricing() override {
    return Create<RecordingPricing>(L"Pricing", [&] { return workspace_->CreatePricing(); });
  }
  bool Connect(std::wstring_view data_path, std::wstring_view user, std::wstring_view password,
               std::wstring_view unique_id) override {
    return Note(Call(L"Connect", data_path, user, password, unique_id))
        .Connect(data_path, user, password, unique_id);
  }
  bool ConnectNT(std::wstring_view data_path, std::wstring_view account, std::wstring_view password,
                 std::wstring_view unique_id) override {
    return Note(Call(L"ConnectNT", data_path, account, password, unique_id))
        .ConnectNT(data_path, account, password, unique_id);
  }
  void Disconnect() override { Note(L"Disconnect").Disconnect(); }
  std::wstring Version() override { return Note(L"Version").Version(); }

 private:
  engine::Workspace& Note(std::wstring_view operation) const {
    operations_.push_back(L"Workspace." + std::wstring(operation));
    return *workspace_;
  }

  template <class Recording>
  std::unique_ptr<Recording> Create(std::wstring_view name, auto create) const {
    Note(Call(L"CreateRecordObject", name));
    return std::make_unique<Recording>(create(), std::wstring(name), operations_);
  }

  std::shared_ptr<engine::Workspace> workspace_;
  Operations& operations_;
};

}  // namespace

std::shared_ptr<engine::Workspace> Recorded(std::shared_ptr<engine::Workspace> workspace,
                                            std::vector<std::wstring>& operations) {
  return std::make_shared<RecordingWorkspace>(std::move(workspace), operations);
}

}  // namespace ard::testing
