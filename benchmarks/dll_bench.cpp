// What the library costs a C++ host: every member that opens no dialog and writes nothing, through
// the registered DLL, against what it asks of the engine and of the host's database with nothing
// around it: recorded from the call itself, and replayed. Beside it, what a script pays that asks
// for the same itself. Exits with 1 when a target is missed.
#include <windows.h>
// After windows.h.
#include <ArdObjects100.h>

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
#include "tests/core/members.h"
#include "tests/windows/automation_members.h"

namespace ard::benchmarks {
namespace {

using ard::testing::Member;
using ard::testing::Way;
using windows::ComPtr;
using windows::testing::AutomationCall;
using windows::testing::MembersWorld;

constexpr double kTargetRatio = 1.15;
constexpr int kDllBatches = 101;
constexpr int kScriptBatches = 5;
constexpr double kScriptBatchTime = 20e6;  // nanoseconds
constexpr int kLoads = 7;
constexpr wchar_t kLoadSwitch[] = L"--load";

// ---- A member ----

struct Measured {
  std::wstring name;
  Comparison times{};  // of the bare sequence, and of the library
  double script = 0;
  std::int64_t bare_operations = 0;
  std::int64_t dll_operations = 0;

  // With one operation or none, a ratio says nothing.
  bool is_compared() const { return bare_operations > 1; }
  double limit() const { return is_compared() ? kTargetRatio : kNoTarget; }
  bool is_met() const { return times.ratio() <= limit() && bare_operations == dll_operations; }
};

class MembersBench {
 public:
  Measured Measure(const Member& member) {
    Recording bare = Record(member);
    const auto object = plain_.Create(member.class_name);
    AutomationCall library(object, member, plain_);
    const auto by_library = [&] { Check(member, library()); };
    const auto by_hand = [&] { bare.Replay(); };
    by_library();  // what is looked up once belongs to no call
    CheckAnswer(member, library);

    Measured measured;
    measured.name = member.name;
    measured.bare_operations = OperationsOf(recorded_, by_hand);
    measured.dll_operations = OperationsOf(plain_, by_library);
    measured.times = CompareWithin(measured.limit(), by_hand, by_library, kDllBatches);
    measured.script = TimeByName(bare);
    return measured;
  }

 private:
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

