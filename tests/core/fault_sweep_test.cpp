// The fault sweep: every member is run with its n-th operation failing, for every n, and with all
// from the n-th on failing; then the same with its allocations. Each time it has to give a neutral
// or a described answer, to show no message that is not described, and to leave nothing open; and
// with operations failing, exactly what is written down.
// With nothing failing, it has to ask the engine for no more than it needs, and to answer the same
// whether or not the engine's fields follow it from record to record.
#include <gtest/gtest.h>

#include <algorithm>
#include <cctype>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <map>
#include <memory>
#include <new>
#include <optional>
#include <set>
#include <string>

#include "frame/text.h"
#include "simulator/company.h"
#include "tests/core/members.h"
#include "tests/core/memory_faults.h"

namespace ard::testing {
namespace {

enum class Failing { kOperations, kOperationsOnSnapshots, kAllocations };
constexpr const char* kNames[] = {"operations", "operations on snapshots", "allocations"};

class FaultSweepTest : public ::testing::TestWithParam<Member> {
 protected:
  void RunAll(Failing failing) {
    // The first run has tables to build that every other one finds.
    Run(Failing::kOperations, 0, false);
    const std::wstring answer = answer_;
    const std::int64_t steps = Run(failing, 0, false);
    EXPECT_EQ(ToUtf8(answer_), ToUtf8(answer));
    Outcomes once, on;
    for (std::int64_t n = 1; n <= steps && !HasFailure(); ++n) {
      Run(failing, n, false);
      once.Tell(n, outcome_);
      Run(failing, n, true);
      on.Tell(n, outcome_);
    }
    if (failing == Failing::kOperations) ExpectTold("\n  one:" + once.told + "\n  on:" + on.told);
    Swept& swept = swept_[kNames[static_cast<int>(failing)]];
    ++swept.members;
    swept.steps += steps;
  }
  // What has been swept, each step alone and with all after it.
  static void TearDownTestSuite() {
    for (const auto& [what, swept] : swept_) {
      std::printf("swept in all: %lld members and walks, %lld %s, %lld runs\n", swept.members,
                  swept.steps, what.c_str(), 2 * (swept.members + swept.steps));
    }
  }

 private:
  struct Swept {
    long long members = 0, steps = 0;
  };
  static inline std::map<std::string, Swept> swept_;

  // What has come of one run after the other, where it is something else than before.
  struct Outcomes {
    std::string told, last = "none yet";
    void Tell(std::int64_t n, const std::string& outcome) {
      if (outcome != last) told += "  " + std::to_string(n) + " " + outcome;
      last = outcome;
    }
  };

  // Which steps the trace has told as skipped, and what has come of each run, as skipped_steps.txt
  // has them by members. With ARD_SKIPPED, a file, they are written there anew, to be read before
  // it takes the place of that.
  void ExpectTold(const std::string& outcomes) const {
    const std::string name = ToUtf8(GetParam().name);
    std::string told;
    for (const std::string& step : skipped_) told += "  " + step;
    told += outcomes;
    if (const char* const anew = std::getenv("ARD_SKIPPED")) {
      std::ofstream(anew, std::ios::app) << name << '\n' << told << '\n';
    }
    std::ifstream file(ARD_SKIPPED);
    std::string expected[3];
    while (std::getline(file, expected[0]) && expected[0] != name) continue;
    for (std::string& line : expected) std::getline(file, line);
    EXPECT_EQ(expected[0] + "\n" + expected[1] + "\n" + expected[2], told);
  }

