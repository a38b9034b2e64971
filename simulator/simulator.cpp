#include "simulator/simulator.h"

#include <utility>

#include "simulator/company.h"
#include "simulator/engine_objects.h"
#include "simulator/engine_state.h"
#include "simulator/synthetic_ledger.h"

namespace ard::simulator {

std::unique_ptr<Simulator> Simulator::Open(const std::filesystem::path& folder) {
  return std::make_unique<Simulator>(Company::Load(folder));
}

std::unique_ptr<Simulator> Simulator::OpenSynthetic(std::int32_t accounts, std::int32_t products) {
  return std::make_unique<Simulator>(MakeSyntheticCompany(accounts, products));
}

Simulator::Simulator(std::unique_ptr<Company> company)
    : state_(std::make_shared<EngineState>(std::move(company))) {}

Simulator::~Simulator() = default;

std::shared_ptr<engine::Workspace> Simulator::workspace() { return MakeWorkspace(state_); }

std::unique_ptr<engine::EngineError> Simulator::LastError() {
  return state_->RunAside([&] { return MakeLastError(state_); });
}

void Simulator::SnapshotFields(bool snapshot) { state_->snapshot_fields = snapshot; }
Counters Simulator::counters() const { return state_->counters; }
FaultPlan& Simulator::faults() { return state_->faults; }
std::int64_t Simulator::operations() const { return state_->operations; }
std::int64_t Simulator::records_read() const { return state_->records_read; }
const std::wstring& Simulator::user() const { return state_->logons.user(); }
std::int64_t Simulator::disconnects() const { return state_->logons.disconnects(); }
void Simulator::TrustWindows(bool trust) { state_->logons.TrustWindows(trust); }
void Simulator::HoldExclusively(bool hold) { state_->logons.HoldExclusively(hold); }
Company& Simulator::company() { return *state_->company; }

}  // namespace ard::simulator
