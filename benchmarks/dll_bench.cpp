// What the library costs a C++ host: every member that opens no dialog and writes nothing, through
// the registered DLL, against what it asks of the engine and of the host's database with nothing
// around it: recorded from the call itself, and replayed. Beside it, what a script pays that asks
// for the same itself. Exits with 1 when a target is missed.
#include <windows.h>
// After windows.h.
#include <algorithm>
#include <cinttypes>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <string>
#include <string_view>
#include <vector>

#include "benchmarks/dispatch_recorder.h"
#include "benchmarks/script_host.h"
#include "benchmarks/timing.h"
#include "frame/error.h"
#include "frame/text.h"
#include "testing/members.h"
#include "tests/windows/automation_members.h"

namespace ard::benchmarks {
namespace {

using ard::testing::Member;
using windows::ComPtr;
using windows::testing::AutomationCall;
using windows::testing::MembersWorld;

constexpr double kTargetRatio = 1.15;
constexpr int kAttempts = 1;  // what else runs only adds to a time
constexpr int kDllBatches = 101;

// Members that stay above the target, and why.
struct Exception {
  std::wstring_view member;
  double target;
  const char* reason;
};
constexpr Exception kExceptions[] = {
    {L"", 0, ""},
};

// ---- A member ----

struct Measured {
  std::wstring name;
  Comparison times{};  // of the bare sequence, and of the library
  double script = 0;
  std::int64_t bare_operations = 0;
  std::int64_t library_operations = 0;

  // With one operation or none, a ratio says nothing.
  bool is_compared() const { return bare_operations > 1; }
  const Exception* exception() const {
    const auto* const found =
        std::find_if(std::begin(kExceptions), std::end(kExceptions),
                     [&](const Exception& exception) { return exception.member == name; });
    return found == std::end(kExceptions) ? nullptr : found;
  }
  double target() const { return exception() ? exception()->target : kTargetRatio; }
  bool is_fast_enough() const { return !is_compared() || times.ratio() <= target(); }
  bool is_met() const { return is_fast_enough() && bare_operations == library_operations; }
};

// The script's name for what the member does.
std::wstring ProcedureOf(std::size_t member) { return L"Member" + std::to_wstring(member); }

template <class Bare, class Library>
Comparison CompareBriefly(Bare&& bare, Library&& library) {
  const int calls = BatchSize(library);
  std::vector<double> bare_times;
  std::vector<double> library_times;
  for (int i = 0; i < kDllBatches; ++i) {
    bare_times.push_back(Time(calls, bare) / calls);
    library_times.push_back(Time(calls, library) / calls);
  }
  return {Median(bare_times), Median(library_times)};
}

class MembersBench {
 public:
  // Measures a member; what it does is kept for the script.
  void Measure(const Member& member) {
    Recording bare = Record(member);
    script_ += ScriptOf(ProcedureOf(measured_.size()), bare, script_objects_);
    const auto object = plain_.Create(member.class_name);
    AutomationCall library(object, member, plain_);
    const auto by_library = [&] { Check(member, library()); };
    const auto by_hand = [&] { bare.Replay(); };
    by_library();  // what is looked up once belongs to no call
    CheckAnswer(member, library);

    Measured measured = {member.name};
    measured.bare_operations = OperationsOf(recorded_, by_hand);
    measured.library_operations = OperationsOf(plain_, by_library);
    for (int attempt = 0; attempt < kAttempts; ++attempt) {
      const Comparison times = CompareBriefly(by_hand, by_library);
      if (attempt == 0 || times.ratio() < measured.times.ratio()) measured.times = times;
      if (measured.is_fast_enough()) break;
    }
    measured_.push_back(std::move(measured));
  }

  // Measures what scripts pay, for all members so far.
  void RunScript() {
    const ScriptHost host(script_objects_, script_);
    for (std::size_t i = 0; i < measured_.size(); ++i) {
      const auto run = [&](int count) {
        return Time(1, [&] { host.Run(ProcedureOf(i), count); }) / count;
      };
      const int count = static_cast<int>(kScriptTime / run(1)) + 1;
      double& fastest = measured_[i].script = run(count);
      for (int again = 0; again < 4; ++again) fastest = std::min(fastest, run(count));
    }
  }

