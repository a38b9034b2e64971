// Which operations are to fail. One plan may be shared by several seams (engine, machine), so that
// a sweep counts all their operations in one sequence.
#ifndef ARD_SIMULATOR_FAULT_PLAN_H_
#define ARD_SIMULATOR_FAULT_PLAN_H_

#include <cstdint>
#include <cstdlib>

#include "frame/error.h"

namespace ard::simulator {

class FaultPlan {
 public:
  // Starts counting afresh; nothing fails.
  void Reset() { *this = FaultPlan(); }
  // Starts counting afresh; operation `n` (from 1) fails, and every later one when `persist`.
  void FailFrom(std::int64_t n, bool persist) {
    Reset();
    first_ = n;
    persist_ = persist;
  }

  // The process ends, without any clean-up, in place of operation `n` from now.
  void CrashAt(std::int64_t n) {
    Reset();
    crash_at_ = n;
  }

  // Called by every operation before it does anything. Throws Error when it is to fail.
  void Operation() {
    if (Fails()) throw Error(kErrorFailed, L"The operation failed as requested.");
  }
  // The same for one that fails in its own way: whether it is to.
  bool Fails() {
    if (++operations_ == crash_at_) std::_Exit(EXIT_FAILURE);
    if (first_ == 0 || operations_ < first_ || (operations_ > first_ && !persist_)) return false;
    ++failed_;
    return true;
  }

  // Operations asked, and how many of them failed, since the count started.
  std::int64_t operations() const { return operations_; }
  std::int64_t failed() const { return failed_; }
  // Whether all operations fail from some point on.
  bool persists() const { return persist_; }

 private:
  std::int64_t crash_at_ = 0;
  std::int64_t first_ = 0;
  bool persist_ = false;
  std::int64_t operations_ = 0;
  std::int64_t failed_ = 0;
};

}  // namespace ard::simulator

#endif  // ARD_SIMULATOR_FAULT_PLAN_H_