  // How many steps the member has taken.
  std::int64_t Run(Failing failing, std::int64_t fail_at, bool persist) {
    const Member& member = GetParam();
    RenewCompany();
    engine_->SnapshotFields(failing == Failing::kOperationsOnSnapshots);
    ScriptedEnvironment environment;
    if (member.script) environment.Answer(member.script);
    environment.machine().input = L"Asked";
    environment.Obey(engine_->faults());
    database_->Obey(engine_->faults());
    Trace::Origin origin;
    origin.detail = true;
    static const std::string password = ToUtf8(kPassword);
    environment.trace().Attach(
        [this](std::string_view line) {
          EXPECT_EQ(line.find(password), line.npos) << "a password in the trace: " << line;
          const AllocationsObey none(nullptr);
          if (const std::size_t skip = line.find("\tskip\t"); skip != line.npos) {
            skipped_.insert(
                std::string(line.substr(skip + 6, line.find('\t', skip + 6) - skip - 6)));
          }
        },
        origin);
    Context context(environment);
    context.workspace = engine_->workspace();
    context.engine = engine_;
    context.database = database_;
    context.app_name = L"Manufacturing";
    const Call call = member.bind(context);

    simulator::FaultPlan memory;
    simulator::FaultPlan& plan = failing == Failing::kAllocations ? memory : engine_->faults();
    engine_->faults().Reset();
    plan.FailFrom(fail_at, persist);
    const std::int64_t asked_before = engine_->operations();
    const std::int64_t logoffs_before = engine_->disconnects();
    std::wstring& answer = answer_;
    answer.clear();
    try {
      const AllocationsObey obey(&memory);
      call(&answer);
    } catch (const std::bad_alloc&) {
      // No member lets an exception out: this is of the table's own code between the calls.
    }
    // There may have been no memory for an answer.
    const bool is_neutral = memory.failed() > 0 && answer.empty();

    outcome_ = '"' + ToUtf8(answer) + '"';
    for (const std::wstring& message : environment.TakeMessages())
      outcome_ += " " + ToUtf8(message);
    std::erase(outcome_, '\r');
    std::replace(outcome_.begin(), outcome_.end(), '\n', '/');
    const std::int64_t written = engine_->company().records_written() - written_;
    if (written > 0) outcome_ += " +" + std::to_string(written);
    const std::int64_t logoffs = engine_->disconnects() - logoffs_before;
    if (logoffs > 0) outcome_ += " -" + std::to_string(logoffs);

    const std::string where = std::to_string(fail_at) + (persist ? " on" : "");
    EXPECT_TRUE(is_neutral || member.may_answer(answer)) << where << ": " << ToUtf8(answer);
    EXPECT_EQ(engine_->counters().open_files, 0) << where;
    EXPECT_EQ(engine_->counters().living_objects, 0) << where;
    EXPECT_EQ(database_->open_recordsets(), 0) << where;
    // Somebody only after True, as long as the engine can log them off.
    EXPECT_TRUE(answer == L"True" || engine_->user().empty() || engine_->faults().persists())
        << where << ": " << ToUtf8(engine_->user());
    for (const Message& message : environment.messages()) {
      EXPECT_TRUE(IsKnownMessage(message)) << where << ": " << ToUtf8(message.text);
    }
    EXPECT_EQ(plan.failed() > 0, fail_at > 0) << where;
    if (fail_at == 0) {
      const bool counted = member.operations != kAsItIs;
      EXPECT_TRUE(counted || member.script || member.has_effects);
      const std::int64_t asked = engine_->operations() - asked_before;
      EXPECT_EQ(asked, counted ? member.operations : asked);
    }
    return plan.operations();
  }

  // To build a company takes longer than most calls do: it serves until something has changed it.
  void RenewCompany() {
    if (engine_ && engine_->company().records_written() == written_ && engine_->user().empty()) {
      return;
    }
    engine_ = MembersCompany();
    written_ = engine_->company().records_written();
  }

  const std::shared_ptr<host_database::OdbcConnection> database_ = MembersDatabase();
  std::shared_ptr<simulator::Simulator> engine_;
  std::int64_t written_ = 0;
  std::wstring answer_;  // of the last run
  // And that with the messages shown, "+" and how many records were written, "-" and how often
  // somebody was logged off.
  std::string outcome_;
  std::set<std::string> skipped_;
};

TEST_P(FaultSweepTest, FailsCleanlyAtEveryOperation) { RunAll(Failing::kOperations); }
TEST_P(FaultSweepTest, DoesTheSameWithSnapshotsOfFields) {
  RunAll(Failing::kOperationsOnSnapshots);
}
TEST_P(FaultSweepTest, FailsCleanlyWhenMemoryRunsOut) { RunAll(Failing::kAllocations); }

// The letters and digits of the member's name.
std::string TestName(const ::testing::TestParamInfo<Member>& member) {
  std::string name = ToUtf8(member.param.name);
  std::erase_if(name, [](unsigned char c) { return !std::isalnum(c); });
  return name;
}

INSTANTIATE_TEST_SUITE_P(AllMembers, FaultSweepTest, ::testing::ValuesIn(Members()), TestName);

}  // namespace
}  // namespace ard::testing