  const std::vector<Measured>& measured() const { return measured_; }

 private:
  static constexpr double kScriptTime = 20e6;  // nanoseconds

  Recording Record(const Member& member) {
    const auto object = recorded_.Create(member.class_name);
    AutomationCall call(object, member, recorded_);
    const WrappedClass recordsets(recorder_, L"ADODB.Recordset");
    recorder_.Start();
    Check(member, call());
    Recording recording = recorder_.Stop();
    CheckAnswer(member, call);
    return recording;
  }

  static void Check(const Member& member, HRESULT status) {
    if (FAILED(status)) throw Error(status, member.name + L" failed.");
  }
  static void CheckAnswer(const Member& member, const AutomationCall& call) {
    if (member.may_answer(call.Answer())) return;
    throw Error(kErrorFailed, member.name + L" answers " + call.Answer());
  }

  template <class Action>
  static std::int64_t OperationsOf(const MembersWorld& world, Action&& action) {
    const auto operations = [&] {
      return static_cast<std::int64_t>(Count(world.engine(), L"Operations") +
                                       Count(world.connection(), L"Operations"));
    };
    const std::int64_t before = operations();
    action();
    return operations() - before;
  }

  DispatchRecorder recorder_;
  MembersWorld recorded_{[&](ComPtr<IDispatch> object) { return recorder_.Wrap(object); }};
  MembersWorld plain_;
  std::vector<Measured> measured_;
  std::vector<NamedObject> script_objects_;
  std::wstring script_;
};

bool Print(const std::vector<Measured>& members) {
  std::printf(
      "Through the registered DLL, late-bound with the id known (IDispatch::Invoke), against the\n"
      "same operations on the bare objects, and by name in VBScript\n\n"
      "%-40s %10s %10s %7s %7s %11s %12s %9s\n",
      "member", "bare ns", "DLL ns", "ratio", "target", "operations", "VBScript ns", ": DLL");
  bool met = true;
  for (const Measured& member : members) {
    std::printf("%-40s %10.0f %10.0f ", ToUtf8(member.name).c_str(), member.times.hand_written,
                member.times.ours);
    if (member.is_compared()) {
      std::printf("%7.3f %7.2f ", member.times.ratio(), member.target());
    } else {
      std::printf("%7s %7s ", "", "");
    }
    std::printf("%4" PRId64 " and %2" PRId64 " %12.0f %9.1f%s\n", member.bare_operations,
                member.library_operations, member.script, member.script / member.times.ours,
                member.is_met() ? "" : "   MISSED");
    met &= member.is_met();
  }
  for (const Measured& member : members) {
    if (!member.exception()) continue;
    std::printf("%s: %s\n", ToUtf8(member.name).c_str(), member.exception()->reason);
  }
  return met;
}

// The rows that open no dialog and write nothing; a host asks them for no message, either.
std::vector<Member> QuietMembers() {
  std::vector<Member> members;
  for (const Member& member : ard::testing::Members()) {
    if (!member.arguments || member.script || member.has_effects) continue;
    members.push_back(member);
    if (member.name == L"cAccessRights.IsUserAllowedAccess") {
      members.back().arguments->back() = false;
    }
  }
  return members;
}

bool CompareMembers() {
  MembersBench bench;
  for (const Member& member : QuietMembers()) bench.Measure(member);
  bench.RunScript();
  return Print(bench.measured());
}

}  // namespace
}  // namespace ard::benchmarks

int main() {
  CoInitialize(nullptr);
  int result = 1;
  try {
    result = ard::benchmarks::CompareMembers() ? 0 : 1;
  } catch (const ard::Error& error) {
    std::printf("%s\n", ard::ToUtf8(error.text()).c_str());
  }
  CoUninitialize();
  return result;
}
