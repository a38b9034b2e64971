// The frame of a test on a company: objects that use its engine, a user who answers their dialogs,
// and the check that nothing is left open.
#ifndef ARD_TESTS_CORE_COMPANY_TEST_H_
#define ARD_TESTS_CORE_COMPANY_TEST_H_

#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <vector>

#include "frame/text.h"
#include "simulator/testing/company_builder.h"
#include "tests/core/scripted_environment.h"

namespace ard::testing {

using Texts = std::vector<std::wstring>;

class CompanyTest : public ::testing::Test {
 protected:
  // Lets the objects work on this company.
  template <class... Objects>
  void Open(simulator::CompanyBuilder& company, Objects&... objects) {
    ExpectNothingOpen();
    engine_ = company.Build();
    (Use(objects.context()), ...);
  }
  void Use(Context& context) {
    context.workspace = engine_->workspace();
    context.app_name = L"Manufacturing";
  }
  void TearDown() override { ExpectNothingOpen(); }
  void ExpectNothingOpen() const {
    if (!engine_) return;
    EXPECT_EQ(engine_->counters().open_files, 0);
    EXPECT_EQ(engine_->counters().living_objects, 0);
  }

  // The first cells of the page shown.
  static Texts Keys(dialogs::ListModel& list) {
    Texts keys;
    for (const dialogs::Row& row : list.rows()) keys.emplace_back(Trimmed(row.Cell(1)));
    return keys;
  }
  ScriptedEnvironment environment_;
  std::shared_ptr<simulator::Simulator> engine_;
};

}  // namespace ard::testing

#endif  // ARD_TESTS_CORE_COMPANY_TEST_H_
