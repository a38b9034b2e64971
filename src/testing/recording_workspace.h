// A workspace that writes down what the engine is asked: to assert the order of writes, to count
// the operations of a call, and to ask the engine for the very same again with nothing around it.
#ifndef ARD_TESTING_RECORDING_WORKSPACE_H_
#define ARD_TESTING_RECORDING_WORKSPACE_H_

#include <cstddef>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "engine/seam.h"

namespace ard::testing {

// The objects that a replay has been handed out, by the order in which they were first.
class ReplayedObjects {
 public:
  explicit ReplayedObjects(std::size_t count) : slots_(count) {}
  ReplayedObjects(const ReplayedObjects&) = delete;
  ReplayedObjects& operator=(const ReplayedObjects&) = delete;
  ~ReplayedObjects() {
    for (std::size_t i = slots_.size(); i > 0; --i) Release(i - 1);
  }

  template <class Target>
  Target& Get(std::size_t slot) const {
    return *static_cast<Target*>(slots_[slot].object);
  }
  template <class Target>
  void Put(std::size_t slot, std::unique_ptr<Target> object) {
    Release(slot);
    slots_[slot] = {object.release(), [](void* target) { delete static_cast<Target*>(target); }};
  }
  void Release(std::size_t slot) {
    if (slots_[slot].object) slots_[slot].release(slots_[slot].object);
    slots_[slot] = {};
  }

 private:
  struct Slot {
    void* object = nullptr;
    void (*release)(void*) = nullptr;
  };
  std::vector<Slot> slots_;
};

struct Recording {
  // A line for each operation:
  //
  //   Workspace.CreateRecordObject("StockRecord")
  //   StockRecord.Fields
  //   StockRecord.Fields("QTY_ALLOCATED")
  //   StockRecord.Fields("QTY_ALLOCATED").Value
  //   StockRecord.Fields("QTY_ALLOCATED").Value = 10
  //   StockRecord.Find(False)
  //   StockRecord.Transactions.MoveNext
  //
  // Values are as Value::ToText gives them, text in quotes; nothing is `Empty` or `Null`.
  std::vector<std::wstring> operations;

  // The operations, and the releases of what they handed out.
  using Step = std::function<void(engine::Workspace&, ReplayedObjects&)>;
  std::vector<Step> steps;
  std::size_t objects = 0;

  // Asks `workspace` for the same again; an operation that failed then and fails now is passed
  // over.
  void Replay(engine::Workspace& workspace) const;
  // Asks for the steps from `first` up to, not including, `last`, with the objects of the steps
  // before them.
  void Replay(engine::Workspace& workspace, ReplayedObjects& handed_out, std::size_t first,
              std::size_t last) const;
};

// A workspace that passes every operation on to `workspace`, and so do the objects created through
// it. Each operation is first added to `recording`, which must outlive them all.
std::shared_ptr<engine::Workspace> Recorded(std::shared_ptr<engine::Workspace> workspace,
                                            Recording& recording);

}  // namespace ard::testing

#endif  // ARD_TESTING_RECORDING_WORKSPACE_H_
