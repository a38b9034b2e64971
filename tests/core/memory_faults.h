// Memory that runs out on request. It does so in the programs that memory_faults.cpp is compiled
// into, whose operators new ask a plan first; in all others this changes nothing.
#ifndef ARD_TESTS_CORE_MEMORY_FAULTS_H_
#define ARD_TESTS_CORE_MEMORY_FAULTS_H_

#include <utility>

#include "simulator/fault_plan.h"

namespace ard::testing {

// For as long as it lives, every allocation of the program is an operation of `plan`; with null,
// allocations neither count nor fail: for what a test does itself in the midst of a call. Not for
// programs with several threads.
class AllocationsObey {
 public:
  explicit AllocationsObey(simulator::FaultPlan* plan) : before_(std::exchange(plan_, plan)) {}
  AllocationsObey(const AllocationsObey&) = delete;
  AllocationsObey& operator=(const AllocationsObey&) = delete;
  ~AllocationsObey() { plan_ = before_; }

  static bool NextFails() { return plan_ && plan_->Fails(); }

 private:
  static inline simulator::FaultPlan* plan_ = nullptr;

  simulator::FaultPlan* before_;
};

}  // namespace ard::testing

#endif  // ARD_TESTS_CORE_MEMORY_FAULTS_H_
