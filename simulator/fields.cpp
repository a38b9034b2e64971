#include "simulator/fields.h"

#include <utility>

namespace ard::simulator {
namespace {

Table& TableOf(const CurrentRecord& record) {
  if (record.table() == nullptr) throw Error(kErrorFailed, L"The file is not open.");
  return *record.table();
}

class SimulatedField : public engine::Field, private EngineObject {
 public:
  SimulatedField(std::shared_ptr<EngineState> state, std::shared_ptr<CurrentRecord> record,
                 std::size_t column)
      : EngineObject(std::move(state)), record_(std::move(record)), column_(column) {}

  std::wstring Name() override {
    return Run([&] { return TableOf(*record_).columns()[column_].name; });
  }
  std::int32_t Type() override {
    return Run(
        [&] { return static_cast<std::int32_t>(TableOf(*record_).columns()[column_].type); });
  }
  Value GetValue() override {
    return Run([&] {
      TableOf(*record_);
      return record_->Get(column_);
    });
  }
  void SetValue(const Value& value) override {
    Run([&] {
      TableOf(*record_);
      record_->Set(column_, value);
    });
  }

 private:
  std::shared_ptr<CurrentRecord> record_;
  std::size_t column_;
};

class SimulatedFields : public engine::Fields, private EngineObject {
 public:
  SimulatedFields(std::shared_ptr<EngineState> state, std::shared_ptr<CurrentRecord> record)
      : EngineObject(std::move(state)), record_(std::move(record)) {}

  std::unique_ptr<engine::Field> Item(std::wstring_view name) override {
    return Run([&] { return Make(TableOf(*record_).columns().Require(name)); });
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
  std::int32_t Size() const {
    return static_cast<std::int32_t>(TableOf(*record_).columns().size());
  }
  std::unique_ptr<engine::Field> Make(std::size_t column) const {
    return std::make_unique<SimulatedField>(state(), record_, column);
  }

  std::shared_ptr<CurrentRecord> record_;
};

}  // namespace

std::unique_ptr<engine::Fields> MakeFields(std::shared_ptr<EngineState> state,
                                           std::shared_ptr<CurrentRecord> record) {
  return std::make_unique<SimulatedFields>(std::move(state), std::move(record));
}

}  // namespace ard::simulator
