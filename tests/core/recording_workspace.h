// A workspace that writes down what the engine is asked: to assert the order of writes, to count
// the operations of a call, and to ask the engine for the very same again with nothing around it.
#ifndef ARD_TESTS_CORE_RECORDING_WORKSPACE_H_
#define ARD_TESTS_CORE_RECORDING_WORKSPACE_H_

#include <cstddef>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "engine/seam.h"

namespace ard::testing {

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

  // What an operation hands out is kept in a slot, until it is released.
  using Slots = std::vector<void*>;
  // The operations, and the releases of what they handed out.
  // Called with as little around it as possible: what a replay takes is to be theirs.
  class Step {
   public:
    template <class Action>
    Step(Action action)
        : run_([](const void* kept, engine::Workspace& workspace, void** slots) {
            (*static_cast<const Action*>(kept))(workspace, slots);
          }),
          action_(std::make_shared<const Action>(std::move(action))) {}
    void operator()(engine::Workspace& workspace, void** slots) const {
      run_(action_.get(), workspace, slots);
    }

   private:
    void (*run_)(const void* kept, engine::Workspace& workspace, void** slots);
    std::shared_ptr<const void> action_;
  };
  std::vector<Step> steps;
  std::vector<void (*)(void*)> release;  // of the object in each slot

  // Asks `workspace` for the same again; an operation that failed then and fails now is passed
  // over.
  void Replay(engine::Workspace& workspace) const { Replay(workspace, slots_, 0, steps.size()); }
  // Asks for the steps from `first` up to, not including, `last`, with the objects of the steps
  // before them. Release what is left in the slots at the end.
  void Replay(engine::Workspace& workspace, Slots& slots, std::size_t first,
              std::size_t last) const;
  void Release(Slots& slots) const;

 private:
  mutable Slots slots_;  // kept, so that a replay asks for no memory of its own
};

// A workspace that passes every operation on to `workspace`, and so do the objects created through
// it. Each operation is first added to `recording`, which must outlive them all.
std::shared_ptr<engine::Workspace> Recorded(std::shared_ptr<engine::Workspace> workspace,
                                            Recording& recording);

}  // namespace ard::testing

#endif  // ARD_TESTS_CORE_RECORDING_WORKSPACE_H_
