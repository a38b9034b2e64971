// Whether a long run leaves anything behind: creates, calls and releases objects of all classes of
// the registered library, all members in turn, and counts what the process holds after the first
// calls and at the end.
//
//   soak [<calls> [<dialogs>]]
//
// Of the calls, `dialogs` open a dialog, which is answered at once. Exits with 1 when there is more
// of anything at the end.
#include "tests/windows/automation_members.h"
// After windows.h.
#include <ole2.h>
#include <psapi.h>

#include <algorithm>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <memory>
#include <vector>

#include "frame/text.h"
#include "tests/windows/hasty_user.h"

namespace ard::benchmarks {
namespace {

using ard::testing::Member;
using windows::testing::AutomationCall;
using windows::testing::Count;
using windows::testing::HastyUser;
using windows::testing::MembersWorld;

constexpr long kWarmUp = 1'000;
// One call in so many is that of a member that writes.
constexpr long kWriterEvery = 100;

double Kilobytes(auto bytes) { return static_cast<double>(bytes) / 1024; }

// What the process holds.
struct Counter {
  const char* name;
  double tolerance;
  double (*count)(const MembersWorld& world);
};

double GuiResources(DWORD kind) { return GetGuiResources(GetCurrentProcess(), kind); }

PROCESS_MEMORY_COUNTERS_EX Memory() {
  PROCESS_MEMORY_COUNTERS_EX memory = {};
  memory.cb = sizeof(memory);
  GetProcessMemoryInfo(GetCurrentProcess(), reinterpret_cast<PROCESS_MEMORY_COUNTERS*>(&memory),
                       sizeof(memory));
  return memory;
}

// What is allocated on all heaps of the process.
struct HeapUse {
  double blocks = 0;
  double bytes = 0;
};

HeapUse Heaps() {
  HANDLE heaps[64];
  const DWORD count = GetProcessHeaps(ARRAYSIZE(heaps), heaps);
  HeapUse use;
  for (DWORD i = 0; i < count; ++i) {
    PROCESS_HEAP_ENTRY entry = {};
    while (HeapWalk(heaps[i], &entry)) {
      if (!(entry.wFlags & PROCESS_HEAP_ENTRY_BUSY)) continue;
      ++use.blocks;
      use.bytes += entry.cbData;
    }
  }
  return use;
}

double ThreadWindows() {
  double count = 0;
  const auto add = [](HWND, LPARAM sum) -> BOOL {
    ++*reinterpret_cast<double*>(sum);
    return TRUE;
  };
  EnumThreadWindows(GetCurrentThreadId(), add, reinterpret_cast<LPARAM>(&count));
  return count;
}

const Counter kCounters[] = {
    {"private KiB", 256, [](const MembersWorld&) { return Kilobytes(Memory().PrivateUsage); }},
    {"working set KiB", 256,
     [](const MembersWorld&) { return Kilobytes(Memory().WorkingSetSize); }},
    {"heap KiB", 16, [](const MembersWorld&) { return Kilobytes(Heaps().bytes); }},
    {"heap blocks", 0, [](const MembersWorld&) { return Heaps().blocks; }},
    {"handles", 0,
     [](const MembersWorld&) {
       DWORD handles = 0;
       GetProcessHandleCount(GetCurrentProcess(), &handles);
       return static_cast<double>(handles);
     }},
    {"GDI objects", 0, [](const MembersWorld&) { return GuiResources(GR_GDIOBJECTS); }},
    {"USER objects", 0, [](const MembersWorld&) { return GuiResources(GR_USEROBJECTS); }},
    {"windows", 0, [](const MembersWorld&) { return ThreadWindows(); }},
    {"engine objects", 0,
     [](const MembersWorld& world) { return Count(world.engine(), L"LivingObjects"); }},
    {"open files", 0,
     [](const MembersWorld& world) { return Count(world.engine(), L"OpenFiles"); }},
    {"open recordsets", 0,
     [](const MembersWorld& world) { return Count(world.connection(), L"OpenRecordsets"); }},
};

std::vector<double> TakeStock(const MembersWorld& world) {
  std::vector<double> stock;
  for (const Counter& counter : kCounters) stock.push_back(counter.count(world));
  return stock;
}

// Some of the members, in turn.
class Rota {
 public:
  void Add(const Member& member) { members_.push_back(&member); }
  const Member& Next() { return *members_[next_++ % members_.size()]; }

