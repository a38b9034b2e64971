#include "simulator/fields.h"

#include <string>
#include <utility>
#include <vector>

namespace ard::simulator {
namespace {

Table& TableOf(const CurrentRecord& record) {
  if (record.table() == nullptr) throw Error(kErrorFailed, L"The file is not open.");
  return *record.table();
}

// What a collection and its fields show: the current record, or a snapshot of it.
class Shown {
 public:
  Shown(std::shared_ptr<CurrentRecord> record, bool is_snapshot)
      : record_(std::move(record)), taken_in_(record_->state()) {
    if (!is_snapshot || record_->table() == nullptr) return;
    for (std::size_t i = 0; i < record_->table()->columns().size(); ++i) {
      snapshot_.push_back(record_->record() == 0 ? Value(Null()) : record_->Get(i));
    }
  }

  Table& table() const { return TableOf(*record_); }
  Value Get(std::size_t column) const {
    table();
    return snapshot_.empty() ? record_->Get(column) : snapshot_[column];
  }
  void Set(std::size_t column, const Value& value) {
    table();
    if (snapshot_.empty()) return record_->Set(column, value);
    if (taken_in_ != record_->state()) return;
    record_->Set(column, value);
    snapshot_[column] = record_->Get(column);
  }

 private:
  std::shared_ptr<CurrentRecord> record_;
  std::int64_t taken_in_;
  std::vector<Value> snapshot_;
};

class SimulatedField : public engine::Field, private EngineObject {
 public:
  SimulatedField(std::shared_ptr<EngineState> state, std::shared_ptr<Shown> shown,
                 std::size_t column)
      : EngineObject(std::move(state)), shown_(std::move(shown)), column_(column) {}

  std::wstring Name() override {
    return Run([&] { return shown_->table().columns()[column_].name; });
  }
  std::int32_t Type() override {
    return Run([&] { return static_cast<std::int32_t>(shown_->table().columns()[column_].type); });
  }
  Value GetValue() override {
    return Run([&] { return shown_->Get(column_); });
  }
  void SetValue(const Value& value) override {
    Run([&] { shown_->Set(column_, value); });
  }

 private:
  std::shared_ptr<Shown> shown_;
  std::size_t column_;
};

class SimulatedFields : public engine::Fields, private EngineObject {
 public:
  SimulatedFields(std::shared_ptr<EngineState> state, std::shared_ptr<CurrentRecord> record)
      : EngineObject(std::move(state)),
        shown_(std::make_shared<Shown>(std::move(record), this->state()->snapshot_fields)) {}

  std::unique_ptr<engine::Field> Item(std::wstring_view name) override {
    return Run([&] { return Make(shown_->table().columns().Require(name)); });
  }
  std::unique_ptr<engine::Field> Item(std::int32_t position) override {
    return Run([&] {
      if (position < 1 || position > Size()) {
        throw Error(kErrorUnknownName, L"There is no field " + std::to_wstring(position) + L".");
      }
      return Make(static_cast<std::size_t>(position) - 1);
    });
  }
  std::int32_t Count() override {
    return Run([&] { return Size(); });
  }

 private:
  std::int32_t Size() const { return static_cast<std::int32_t>(shown_->table().columns().size()); }
  std::unique_ptr<engine::Field> Make(std::size_t column) const {
    return std::make_unique<SimulatedField>(state(), shown_, column);
  }

  std::shared_ptr<Shown> shown_;
};

}  // namespace

std::unique_ptr<engine::Fields> MakeFields(std::shared_ptr<EngineState> state,
                                           std::shared_ptr<CurrentRecord> record) {
  return std::make_unique<SimulatedFields>(std::move(state), std::move(record));
}

}  // namespace ard::simulator
