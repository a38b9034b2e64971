#include "simulator/windows/engine_object.h"

#include <filesystem>
#include <utility>

#include "frame/error.h"
#include "simulator/windows/adapters.h"

namespace ard::simulator {
namespace {

// An open company.
struct Session {
  explicit Session(std::unique_ptr<Simulator> opened)
      : simulator(std::move(opened)), workspace(Expose(simulator->workspace(), live)) {}

  std::unique_ptr<Simulator> simulator;
  LiveCount live = std::make_shared<std::int32_t>(0);
  ComPtr<IDispatch> workspace;
};

struct EngineTarget {
  std::unique_ptr<Session> session;

  Session& Opened() {
    if (!session) throw Error(kErrorFailed, L"No company has been opened.");
    return *session;
  }
  Simulator& simulator() { return *Opened().simulator; }

  void Open(Call& call, std::unique_ptr<Simulator> simulator) {
    session = std::make_unique<Session>(std::move(simulator));
    call.Return(true);
  }
};

constexpr Member<EngineTarget> kEngineMembers[] = {
    {L"LastError", 2, kCall, 0,
     [](EngineTarget& self, Call& call) {
       call.Return(Expose(self.simulator().LastError(), self.Opened().live));
     }},
    {L"Open", 100, kCall, 1,
     [](EngineTarget& self, Call& call) {
       self.Open(call, Simulator::Open(std::filesystem::path(call.Text(0))));
     }},
    {L"OpenSynthetic", 101, kCall, 1,
     [](EngineTarget& self, Call& call) {
       self.Open(call, Simulator::OpenSynthetic(call.Long(0)));
     }},
    {L"OpenSyntheticStock", 108, kCall, 2,
     [](EngineTarget& self, Call& call) {
       self.Open(call, Simulator::OpenSynthetic(call.Long(0), call.Long(1)));
     }},
    {L"Workspace", 102, kCall, 0,
     [](EngineTarget& self, Call& call) { call.Return(self.Opened().workspace); }},
    {L"FailFrom", 103, kCall, 2,
     [](EngineTarget& self, Call& call) {
       self.simulator().faults().FailFrom(call.Long(0), call.Boolean(1));
     }},
    // As doubles, because the counts can grow beyond a Long.
    {L"Operations", 104, kCall, 0,
     [](EngineTarget& self, Call& call) {
       call.Return(static_cast<double>(self.simulator().operations()));
     }},
    {L"RecordsRead", 105, kCall, 0,
     [](EngineTarget& self, Call& call) {
       call.Return(static_cast<double>(self.simulator().records_read()));
     }},
    {L"OpenFiles", 106, kCall, 0,
     [](EngineTarget& self, Call& call) { call.Return(self.simulator().counters().open_files); }},
    {L"LivingObjects", 107, kCall, 0,
     [](EngineTarget& self, Call& call) {
       call.Return(self.simulator().counters().living_objects + *self.Opened().live);
     }},
    {L"User", 109, kCall, 0,
     [](EngineTarget& self, Call& call) { call.Return(self.simulator().user()); }},
    {L"Disconnects", 110, kCall, 0,
     [](EngineTarget& self, Call& call) {
       call.Return(static_cast<double>(self.simulator().disconnects()));
     }},
    {L"HoldExclusively", 111, kCall, 1,
     [](EngineTarget& self, Call& call) { self.simulator().HoldExclusively(call.Boolean(0)); }},
    {L"SnapshotFields", 112, kCall, 1,
     [](EngineTarget& self, Call& call) { self.simulator().SnapshotFields(call.Boolean(0)); }},
    {L"TrustWindows", 113, kCall, 1,
     [](EngineTarget& self, Call& call) { self.simulator().TrustWindows(call.Boolean(0)); }},
};

}  // namespace

ComPtr<IDispatch> CreateEngineObject() {
  return Automation<EngineTarget>::Create(kEngineMembers, {});
}

ComPtr<IDispatch> CreateEngineObject(std::unique_ptr<Simulator> opened) {
  return Automation<EngineTarget>::Create(kEngineMembers,
                                          {std::make_unique<Session>(std::move(opened))});
}

}  // namespace ard::simulator
