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
int answers_changed = 0;  // by all that failed

struct Outcome {
  std::wstring answer;
  int engine_operations = 0;
  int database_operations = 0;
  int windows = 0;
};

class DllSweepTest : public ::testing::TestWithParam<Member> {
 protected:
  // With that operation of the engine or of the database failing, from 1; 0 for none.
  Outcome Run(int engine_fault, int database_fault) {
    SCOPED_TRACE("engine " + std::to_string(engine_fault) + ", database " +
                 std::to_string(database_fault));
    if (!world_ || member_.has_effects) world_ = std::make_unique<MembersWorld>();
    const LateBound& engine = world_->engine();
    const LateBound& database = world_->connection();
    const double files = Count(engine, L"OpenFiles");
    const double objects = Count(engine, L"LivingObjects");
    Outcome outcome;
    {
      AutomationCall call(world_->Create(member_.class_name), member_, *world_);
      const double before = Count(engine, L"Operations");
      engine.Ask(L"FailFrom", engine_fault, 0);
      database.Ask(L"FailFrom", database_fault, 0);
      const HastyUser user(member_.is_cancelled);
      EXPECT_EQ(call(), S_OK);
      outcome.windows = user.windows();
      outcome.answer = call.Answer();
      outcome.engine_operations = static_cast<int>(Count(engine, L"Operations") - before);
      outcome.database_operations = static_cast<int>(Count(database, L"Operations"));
      engine.Ask(L"FailFrom", 0, 0);
      database.Ask(L"FailFrom", 0, 0);
    }
    EXPECT_TRUE(member_.may_answer(outcome.answer)) << ToUtf8(outcome.answer);
    EXPECT_EQ(Count(engine, L"OpenFiles"), files);
    EXPECT_EQ(Count(engine, L"LivingObjects"), objects);
    EXPECT_EQ(Count(database, L"OpenRecordsets"), 0);
    EXPECT_TRUE(VisibleWindows().empty());
    EXPECT_TRUE(outcome.answer == L"True" || FromVariant(engine.Call(L"User")).ToText().empty());
    return outcome;
  }

  const Member& member_ = GetParam();
  std::unique_ptr<MembersWorld> world_;
};

TEST_P(DllSweepTest, FailsCleanly) {
  const Outcome usual = Run(0, 0);
  const int most = usual.windows > 0 ? kMostFailuresWithDialog : kMostFailures;
  const auto sweep = [&](int operations, int engine, int database) {
    const int step = (operations + most - 1) / most;
    for (int n = 1; n <= operations && !HasFailure(); n += step) {
      answers_changed += Run(n * engine, n * database).answer != usual.answer;
    }
  };
  sweep(usual.engine_operations, 1, 0);
  sweep(usual.database_operations, 0, 1);
}

class Surroundings : public ::testing::Environment {
  void SetUp() override { ASSERT_EQ(OleInitialize(nullptr), S_OK); }
  void TearDown() override {
    OleUninitialize();
    EXPECT_GT(answers_changed, 0);
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
