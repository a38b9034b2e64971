// The fault sweep through the registered library: every member that a host can call is called with
// one operation after the other failing, of the engine and of the host's database. Each time the
// call has to succeed as such, to give an answer that the member may give, and to leave nothing
// open and nobody logged on but after True. Of members with very many operations, or with dialogs,
// only some of them fail: the native sweep lets all fail.
#include "tests/windows/automation_members.h"
// After windows.h.
#include <gtest/gtest.h>
#include <ole2.h>

#include <algorithm>
#include <cctype>
#include <cstdio>
#include <cstdlib>
#include <memory>
#include <string>
#include <vector>

#include "frame/text.h"
#include "tests/windows/hasty_user.h"
#include "windows/engine/variant.h"

namespace ard::windows::testing {
namespace {

using ard::testing::Member;

constexpr int kMostFailures = 100;
constexpr int kMostFailuresWithDialog = 12;
constexpr DWORD kMostMilliseconds = 100'000;  // for one member

// Ends the program when a member does not come back.
class Watchdog {
 public:
  explicit Watchdog(const std::wstring& member) : member_(ToUtf8(member)) {
    CreateTimerQueueTimer(&timer_, nullptr, GiveUp, this, kMostMilliseconds, 0, WT_EXECUTEONLYONCE);
  }
  Watchdog(const Watchdog&) = delete;
  Watchdog& operator=(const Watchdog&) = delete;
  ~Watchdog() { DeleteTimerQueueTimer(nullptr, timer_, INVALID_HANDLE_VALUE); }

 private:
  static void CALLBACK GiveUp(void* self, BOOLEAN) {
    std::printf("%s does not come back\n", static_cast<Watchdog*>(self)->member_.c_str());
    std::fflush(nullptr);
    std::_Exit(1);
  }

  std::string member_;
  HANDLE timer_ = nullptr;
};

struct Totals {
  int members = 0;
  int operations = 0;
  int failed = 0;
  int changed = 0;  // answers
} totals;

// Which operation fails: of the engine or of the database, from 1; 0 for none.
struct Fault {
  long engine = 0;
  long database = 0;
};

struct Outcome {
  std::wstring answer;
  int engine_operations = 0;
  int database_operations = 0;
  int windows = 0;
};

class DllSweepTest : public ::testing::TestWithParam<Member> {
 protected:
  Outcome Run(const Fault& fault) {
    SCOPED_TRACE("engine " + std::to_string(fault.engine) + ", database " +
                 std::to_string(fault.database));
    if (!world_ || member_.has_effects) world_ = std::make_unique<MembersWorld>();
    const LateBound& engine = world_->engine();
    const LateBound& database = world_->connection();
    const double files = Count(engine, L"OpenFiles");
    const double objects = Count(engine, L"LivingObjects");
    Outcome outcome;
    {
      AutomationCall call(world_->Create(member_.class_name), member_, *world_);
      const double before = Count(engine, L"Operations");
      Fail(engine, fault.engine);
      Fail(database, fault.database);
      const HastyUser user(member_.is_cancelled);
      EXPECT_EQ(call(), S_OK);
      outcome.windows = user.windows();
      outcome.answer = call.Answer();
      outcome.engine_operations = static_cast<int>(Count(engine, L"Operations") - before);
      outcome.database_operations = static_cast<int>(Count(database, L"Operations"));
      Fail(engine, 0);
      Fail(database, 0);
    }
    EXPECT_TRUE(member_.may_answer(outcome.answer)) << ToUtf8(outcome.answer);
    EXPECT_EQ(Count(engine, L"OpenFiles"), files);
    EXPECT_EQ(Count(engine, L"LivingObjects"), objects);
    EXPECT_EQ(Count(database, L"OpenRecordsets"), 0);
    EXPECT_EQ(VisibleWindows(), 0);
    EXPECT_TRUE(outcome.answer == L"True" || FromVariant(engine.Call(L"User")).ToText().empty());
    return outcome;
  }

  // Lets some or all of so many operations fail, one in each run.
  template <class MakeFault>
  void Sweep(int operations, const Outcome& usual, MakeFault fault_at) {
    const int most = usual.windows > 0 ? kMostFailuresWithDialog : kMostFailures;
    const int step = (operations + most - 1) / most;
    for (int n = 1; n <= operations && !HasFailure(); n += step) {
      totals.changed += Run(fault_at(n)).answer != usual.answer;
      ++failed_;
    }
  }

  const Member& member_ = GetParam();
  std::unique_ptr<MembersWorld> world_;
  int failed_ = 0;

 private:
  static void Fail(const LateBound& object, long n) {
    std::vector<ScopedVariant> arguments;
    arguments.push_back(Variant(n));
    arguments.push_back(ToVariant(false));
    object.Call(L"FailFrom", std::move(arguments));
  }
};

TEST_P(DllSweepTest, FailsCleanly) {
  const Watchdog watchdog(member_.name);
  const Outcome usual = Run({});
  Sweep(usual.engine_operations, usual, [](long n) { return Fault{.engine = n}; });
  Sweep(usual.database_operations, usual, [](long n) { return Fault{.database = n}; });

  const int operations = usual.engine_operations + usual.database_operations;
  ++totals.members;
  totals.operations += operations;
  totals.failed += failed_;
  std::printf("%s: %s, %d windows, %d of %d operations failed\n", ToUtf8(member_.name).c_str(),
              ToUtf8(usual.answer).c_str(), usual.windows, failed_, operations);
}

class Surroundings : public ::testing::Environment {
  void SetUp() override { ASSERT_EQ(OleInitialize(nullptr), S_OK); }
  void TearDown() override {
    OleUninitialize();
    std::printf("swept in all: %d members, %d of %d operations failed, %d answers changed by it\n",
                totals.members, totals.failed, totals.operations, totals.changed);
    EXPECT_GT(totals.changed, 0);
  }
};
[[maybe_unused]] const auto* const kSurroundings =
    ::testing::AddGlobalTestEnvironment(new Surroundings);

std::vector<Member> CallableMembers() {
  std::vector<Member> members = ard::testing::Members();
  std::erase_if(members, [](const Member& member) { return !member.arguments; });
  return members;
}

// The letters and digits of the member's name.
std::string TestName(const ::testing::TestParamInfo<Member>& member) {
  std::string name = ToUtf8(member.param.name);
  std::erase_if(name, [](unsigned char c) { return !std::isalnum(c); });
  return name;
}

INSTANTIATE_TEST_SUITE_P(AllMembers, DllSweepTest, ::testing::ValuesIn(CallableMembers()),
                         TestName);

}  // namespace
}  // namespace ard::windows::testing
