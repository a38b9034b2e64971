// Whether a long run leaves anything behind: creates, calls and releases objects of all classes of
// the registered library, all members in turn, and counts what the process holds after the first
// calls and at the end.
//
//   soak [<calls> [<dialogs> [<part>]]]
//
// Of the calls, `dialogs` open a dialog, which is answered at once. With `part`, only members that
// have it in their names are called. Exits with 1 when there is more of anything at the end.
#include "tests/windows/automation_members.h"
// After windows.h.
#include <ole2.h>

#include <array>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <iterator>
#include <memory>
#include <vector>

#include "benchmarks/holdings.h"
#include "frame/text.h"
#include "tests/windows/hasty_user.h"

namespace ard::benchmarks {
namespace {

using ard::testing::Member;
using windows::testing::AutomationCall;
using windows::testing::Count;
using windows::testing::HastyUser;
using windows::testing::MembersWorld;

constexpr std::int64_t kWarmUp = 1'000;
constexpr std::int64_t kWarmUpDialogs = 50;
// How often an object is called that is only asked something.
constexpr int kCallsPerObject = 10;
// One object in so many is one that writes.
constexpr std::int64_t kWriterEvery = 20;

// Memory may fragment.
constexpr double kMemory = 256;
// Each time that Wine draws a static control with visual styles, 24 bytes stay behind.
constexpr double kBlocksPerWindow = 2;

// What the process holds, and how much more of it there may be at the end: so much, and so much for
// every window that has been opened.
struct Counter {
  const char* name;
  double allowed;
  double allowed_per_window;
  double (*count)(const MembersWorld& world);
};

const Counter kCounters[] = {
    {"private KiB", kMemory, 0, [](const MembersWorld&) { return PrivateMemory(); }},
    {"heap KiB", kMemory, 0, [](const MembersWorld&) { return Heaps().kilobytes; }},
    {"heap blocks", 0, kBlocksPerWindow, [](const MembersWorld&) { return Heaps().blocks; }},
    {"handles", 0, 0, [](const MembersWorld&) { return Handles(); }},
    {"GDI objects", 0, 0, [](const MembersWorld&) { return GdiObjects(); }},
    {"USER objects", 0, 0, [](const MembersWorld&) { return UserObjects(); }},
    {"engine objects", 0, 0,
     [](const MembersWorld& world) { return Count(world.engine(), L"LivingObjects"); }},
    {"open files", 0, 0,
     [](const MembersWorld& world) { return Count(world.engine(), L"OpenFiles"); }},
    {"open recordsets", 0, 0,
     [](const MembersWorld& world) { return Count(world.connection(), L"OpenRecordsets"); }},
};

// An array, because what is on a heap counts.
using Stock = std::array<double, std::size(kCounters)>;

Stock TakeStock(const MembersWorld& world) {
  Stock stock;
  for (std::size_t i = 0; i < stock.size(); ++i) stock[i] = kCounters[i].count(world);
  return stock;
}

// Some of the members, in turn.
class Rota {
 public:
  bool empty() const { return members_.empty(); }
  void Add(const Member& member) { members_.push_back(&member); }
  const Member& Next() { return *members_[next_++ % members_.size()]; }

 private:
  std::vector<const Member*> members_;
  std::size_t next_ = 0;
};

class Soak {
 public:
  // Calls every member whose name has `part`, and learns which of them open a window.
  explicit Soak(std::wstring_view part) {
    for (const Member& member : ard::testing::Members()) {
      if (!member.arguments || member.name.find(part) == std::wstring::npos) continue;
      const std::int64_t before = windows_;
      UseWindows(member);
      (windows_ > before ? dialogs_ : member.has_effects ? writers_ : readers_).Add(member);
    }
  }

  // So many calls, of which so many open a dialog.
  void Call(std::int64_t calls, std::int64_t dialogs) {
    const std::int64_t end = calls_ + calls;
    for (std::int64_t i = 1, opened = 0; calls_ < end; ++i) {
      const std::int64_t due = (calls - (end - calls_) + kCallsPerObject) * dialogs / calls;
      if (opened < due && !dialogs_.empty()) {
        ++opened;
        UseWindows(dialogs_.Next());
      } else if (i % kWriterEvery == 0 && !writers_.empty()) {
        Use(writers_.Next(), 1);
      } else if (!readers_.empty()) {
        Use(readers_.Next(), kCallsPerObject);
      } else {
        return;
      }
    }
  }

  const MembersWorld& world() const { return world_; }
  std::int64_t calls() const { return calls_; }
  std::int64_t windows() const { return windows_; }
  int wrong() const { return wrong_; }

 private:
  // What a member writes goes with a company of its own. Only the first answer is looked at: some
  // depend on what the call before has put out.
  void Use(const Member& member, int times) {
    std::unique_ptr<MembersWorld> own;
    if (member.has_effects) own = std::make_unique<MembersWorld>();
    const MembersWorld& world = own ? *own : world_;
    AutomationCall call(world.Create(member.class_name), member, world);
    for (int i = 0; i < times; ++i) {
      ++calls_;
      const HRESULT status = call();
      if (status == S_OK && (i > 0 || member.may_answer(call.Answer()))) continue;
      ++wrong_;
      std::printf("%s: 0x%08lx %s\n", ToUtf8(member.name).c_str(),
                  static_cast<unsigned long>(status), ToUtf8(call.Answer()).c_str());
    }
  }

  void UseWindows(const Member& member) {
    const HastyUser user(member.is_cancelled);
    Use(member, 1);
    windows_ += user.windows();
  }

  MembersWorld world_;
  Rota readers_;
  Rota writers_;
  Rota dialogs_;
  std::int64_t calls_ = 0;
  std::int64_t windows_ = 0;
  int wrong_ = 0;
};

void PrintRow(const Counter& counter, double before, double after, const char* verdict) {
  if (before == kUnknown) {
    std::printf("%-20s this system does not tell\n", counter.name);
  } else {
    std::printf("%-20s %12.0f %12.0f %12.0f%s\n", counter.name, before, after, after - before,
                verdict);
  }
}

int Run(std::int64_t calls, std::int64_t dialogs, std::wstring_view part) {
  Soak soak(part);
  soak.Call(kWarmUp - soak.calls(), kWarmUpDialogs);
  TakeStock(soak.world());
  const std::int64_t calls_before = soak.calls();
  const std::int64_t windows_before = soak.windows();
  const Stock before = TakeStock(soak.world());
  soak.Call(calls, dialogs);
  const Stock after = TakeStock(soak.world());
  const auto windows = static_cast<int>(soak.windows() - windows_before);

  std::printf("%d calls and %d windows after the first %d calls\n",
              static_cast<int>(soak.calls() - calls_before), windows,
              static_cast<int>(calls_before));
  std::printf("%-20s %12s %12s %12s\n", "", "then", "at the end", "more");
  int failed = soak.wrong() > 0;
  int passed = failed == 0;
  for (std::size_t i = 0; i < before.size(); ++i) {
    const Counter& counter = kCounters[i];
    const bool good =
        after[i] - before[i] <= counter.allowed + counter.allowed_per_window * windows;
    ++(good ? passed : failed);
    PrintRow(counter, before[i], after[i], good ? "" : "   LEAK");
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
    result = ard::benchmarks::Run(calls, dialogs, count > 3 ? ard::FromUtf8(arguments[3]) : L"");
  } catch (const ard::Error& error) {
    std::printf("%s\n", ard::ToUtf8(error.text()).c_str());
  }
  OleUninitialize();
  return result;
}
