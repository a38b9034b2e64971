#include "accounts/account_records.h"
#include "accounts/nominal_bank.h"
#include "simulator/company.h"
#include "tests/core/company_test.h"

namespace ard::accounts {
namespace {

class LedgersTest : public testing::CompanyTest {};

TEST_F(LedgersTest, ACancelledReadingOfBankAccountsShowsNothing) {
  simulator::CompanyBuilder company;
  Bank bank(environment_);
  Open(company.Bank(L"1201").Bank(L"1202"), bank);
  environment_.machine().progress_cancelled_at = 1;
  EXPECT_EQ(bank.List(L"*"), L"");
  EXPECT_EQ(environment_.dialogs_shown(), 0);
}

TEST_F(LedgersTest, AFieldThatCannotBeReadLeavesItsPropertyAndTheOthersFollow) {
  simulator::CompanyBuilder company;
  SupplierRecord supplier(environment_);
  Open(company, supplier);
  engine_->company().Parse(L"PurchaseData",
                           "ACCOUNT_REF:text(8)\tCONTACT_NAME:text(4)\tDEF_TAX_CODE:long\t"
                           "DEPT_NUMBER:integer16\nP\t Su\t70000\t3\n",
                           "");
  supplier.details() = {L"Name", L"Nobody", L"4000", 9, 1};
  EXPECT_FALSE(supplier.Read(L"?"));
  EXPECT_EQ(supplier.details().contact_name, L"Nobody");
  EXPECT_TRUE(supplier.Read(L"P"));
  EXPECT_EQ(supplier.details().name, L"Name");          // there is no such field
  EXPECT_EQ(supplier.details().contact_name, L" Su ");  // as it is stored
  EXPECT_EQ(supplier.details().def_tax_code, 9);        // nor a 16-bit number
  EXPECT_EQ(supplier.details().dept_number, 3);
}

}  // namespace
}  // namespace ard::accounts
