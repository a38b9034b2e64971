// The fault sweep: every member is run with its n-th operation failing, for every n, and with all
// from the n-th on failing. Each time it has to give a neutral or a described answer, to show no
// message that is not described, and to leave nothing open.
#include <gtest/gtest.h>

#include <cctype>
#include <cstdio>
#include <memory>
#include <string>

#include "frame/text.h"
#include "testing/members.h"

namespace ard::testing {
namespace {

// What has been swept in all.
struct Totals {
  int members = 0;
  std::int64_t operations = 0;
  std::int64_t runs = 0;
} totals;

class Report : public ::testing::Environment {
  void TearDown() override {
    std::printf("swept in all: %d members and walks through handlers, %d operations, %d runs\n",
                totals.members, static_cast<int>(totals.operations), static_cast<int>(totals.runs));
  }
};
const auto* const kReport = ::testing::AddGlobalTestEnvironment(new Report);

class FaultSweepTest : public ::testing::TestWithParam<Member> {};

TEST_P(FaultSweepTest, FailsCleanlyAtEveryOperation) {
  const Member& member = GetParam();
  static const auto database = MembersDatabase();
  const auto run = [&](std::int64_t fail_at, bool persist) {
    // Some members write.
    const std::shared_ptr<simulator::Simulator> engine = MembersCompany();
    ScriptedEnvironment environment;
    if (member.script) environment.Answer(member.script);
    environment.AnswerInput(L"Asked");
    environment.Obey(engine->faults());
    database->Obey(engine->faults());
    Context context(environment);
    context.workspace = engine->workspace();
    context.engine = engine;
    context.database = database;
    context.app_name = L"Manufacturing";
    const Call call = member.bind(context);
    engine->faults().FailFrom(fail_at, persist);
    std::wstring answer;
    call(&answer);
    const std::int64_t failed = engine->faults().failed();
    const std::int64_t operations = engine->faults().operations();

    const std::string where = "operation " + std::to_string(fail_at) + (persist ? " on" : "");
    EXPECT_TRUE(member.may_answer(answer)) << where << ": " << ToUtf8(answer);
    EXPECT_EQ(engine->counters().open_files, 0) << where;
    EXPECT_EQ(engine->counters().living_objects, 0) << where;
    EXPECT_EQ(database->open_recordsets(), 0) << where;
    for (const Message& message : environment.messages()) {
      EXPECT_TRUE(IsKnownMessage(message)) << where << ": " << ToUtf8(message.text);
    }
    EXPECT_EQ(failed > 0, fail_at > 0) << where;
    return operations;
  };

  const std::int64_t operations = run(0, false);
  ASSERT_GT(operations, 0);
  for (std::int64_t n = 1; n <= operations && !HasFailure(); ++n) {
    run(n, false);
    run(n, true);
  }
  ++totals.members;
  totals.operations += operations;
  totals.runs += 2 * operations + 1;
  std::printf("swept %s: %d operations, %d runs\n", ToUtf8(member.name).c_str(),
              static_cast<int>(operations), static_cast<int>(2 * operations + 1));
}

// The letters and digits of the member's name.
std::string TestName(const ::testing::TestParamInfo<Member>& member) {
  std::string name = ToUtf8(member.param.name);
  std::erase_if(name, [](unsigned char c) { return !std::isalnum(c); });
  return name;
}

INSTANTIATE_TEST_SUITE_P(AllMembers, FaultSweepTest, ::testing::ValuesIn(Members()), TestName);

}  // namespace
}  // namespace ard::testing
