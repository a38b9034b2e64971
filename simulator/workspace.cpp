#include <optional>
#include <string>
#include <utility>

#include "simulator/catalogue.h"
#include "simulator/engine_objects.h"

namespace ard::simulator {
namespace {

constexpr std::wstring_view kVersion = L"10.0";

[[noreturn]] void ThrowUnknown(std::wstring_view name) {
  throw Error(kErrorUnknownName, L"The engine has no object " + std::wstring(name) + L".");
}

class SimulatedWorkspace : public engine::Workspace {
 public:
  explicit SimulatedWorkspace(std::shared_ptr<EngineState> state) : state_(std::move(state)) {}

  std::unique_ptr<engine::DataFileObject> CreateDataFile(std::wstring_view name) override {
    return state_->Run([&] { return MakeDataFile(state_, TableFor(name, ObjectKind::kDataFile)); });
  }
  std::unique_ptr<engine::RecordObject> CreateRecord(std::wstring_view name) override {
    return state_->Run([&] { return MakeRecord(state_, TableFor(name, ObjectKind::kRecord)); });
  }
  std::unique_ptr<engine::IndexObject> CreateIndex(std::wstring_view name) override {
    return state_->Run([&] { return MakeIndex(state_, TableFor(name, ObjectKind::kIndex)); });
  }
  std::unique_ptr<engine::PricingObject> CreatePricing() override {
    return state_->Run([&] { return HasPricing() ? MakePricing(state_) : nullptr; });
  }

  bool Connect(std::wstring_view, std::wstring_view user, std::wstring_view password,
               std::wstring_view) override {
    return state_->Run([&] { return Answer(state_->logons.Connect(user, password)); });
  }
  bool ConnectNT(std::wstring_view, std::wstring_view account, std::wstring_view,
                 std::wstring_view) override {
    return state_->Run([&] { return Answer(state_->logons.ConnectNT(account)); });
  }
  void Disconnect() override {
    state_->Run([&] { state_->logons.Disconnect(); });
  }
  std::wstring Version() override {
    return state_->Run([] { return std::wstring(kVersion); });
  }

 private:
  Table* TableFor(std::wstring_view name, ObjectKind kind) const {
    const ObjectName found = LookUp(name);
    if (found.kind != kind) ThrowUnknown(name);
    return state_->company->Find(found.table);
  }

  // A company's set-up tells whether its engine has a pricing service.
  bool HasPricing() const {
    const Table* setup = state_->company->Find(L"SetupData");
    const int column = setup == nullptr ? -1 : setup->columns().Find(L"PRICING_SERVICE");
    return column >= 0 && setup->size() > 0 &&
           setup->Cell(1, static_cast<std::size_t>(column)).ToBoolean();
  }

  // Whether the user has been logged on; why not is the last error.
  bool Answer(const std::optional<Error>& refusal) { return !refusal || state_->Refuse(*refusal); }

  std::shared_ptr<EngineState> state_;
};

class SimulatedError : public engine::EngineError, private EngineObject {
 public:
  explicit SimulatedError(std::shared_ptr<EngineState> state)
      : EngineObject(std::move(state)), error_(this->state()->last_error.value_or(Error(0, L""))) {}

  std::int32_t Number() override {
    return state()->RunAside([&] { return error_.number(); });
  }
  std::wstring Text() override {
    return state()->RunAside([&] { return error_.text(); });
  }

 private:
  Error error_;
};

}  // namespace

std::shared_ptr<engine::Workspace> MakeWorkspace(std::shared_ptr<EngineState> state) {
  return std::make_shared<SimulatedWorkspace>(std::move(state));
}

std::unique_ptr<engine::EngineError> MakeLastError(std::shared_ptr<EngineState> state) {
  return std::make_unique<SimulatedError>(std::move(state));
}

}  // namespace ard::simulator
