#include "accounts/customers.h"

#include "testing/company_test.h"

namespace ard::accounts {
namespace {

using dialogs::SelectDialog;
using simulator::CompanyBuilder;
using testing::Texts;

const std::wstring kOnHold = L"Account is on hold.";
const std::wstring kOverLimit = L"Account is over credit limit.";
const std::wstring kNoTerms = L"Terms have not been agreed with this account.";
const std::wstring kGap = L"\r\n\r\n";

class CustomersTest : public testing::CompanyTest {
 protected:
  void OpenUsual(bool terms_warning = true) {
    CompanyBuilder company;
    company.Customer(L"ABC001", L"NAME=  ABC Ltd |CONTACT_NAME= Ann ")
        .Customer(L"HOLD", L"ACCOUNT_ON_HOLD=True")
        .Customer(L"NOTERMS", L"TERMS_AGREED_FLAG=False")
        .Customer(L"WORST",
                  L"ACCOUNT_ON_HOLD=True|BALANCE=11|CREDIT_LIMIT=10|TERMS_AGREED_FLAG=False")
        .Customer(L"ZERO", L"BALANCE=11|CREDIT_LIMIT=0")
        .Setup({{L"TERMS_WARNING", terms_warning}});
    Open(company, customers_);
  }

  Customers customers_{environment_};
};

TEST_F(CustomersTest, LooksAccountsUpExactlyAsGiven) {
  OpenUsual();
  const struct {
    std::wstring acc_ref;
    bool valid;
    std::wstring name;
    std::wstring contact;
  } cases[] = {{L"ABC001", true, L"ABC Ltd", L"Ann"},
               {L"abc001", true, L"ABC Ltd", L"Ann"},  // the engine's key, without regard to case
               {L"WORST", true, L"", L""},             // valid without a message
               {L"ABC001 ", false, L"", L""},
               {L" ABC001", false, L"", L""},
               {L"ABC*", false, L"", L""},
               {std::wstring(1 << 20, L'A'), false, L"", L""},
               {std::wstring(1, wchar_t{0xD800}), false, L"", L""}};
  for (const auto& c : cases) {
    EXPECT_EQ(customers_.IsValid(c.acc_ref), c.valid);
    EXPECT_EQ(customers_.GetName(c.acc_ref), c.name);
    EXPECT_EQ(customers_.GetContact(c.acc_ref), c.contact);
  }
  EXPECT_EQ(environment_.TakeMessages(), Texts{});
}

TEST_F(CustomersTest, WarnsAboutTheChoiceAndReturnsIt) {
  const struct {
    std::int32_t position;
    std::wstring acc_ref;
    std::wstring warning;
  } cases[] = {{1, L"ABC001", L""},
               {4, L"WORST", kOnHold + kGap + kOverLimit + kGap + kNoTerms},
               {5, L"ZERO", L""}};
  for (const bool terms_warning : {true, false}) {
    OpenUsual(terms_warning);
    for (const auto& c : cases) {
      Choose(c.position);
      EXPECT_EQ(customers_.FastList(), c.acc_ref);
      const bool warned = terms_warning && !c.warning.empty();
      EXPECT_EQ(environment_.TakeMessages(),
                warned ? Texts{L"! Manufacturing: " + c.warning} : Texts{});
    }
  }
}

// The account can go between the moment it was listed and the moment it is chosen: its row's colour
// and what a blank record says of it are shown all the same, but for the on-hold test.
TEST_F(CustomersTest, AChosenAccountThatCannotBeFoundHasNoTerms) {
  OpenUsual();
  environment_.Answer([&](SelectDialog& dialog) {
    dialog.list().SelectItem(4);
    dialog.Ok();
    customers_.context().workspace = simulator::Simulator::OpenSynthetic(0)->workspace();
  });
  EXPECT_EQ(customers_.FastList(), L"WORST");
  EXPECT_EQ(environment_.TakeMessages(),
            Texts{L"! Manufacturing: " + kOverLimit + kGap + kNoTerms});
}

}  // namespace
}  // namespace ard::accounts