  // What a script pays for the same.
  double TimeByName(Recording& bare) const {
    std::vector<NamedObject> objects;
    const std::wstring script = ScriptOf(L"Ask", bare, objects);
    const ScriptHost host(objects, script);
    const auto ask = [&](int times) { return Time(1, [&] { host.Run(L"Ask", times); }) / times; };
    const std::int64_t asked = OperationsOf(recorded_, [&] { ask(1); });
    if (asked != OperationsOf(recorded_, [&] { bare.Replay(); })) {
      throw Error(kErrorFailed, L"This script does not ask for the same:\n" + script);
    }
    const int times = static_cast<int>(kScriptBatchTime / ask(1)) + 1;
    double fastest = ask(times);
    for (int i = 1; i < kScriptBatches; ++i) fastest = std::min(fastest, ask(times));
    return fastest;
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
      std::printf("%7.3f %7.2f ", member.times.ratio(), kTargetRatio);
    } else {
      std::printf("%7s %7s ", "", "");
    }
    std::printf("%4" PRId64 " and %2" PRId64 " %12.0f %9.1f%s\n", member.bare_operations,
                member.dll_operations, member.script, member.script / member.times.ours,
                member.is_met() ? "" : "   MISSED");
    met &= member.is_met();
  }
  return met;
}

// The rows that open no dialog and write nothing; a host asks them for no message, either.
std::vector<Member> QuietMembers() {
  std::vector<Member> members;
  for (Member member : ard::testing::Members()) {
    // The records' rows have effects because they try their properties, too.
    const bool has_effects = member.has_effects && member.member_name != L"Read";
    if (!member.arguments || member.script || has_effects) continue;
    if (member.member_name == L"IsUserAllowedAccess") member.arguments->back() = false;
    members.push_back(std::move(member));
  }
  // These ask nothing, so no test of the portable classes has a row for them.
  for (const wchar_t* name : {L"Messaging.CheckUserAccess", L"Messaging.GetPassword"}) {
    members.push_back({name, Way{nullptr, {{}}}, [](const std::wstring&) { return true; }});
  }
  return members;
}

bool CompareMembers(std::wstring_view only) {
  MembersBench bench;
  std::vector<Measured> measured;
  for (const Member& member : QuietMembers()) {
    if (member.name.starts_with(only)) measured.push_back(bench.Measure(member));
  }
  return Print(measured);
}

// ---- What has nothing to compare with ----

double Fastest(auto&& action) {
  const int calls = BatchSize(action);
  double fastest = Time(calls, action) / calls;
  for (int i = 1; i < kDllBatches; ++i) fastest = std::min(fastest, Time(calls, action) / calls);
  return fastest;
}

// The two ways in which a C++ host can call.
void CompareWaysToCall(const MembersWorld& world) {
  const auto object = world.Create(L"Customers");
  const auto customers = windows::testing::As<_Customers>(object.get());
  const windows::Bstr acc_ref(L"ABC001");
  const double by_vtable = Fastest([&] {
    windows::Bstr name;
    customers->GetName(acc_ref.get(), name.Receive());
  });
  auto argument = windows::testing::Variant(L"ABC001");
  const double by_invoke = Fastest([&] {
    DISPPARAMS parameters = {&argument, nullptr, 1, 0};
    windows::ScopedVariant name;
    object.get()->Invoke(5, IID_NULL, LOCALE_USER_DEFAULT, DISPATCH_METHOD, &parameters, &name,
                         nullptr, nullptr);
  });
  std::printf("\nCustomers.GetName by vtable: %.0f ns, by IDispatch::Invoke: %.0f ns\n", by_vtable,
              by_invoke);
}

// Reading the properties of a class, as its type information tells them.
void ReadProperties(const MembersWorld& world, const wchar_t* class_name) {
  const auto object = world.Create(class_name);
  ComPtr<ITypeInfo> info;
  object.get()->GetTypeInfo(0, LOCALE_USER_DEFAULT, info.Receive());
  TYPEATTR* attributes = nullptr;
  info->GetTypeAttr(&attributes);
  int properties = 0;
  double slowest = 0;
  for (UINT i = 0; i < attributes->cFuncs; ++i) {
    FUNCDESC* function = nullptr;
    info->GetFuncDesc(i, &function);
    const bool reads = function->invkind == INVOKE_PROPERTYGET;
    const DISPID id = function->memid;
    info->ReleaseFuncDesc(function);
    if (!reads) continue;
    ++properties;
    slowest =
        std::max(slowest, Fastest([&] {
                   DISPPARAMS none{};
                   windows::ScopedVariant value;
                   object.get()->Invoke(id, IID_NULL, LOCALE_USER_DEFAULT, DISPATCH_PROPERTYGET,
                                        &none, &value, nullptr, nullptr);
                 }));
  }
  info->ReleaseTypeAttr(attributes);
  std::printf("%-20ls %2d properties, reading the slowest takes %4.0f ns\n", class_name, properties,
              slowest);
}

bool MeasureTheRest() {
  const MembersWorld world;
  CompareWaysToCall(world);
  for (const auto& published : windows::testing::kClasses) ReadProperties(world, published.name);
  return true;
}

// ---- Loading ----

// Milliseconds until the DLL is loaded, and from there until its first object is created.
struct Loading {
  double loaded = 0;
  double created = 0;
};

// In a process that has done nothing else.
int PrintLoading() {
  Loading loading;
  const std::wstring path = windows::testing::LibraryPath();
  loading.loaded = Time(1, [&] { LoadLibraryW(path.c_str()); }) / 1e6;
  ComPtr<IDispatch> object;
  loading.created =
      Time(1, [&] { object = windows::testing::CreateObject(L"ArdObjects100.Customers"); }) / 1e6;
  std::printf("%f %f\n", loading.loaded, loading.created);
  return object ? 0 : 1;
}

// The fastest of some processes.
bool MeasureLoading() {
  wchar_t program[MAX_PATH] = {};
  GetModuleFileNameW(nullptr, program, MAX_PATH);
  const std::wstring command = std::wstring(program) + L" " + kLoadSwitch;
  Loading fastest = {1e9, 1e9};
  for (int i = 0; i < kLoads; ++i) {
    std::FILE* const output = _wpopen(command.c_str(), L"r");
    Loading loading;
    const bool read =
        output && std::fscanf(output, "%lf %lf", &loading.loaded, &loading.created) == 2;
    if (output) _pclose(output);
    if (!read) {
      std::printf("A process could not load the DLL.\n");
      return false;
    }
    fastest.loaded = std::min(fastest.loaded, loading.loaded);
    fastest.created = std::min(fastest.created, loading.created);
  }
  std::printf("\nloading the DLL: %.2f ms, creating the first object then: %.2f ms\n",
              fastest.loaded, fastest.created);
  return true;
}

}  // namespace
}  // namespace ard::benchmarks

// Nothing but the members whose names begin with the argument, if there is one.
int main(int count, char** arguments) {
  using namespace ard::benchmarks;  // NOLINT(google-build-using-namespace): it is the program
  CoInitialize(nullptr);
  int result = 1;
  try {
    const std::wstring only = ard::FromUtf8(count > 1 ? arguments[1] : "");
    if (only == kLoadSwitch) {
      result = PrintLoading();
    } else if (!only.empty()) {
      result = CompareMembers(only) ? 0 : 1;
    } else {
      const bool met = CompareMembers(only);
      const bool measured = MeasureTheRest();
      result = MeasureLoading() && measured && met ? 0 : 1;
    }
  } catch (const ard::Error& error) {
    std::printf("%s\n", ard::ToUtf8(error.text()).c_str());
  }
  CoUninitialize();
  return result;
}
