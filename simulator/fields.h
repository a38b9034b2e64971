// The engine's fields collection and its fields, over the current record of a file or record.
#ifndef ARD_SIMULATOR_FIELDS_H_
#define ARD_SIMULATOR_FIELDS_H_

#include <memory>

#include "engine/seam.h"
#include "simulator/current_record.h"
#include "simulator/engine_state.h"

namespace ard::simulator {

// They share `record` with the object that they come from, and follow it; snapshots hold the record
// that was current when the collection was taken, and what is set on them later is lost. Once the
// object has been closed or released, their operations throw Error.
std::unique_ptr<engine::Fields> MakeFields(std::shared_ptr<EngineState> state,
                                           std::shared_ptr<CurrentRecord> record);

}  // namespace ard::simulator

#endif  // ARD_SIMULATOR_FIELDS_H_
