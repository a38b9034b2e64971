// ArdSimulator.Engine: the simulated accounts engine as a host creates it.
#ifndef ARD_SIMULATOR_WINDOWS_ENGINE_OBJECT_H_
#define ARD_SIMULATOR_WINDOWS_ENGINE_OBJECT_H_

#include <memory>

#include "simulator/simulator.h"
#include "simulator/windows/automation.h"

namespace ard::simulator {

// An engine without a company. Its members, beside the accounts engine's own `LastError`:
//   Open(folder)             opens the company in that folder; True, or an error that says what is
//                            wrong with it
//   OpenSynthetic(accounts)  opens a made-up company with that many customers; True
//   OpenSyntheticStock(accounts, products)
//                            the same, with that many products, too
//   Workspace                the workspace of the company, for the library's ArdWorkspace
//   FailFrom(n, persist)     the n-th operation from now on fails, and all later ones if `persist`
//                            is True; n = 0: none fails
//   Operations, RecordsRead  how many operations engine objects have carried out and how many
//                            records they have read since the company was opened
//   OpenFiles                how many of their files are open
//   LivingObjects            how many engine objects, and automation objects that stand for them,
//                            have not been released; the workspace and the engine do not count
//   User, Disconnects        who is logged on through the workspace, "" for nobody, and how often
//   it
//                            has been asked to log off
//   HoldExclusively(hold)    holds the company's "queue.dta" as a single-user copy of the accounts
//                            program does, or lets go of it
ComPtr<IDispatch> CreateEngineObject();
// One whose company is open already.
ComPtr<IDispatch> CreateEngineObject(std::unique_ptr<Simulator> opened);

}  // namespace ard::simulator

#endif  // ARD_SIMULATOR_WINDOWS_ENGINE_OBJECT_H_