 private:
  std::vector<const Member*> members_;
  std::size_t next_ = 0;
};

class Soak {
 public:
  // Calls every member, and learns which of them open a window.
  Soak() {
    for (const Member& member : ard::testing::Members()) {
      if (!member.arguments) continue;
      const int before = windows_;
      Use(member);
      (windows_ > before ? dialogs_ : member.has_effects ? writers_ : readers_).Add(member);
    }
  }

  // So many calls, of which so many open a dialog.
  void Call(long calls, long dialogs) {
    for (long i = 1, opened = 0; i <= calls; ++i) {
      if (opened < i * dialogs / calls) {
        ++opened;
        Use(dialogs_.Next());
      } else {
        Use(i % kWriterEvery == 0 ? writers_.Next() : readers_.Next());
      }
    }
  }

  const MembersWorld& world() const { return world_; }
  long calls() const { return calls_; }
  int windows() const { return windows_; }
  int wrong() const { return wrong_; }

 private:
  // What a member writes goes with a company of its own.
  void Use(const Member& member) {
    std::unique_ptr<MembersWorld> own;
    if (member.has_effects) own = std::make_unique<MembersWorld>();
    const MembersWorld& world = own ? *own : world_;
    AutomationCall call(world.Create(member.class_name), member, world);
    const HastyUser user(member.is_cancelled);
    ++calls_;
    const HRESULT status = call();
    windows_ += user.windows();
    if (status == S_OK && member.may_answer(call.Answer())) return;
    ++wrong_;
    std::printf("%s: 0x%08lx %s\n", ToUtf8(member.name).c_str(), static_cast<unsigned long>(status),
                ToUtf8(call.Answer()).c_str());
  }

  MembersWorld world_;
  Rota readers_;
  Rota writers_;
  Rota dialogs_;
  long calls_ = 0;
  int windows_ = 0;
  int wrong_ = 0;
};

int Run(long calls, long dialogs) {
  Soak soak;
  soak.Call(kWarmUp - soak.calls(), 100);
  const std::vector<double> before = TakeStock(soak.world());
  const int windows = soak.windows();
  soak.Call(calls, dialogs);
  const std::vector<double> after = TakeStock(soak.world());

  std::printf("%ld calls; %d windows after the first %ld\n", soak.calls(), soak.windows() - windows,
              kWarmUp);
  std::printf("%-20s %12s %12s %12s\n", "", "first", "at the end", "more");
  int passed = 0;
  int failed = soak.wrong() > 0;
  for (std::size_t i = 0; i < before.size(); ++i) {
    const double more = after[i] - before[i];
    const bool grows = more > kCounters[i].tolerance;
    ++(grows ? failed : passed);
    std::printf("%-20s %12.0f %12.0f %12.0f%s\n", kCounters[i].name, before[i], after[i], more,
                grows ? "   MORE" : "");
  }
  std::printf("%d passed, %d failed\n", passed, failed);
  return failed > 0;
}

}  // namespace
}  // namespace ard::benchmarks

int main(int count, char** arguments) {
  const long calls = count > 1 ? std::atol(arguments[1]) : 200'000;
  const long dialogs = count > 2 ? std::atol(arguments[2]) : 1'000;
  OleInitialize(nullptr);
  int result = 1;
  try {
    result = ard::benchmarks::Run(calls, dialogs);
  } catch (const ard::Error& error) {
    std::printf("%s\n", ard::ToUtf8(error.text()).c_str());
  }
  OleUninitialize();
  return result;
}
