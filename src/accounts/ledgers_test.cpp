// Suppliers, nominal and bank accounts, and the record objects. What suppliers share with customers
// is tested with those.
#include <algorithm>

#include "accounts/account_records.h"
#include "accounts/nominal_bank.h"
#include "accounts/suppliers.h"
#include "simulator/company.h"
#include "testing/company_test.h"

namespace ard::accounts {
namespace {

using simulator::CompanyBuilder;
using testing::Texts;

class LedgersTest : public testing::CompanyTest {
 protected:
  LedgersTest() {
    CompanyBuilder company;
    company
        .Supplier(L"SUP001",
                  L"NAME=Supply |CONTACT_NAME= Sue|DISCOUNT_RATE=2.5|DEF_NOM_CODE=5000|"
                  L"DEF_TAX_CODE=1|ACCOUNT_ON_HOLD=True")
        .Supplier(L"SUP002", L"BALANCE=2|CREDIT_LIMIT=1")
        .Nominal(L"1001")
        .Nominal(L"1100", L"ACCOUNT_TYPE=2")
        .Nominal(L"4000")
        .Customer(L"C",
                  L"NAME= Name |ADDRESS_2= Road |TELEPHONE= 01 |DEF_NOM_CODE=4000|"
                  L"SETTLEMENT_DISC_RATE=2.5");
    for (int bank = 14; bank >= 1; --bank) {
      company.Bank(std::to_wstring(1200 + bank),
                   {{L"NAME", L"Bank " + std::to_wstring(bank)}, {L"DELETED_FLAG", bank == 2}});
    }
    Open(company, suppliers_, nominal_, bank_, customer_, supplier_);
  }

  Suppliers suppliers_{environment_};
  Nominal nominal_{environment_};
  Bank bank_{environment_};
  CustomerRecord customer_{environment_};
  SupplierRecord supplier_{environment_};
};

TEST_F(LedgersTest, SuppliersAreThoseOfThePurchaseLedger) {
  EXPECT_TRUE(suppliers_.IsValid(L"SUP001"));
  EXPECT_FALSE(suppliers_.IsValid(L"C"));
  EXPECT_EQ(suppliers_.GetName(L"SUP001"), L"Supply");
  EXPECT_EQ(suppliers_.GetDiscPercent(L"SUP001"), 2.5);
  EXPECT_EQ(suppliers_.GetDiscPercent(L"C"), 0);
  Choose(1);
  EXPECT_EQ(suppliers_.FastList(), L"SUP001");
  Choose(2);
  EXPECT_EQ(suppliers_.List(L"SUP*"), L"SUP002");
  EXPECT_EQ(environment_.TakeMessages(),
            (Texts{L"! Manufacturing: Account is on hold.",
                   L"! Manufacturing: Account is over credit limit."}));
}

TEST_F(LedgersTest, NominalListsTakePostingAccountsOnly) {
  EXPECT_TRUE(nominal_.IsValid(L"1100"));
  Choose(2);
  EXPECT_EQ(nominal_.FastList(), L"");
  EXPECT_EQ(environment_.TakeMessages().size(), 1u);
  environment_.Answer([](dialogs::SelectDialog& dialog) { dialog.Ok(); });
  EXPECT_EQ(nominal_.List(L"4*"), L"4000");
}

TEST_F(LedgersTest, BankListsShowTwelveOrThoseThatMatch) {
  EXPECT_TRUE(bank_.IsValid(L"1202"));
  Choose(2);
  EXPECT_EQ(bank_.FastList(), L"1202");  // a deleted one
  EXPECT_EQ(std::count(listed_.begin(), listed_.end(), L'|'), 12);

  // Neither list has a row selected, so that there is nothing to confirm yet.
  for (int list = 0; list < 2; ++list) {
    environment_.Answer([](dialogs::SelectDialog& dialog) {
      EXPECT_FALSE(dialog.ok_enabled());
      dialog.KeyPress(dialogs::kEnterKey);
      EXPECT_TRUE(dialog.visible());
      dialog.KeyPress(L' ');
      dialog.KeyPress(dialogs::kEnterKey);
    });
    EXPECT_EQ(list == 0 ? bank_.FastList() : bank_.List(L"12*"), L"1201");
  }
  Choose(2);
  EXPECT_EQ(bank_.List(L"121*"), L"1211");
  EXPECT_EQ(listed_,
            L"SelectBankAccount:A/C|1210\tBank10|1211\tBank11|1212\tBank12|1213\tBank13|"
            L"1214\tBank14");
  Choose(1);
  EXPECT_EQ(bank_.List(L"9*"), L"1214");  // none matches: the record on which the file stands
  EXPECT_EQ(listed_, L"SelectBankAccount:A/C|1214\tBank14");
  EXPECT_EQ(environment_.progress(),
            (Texts{L"Reading bank accounts: 14/14", L"Reading bank accounts: 5/14",
                   L"Reading bank accounts: 1/14"}));
  environment_.machine().progress_cancelled_at = 3;
  listed_.clear();
  EXPECT_EQ(bank_.List(L"*"), L"");
  EXPECT_EQ(listed_, L"") << "nothing is shown";
  EXPECT_EQ(environment_.progress().back(), L"Reading bank accounts: 3/14");
}

TEST_F(LedgersTest, RecordsKeepWhatTheyHaveRead) {
  ASSERT_TRUE(customer_.Read(L"C"));
  EXPECT_FALSE(customer_.Read(L"?"));
  const CustomerDetails& customer = customer_.details();
  EXPECT_EQ(customer.name, L"Name");
  EXPECT_EQ(customer.address_2, L"Road");
  EXPECT_EQ(customer.tel_number, L"01");
  EXPECT_EQ(customer.sett_discount, 2.5);
  EXPECT_EQ(customer.nominal_code, L"4000    ");  // as it is stored

  ASSERT_TRUE(supplier_.Read(L"SUP001"));
  EXPECT_EQ(supplier_.details().name, L"Supply" + std::wstring(54, L' '));
  EXPECT_EQ(supplier_.details().contact_name.substr(0, 5), L" Sue ");
  EXPECT_EQ(supplier_.details().def_nom_code, L"5000    ");
  EXPECT_EQ(supplier_.details().def_tax_code, 1);
}

TEST_F(LedgersTest, AFieldThatCannotBeReadLeavesItsPropertyAndTheOthersFollow) {
  engine_->company().Parse(L"PurchaseData",
                           "ACCOUNT_REF:text(8)\tCONTACT_NAME:text(4)\tDEF_TAX_CODE:long\t"
                           "DEPT_NUMBER:integer16\nP\tSue\t70000\t3\n",
                           "");
  supplier_.details() = {L"Name", L"Nobody", L"4000", 9, 1};
  EXPECT_TRUE(supplier_.Read(L"P"));
  EXPECT_EQ(supplier_.details().name, L"Name");  // there is no such field
  EXPECT_EQ(supplier_.details().contact_name, L"Sue ");
  EXPECT_EQ(supplier_.details().def_tax_code, 9);  // nor a 16-bit number
  EXPECT_EQ(supplier_.details().dept_number, 3);
}

}  // namespace
}  // namespace ard::accounts
