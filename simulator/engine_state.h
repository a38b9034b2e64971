// What a simulated engine and all its objects share, and the frame in which each of their
// operations runs.
#ifndef ARD_SIMULATOR_ENGINE_STATE_H_
#define ARD_SIMULATOR_ENGINE_STATE_H_

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <utility>

#include "frame/error.h"
#include "simulator/company.h"
#include "simulator/fault_plan.h"
#include "simulator/logons.h"
#include "simulator/simulator.h"

namespace ard::simulator {

struct EngineState {
  explicit EngineState(std::unique_ptr<Company> tables) : company(std::move(tables)) {}

  std::unique_ptr<Company> company;
  FaultPlan faults;
  Counters counters;
  bool snapshot_fields = false;
  std::int64_t operations = 0;
  std::int64_t records_read = 0;
  std::optional<Error> last_error;  // of the last operation, if it failed
  Logons logons{*company};

  // Runs one operation, unless it is to fail: counted, and its error kept as the last one.
  template <class Action>
  auto Run(Action&& action) {
    last_error.reset();
    return RunAside(action);
  }
  // The same for one that asks for the last error.
  template <class Action>
  auto RunAside(Action&& action) {
    try {
      ++operations;
      faults.Operation();
      return action();
    } catch (const Error& error) {
      last_error = error;
      throw;
    }
  }

  // The answer of an operation that refuses what it is asked.
  bool Refuse(const Error& why) {
    last_error = why;
    return false;
  }
};

// The engine's own errors.
inline const Error kChangedByOther{1103, L"Another user has changed the record since it was read."};

// An engine object: it counts as living, and each of its operations is put through Run.
class EngineObject {
 public:
  EngineObject(const EngineObject&) = delete;
  EngineObject& operator=(const EngineObject&) = delete;

 protected:
  explicit EngineObject(std::shared_ptr<EngineState> state) : state_(std::move(state)) {
    ++state_->counters.living_objects;
  }
  ~EngineObject() { --state_->counters.living_objects; }

  template <class Action>
  auto Run(Action&& action) {
    return state_->Run(std::forward<Action>(action));
  }

  const std::shared_ptr<EngineState>& state() const { return state_; }

 private:
  std::shared_ptr<EngineState> state_;
};

// Counts a file as open for as long as it lives.
class OpenMark {
 public:
  explicit OpenMark(std::shared_ptr<EngineState> state) : state_(std::move(state)) {
    ++state_->counters.open_files;
  }
  OpenMark(const OpenMark&) = delete;
  OpenMark& operator=(const OpenMark&) = delete;
  ~OpenMark() { --state_->counters.open_files; }

 private:
  std::shared_ptr<EngineState> state_;
};

}  // namespace ard::simulator

#endif  // ARD_SIMULATOR_ENGINE_STATE_H_
