// The native side of the benchmarks: a company and a machine, to compare what the library does with
// the same operations without it.
#ifndef ARD_BENCHMARKS_NATIVE_BENCH_H_
#define ARD_BENCHMARKS_NATIVE_BENCH_H_

#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <string_view>
#include <utility>

#include "benchmarks/timing.h"
#include "frame/context.h"
#include "frame/text.h"
#include "simulator/simulator.h"
#include "tests/core/members.h"
#include "tests/core/recording_workspace.h"
#include "tests/core/scripted_environment.h"

namespace ard::benchmarks {

inline constexpr int kBatchesOfALayout = 301;
inline constexpr std::wstring_view kReplayed = L", replayed";

// The greatest ratio that is allowed.
double TargetOf(std::wstring_view name);
// What is held to a higher ratio than the others, and why.
void PrintExceptions();

// Nobody is there to see messages and progress, and dialogs are closed at once. What is asked of
// the machine belongs to a bare sequence, too.
class Machine : public testing::ScriptedEnvironment {
 public:
  // Null to stop.
  void RecordInto(testing::Recording* recording) { recording_ = recording; }

  void ShowMessage(Icon, std::wstring_view, std::wstring_view) override {}
  std::unique_ptr<ProgressDisplay> ShowProgress(std::wstring_view, std::int32_t) override {
    return nullptr;
  }
  std::wstring ReadIni(std::wstring_view file, std::wstring_view section,
                       std::wstring_view key) override {
    if (recording_) {
      Note([this, file = std::wstring(file), section = std::wstring(section),
            key = std::wstring(key)] { ReadIni(file, section, key); });
    }
    return ScriptedEnvironment::ReadIni(file, section, key);
  }
  void TryToRead(std::wstring_view file) override {
    if (recording_) Note([this, file = std::wstring(file)] { TryToRead(file); });
    ScriptedEnvironment::TryToRead(file);
  }

 private:
  void Note(auto ask) {
    recording_->steps.push_back([ask = std::move(ask)](engine::Workspace&, void**) { ask(); });
  }

  testing::Recording* recording_ = nullptr;
};

using Binding = std::function<testing::Call(const Context&)>;

// The machine and a company, to call members on.
class Bench {
 public:
  explicit Bench(std::unique_ptr<simulator::Simulator> engine) : engine_(std::move(engine)) {
    context_.workspace = engine_->workspace();
    context_.app_name = L"Manufacturing";
  }

  Context& context() { return context_; }
  simulator::Simulator& engine() { return *engine_; }

  // Records what `action(context)` asks for.
  template <class Action>
  void Record(testing::Recording& recording, Action&& action) {
    context_.workspace = testing::Recorded(engine_->workspace(), recording);
    machine_.RecordInto(&recording);
    action(context_);
    machine_.RecordInto(nullptr);
    context_.workspace = engine_->workspace();
  }

  // Times the library against the bare operations, and counts what it asks of the engine in one
  // call, which is to be as many as `needed` says.
  bool Compare(std::wstring_view name, auto&& bare, auto&& library, int needed = testing::kAsItIs) {
    const auto operations_of = [&](auto& action) {
      const std::int64_t before = engine_->operations();
      action();
      return engine_->operations() - before;
    };
    // What is read once and kept does not belong to a call.
    library();
    const std::int64_t asked = operations_of(library);
    const std::int64_t expected = needed == testing::kAsItIs ? operations_of(bare) : needed;
    const double target = TargetOf(name);
    Report(ToUtf8(name).c_str(), CompareWithin(target, bare, library, kBatchesOfALayout), target,
           expected, asked);
    return expected == asked;
  }

  // The same for a member, against what a call of it asks, with nothing around it.
  bool CompareMember(std::wstring_view name, const Binding& bind, int needed = testing::kAsItIs);

 private:
  Machine machine_;
  std::unique_ptr<simulator::Simulator> engine_;
  Context context_{machine_};
};

}  // namespace ard::benchmarks

#endif  // ARD_BENCHMARKS_NATIVE_BENCH_H_
