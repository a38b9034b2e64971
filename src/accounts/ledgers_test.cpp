#include "accounts/nominal_bank.h"
#include "tests/core/company_test.h"

namespace ard::accounts {
namespace {

class LedgersTest : public testing::CompanyTest {};

TEST_F(LedgersTest, OnlyAUserEndsTheReadingOfBankAccounts) {
  simulator::CompanyBuilder company;
  Bank bank(environment_);
  Open(company.Bank(L"1201").Bank(L"1202"), bank);
  environment_.machine().progress_cancelled_at = 1;
  EXPECT_EQ(bank.List(L"*"), L"");
  EXPECT_EQ(environment_.dialogs_shown(), 0);
  // Not a display that cannot be shown.
  simulator::FaultPlan plan;
  plan.FailFrom(1, false);
  environment_.Obey(plan);
  environment_.Answer([](dialogs::SelectDialog& dialog) {
    dialog.list().SelectItem(2);
    dialog.Ok();
  });
  EXPECT_EQ(bank.List(L"*"), L"1202");
}

}  // namespace
}  // namespace ard::accounts
