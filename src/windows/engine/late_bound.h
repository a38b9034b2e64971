// The accounts engine over late-bound automation: each operation is invoked by the dispatch id that
// the engine publishes for it (windows/engine/dispatch_ids.h). The few members that have none are
// looked up by name once per type of object, and remembered with the workspace, so that two engines
// in one process never mix.
#ifndef ARD_WINDOWS_ENGINE_LATE_BOUND_H_
#define ARD_WINDOWS_ENGINE_LATE_BOUND_H_

#include <windows.h>
// After windows.h.
#include <oaidl.h>

#include <memory>

#include "engine/seam.h"

namespace ard::windows {

// The engine's workspace, or its engine object, behind the seam; null for null. A reference to the
// object is held until the result, and everything created through it, is gone.
std::shared_ptr<engine::Workspace> WrapWorkspace(IDispatch* workspace);
std::shared_ptr<engine::Engine> WrapEngine(IDispatch* engine);

// A record that a host has handed in, behind the seam; null for null. A reference to it is held
// until the result, and everything that comes from it, is gone.
std::unique_ptr<engine::RecordObject> WrapRecord(IDispatch* record);

}  // namespace ard::windows

#endif  // ARD_WINDOWS_ENGINE_LATE_BOUND_H_
