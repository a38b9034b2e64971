#include "accounts/customers.h"

#include "tests/core/company_test.h"

namespace ard::accounts {
namespace {

using dialogs::SelectDialog;
using simulator::CompanyBuilder;
using testing::Texts;

class CustomersTest : public testing::CompanyTest {
 protected:
  CustomersTest() {
    CompanyBuilder company;
    company.Customer(L"ABC001").Customer(
        L"WORST", L"ACCOUNT_ON_HOLD=True|BALANCE=11|CREDIT_LIMIT=10|TERMS_AGREED_FLAG=False");
    Open(company, customers_);
  }

  Customers customers_{environment_};
};

// The account can go between the moment it was listed and the moment it is chosen: its row's colour
// and what a blank record says of it are shown all the same, but for the on-hold test.
TEST_F(CustomersTest, AChosenAccountThatCannotBeFoundHasNoTerms) {
  environment_.Answer([&](SelectDialog& dialog) {
    dialog.list().SelectItem(2);
    dialog.Ok();
    customers_.context().workspace = simulator::Simulator::OpenSynthetic(0)->workspace();
  });
  EXPECT_EQ(customers_.FastList(), L"WORST");
  EXPECT_EQ(environment_.TakeMessages(),
            Texts{L"! Manufacturing: Account is over credit limit.\r\n\r\n"
                  L"Terms have not been agreed with this account."});
}

}  // namespace
}  // namespace ard::accounts
