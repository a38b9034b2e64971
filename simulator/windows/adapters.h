// Engine objects of the seam as automation objects, with the dispatch ids of the accounts engine.
#ifndef ARD_SIMULATOR_WINDOWS_ADAPTERS_H_
#define ARD_SIMULATOR_WINDOWS_ADAPTERS_H_

#include <cstdint>
#include <memory>

#include "engine/seam.h"
#include "simulator/windows/automation.h"

namespace ard::simulator {

// How many automation objects live that a workspace or an engine has given out.
using LiveCount = std::shared_ptr<std::int32_t>;

// A workspace: every object created through it counts in `live`, and so do their fields.
// CreateRecordObject tells by the end of the name what to create: "...Index" an index, "...Record"
// a record, everything else but "Pricing" a data file.
ComPtr<IDispatch> Expose(std::shared_ptr<engine::Workspace> workspace, LiveCount live);

// An error object.
ComPtr<IDispatch> Expose(std::unique_ptr<engine::EngineError> error, const LiveCount& live);

}  // namespace ard::simulator

#endif  // ARD_SIMULATOR_WINDOWS_ADAPTERS_H_
