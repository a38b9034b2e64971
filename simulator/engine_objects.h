// The engine's objects over one table of the company; a null table is a file that does not exist.
#ifndef ARD_SIMULATOR_ENGINE_OBJECTS_H_
#define ARD_SIMULATOR_ENGINE_OBJECTS_H_

#include <memory>
#include <string_view>

#include "engine/seam.h"
#include "simulator/engine_state.h"
#include "simulator/table.h"

namespace ard::simulator {

// Opened, a data file stands on its first record; a FindFirst or FindNext that finds nothing leaves
// it where it stood. They walk in key order when `field` is the first of the key, else in record
// order.
std::unique_ptr<engine::DataFileObject> MakeDataFile(std::shared_ptr<EngineState> state,
                                                     Table* table);

// Opened, an index stands on its first entry. Find that fails leaves it where it stood; moved off
// its entries, it stands on none.
std::unique_ptr<engine::IndexObject> MakeIndex(std::shared_ptr<EngineState> state, Table* table);

// A new record object stands on the first record. After a Find that fails its fields hold what has
// been set, and are otherwise blank. Records are walked in record order.
std::unique_ptr<engine::RecordObject> MakeRecord(std::shared_ptr<EngineState> state, Table* table);

// The transactions of the product with that code, in record order; none when the company keeps no
// transactions. A new collection stands on the first; moved past the last, its fields are blank.
std::unique_ptr<engine::TransactionsObject> MakeTransactions(std::shared_ptr<EngineState> state,
                                                             std::wstring_view stock_code);

// The prices of the company's customers and suppliers, as docs/manual/simulator.md tells.
std::unique_ptr<engine::PricingObject> MakePricing(std::shared_ptr<EngineState> state);

std::shared_ptr<engine::Workspace> MakeWorkspace(std::shared_ptr<EngineState> state);

std::unique_ptr<engine::EngineError> MakeLastError(std::shared_ptr<EngineState> state);

}  // namespace ard::simulator

#endif  // ARD_SIMULATOR_ENGINE_OBJECTS_H_
