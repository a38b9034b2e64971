// Suppliers, nominal and bank accounts, and the record objects. What suppliers share with customers
// is tested with those.
#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <vector>

#include "accounts/account_records.h"
#include "accounts/nominal_bank.h"
#include "accounts/suppliers.h"
#include "simulator/testing/company_builder.h"
#include "testing/scripted_environment.h"

namespace ard::accounts {
namespace {

using dialogs::SelectDialog;
using simulator::CompanyBuilder;
using testing::Message;

class LedgersTest : public ::testing::Test {
 protected:
  LedgersTest() {
    CompanyBuilder company;
    company
        .Supplier(L"SUP001", {{L"NAME", L"Supply "},
                              {L"CONTACT_NAME", L" Sue"},
                              {L"DISCOUNT_RATE", 2.5},
                              {L"DEF_NOM_CODE", L"5000"},
                              {L"DEF_TAX_CODE", std::int16_t{1}},
                              {L"ACCOUNT_ON_HOLD", true}})
        .Supplier(L"SUP002", {{L"BALANCE", 2.0}, {L"CREDIT_LIMIT", 1.0}})
        .Supplier(L"SUP003", {{L"BALANCE", 2.0}})
        .Nominal(L"1001")
        .Nominal(L"1100", {{L"ACCOUNT_TYPE", std::uint8_t{2}}})
        .Nominal(L"4000")
        .Customer(L"C", {{L"NAME", L" Name "},
                         {L"ADDRESS_2", L" Road "},
                         {L"TELEPHONE", L" 01 "},
                         {L"DEF_NOM_CODE", L"4000"},
                         {L"SETTLEMENT_DISC_RATE", 2.5}});
    for (int bank = 14; bank >= 1; --bank) {
      company.Bank(std::to_wstring(1200 + bank),
                   {{L"NAME", L"Bank " + std::to_wstring(bank)}, {L"DELETED_FLAG", bank == 2}});
    }
    engine_ = company.Build();
    Use(suppliers_);
    Use(nominal_);
    Use(bank_);
    Use(customer_);
    Use(supplier_);
  }
  void Use(PublicClass& object) {
    object.context().workspace = engine_->workspace();
    object.context().app_name = L"Manufacturing";
  }
  void TearDown() override {
    EXPECT_EQ(engine_->counters().open_files, 0);
    EXPECT_EQ(engine_->counters().living_objects, 0);
  }
  // Answers the next dialog: selects item `position` and confirms; notes what is listed.
  void Choose(std::int32_t position) {
    environment_.Answer([=, this](SelectDialog& dialog) {
      dialog.list().SetPageSize(20);
      listed_.clear();
      for (const dialogs::Row& row : dialog.list().rows()) listed_.push_back(row.text);
      dialog.list().SelectItem(position);
      dialog.Ok();
    });
  }

  testing::ScriptedEnvironment environment_;
  std::unique_ptr<simulator::Simulator> engine_;
  std::vector<std::wstring> listed_;
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
  EXPECT_EQ(suppliers_.GetName(L"C"), L"");
  EXPECT_EQ(suppliers_.GetDiscPercent(L"SUP001"), 2.5);
  EXPECT_EQ(suppliers_.GetDiscPercent(L"C"), 0);
  EXPECT_TRUE(environment_.messages().empty());

  Choose(1);
  EXPECT_EQ(suppliers_.FastList(), L"SUP001");
  Choose(2);
  EXPECT_EQ(suppliers_.List(L"SUP*"), L"SUP002");
  Choose(3);
  EXPECT_EQ(suppliers_.FastList(), L"SUP003");
  const std::vector<Message> warnings = {
      {Icon::kExclamation, L"Account is on hold.", L"Manufacturing"},
      {Icon::kExclamation, L"Account is over credit limit.", L"Manufacturing"}};
  EXPECT_EQ(environment_.messages(), warnings);
}

TEST_F(LedgersTest, NominalListsTakePostingAccountsOnly) {
  EXPECT_TRUE(nominal_.IsValid(L"1100"));
  EXPECT_FALSE(nominal_.IsValid(L"11"));
  Choose(2);
  EXPECT_EQ(nominal_.FastList(), L"");
  const std::vector<Message> refusal = {
      {Icon::kStop, L"Entry to a major Control Account is not permitted", L"Select Nominal Code"}};
  EXPECT_EQ(environment_.messages(), refusal);
  environment_.Answer([](SelectDialog& dialog) { dialog.Ok(); });
  EXPECT_EQ(nominal_.List(L"4*"), L"4000");
}

TEST_F(LedgersTest, BankListsShowTwelveOrThoseThatMatch) {
  EXPECT_TRUE(bank_.IsValid(L"1202"));
  EXPECT_FALSE(bank_.IsValid(L"1001"));
  Choose(2);
  EXPECT_EQ(bank_.FastList(), L"1202");  // a deleted one
  EXPECT_EQ(listed_.size(), 12u);

  Choose(2);
  EXPECT_EQ(bank_.List(L"121*"), L"1211");
  EXPECT_EQ(listed_,
            (std::vector<std::wstring>{L"1210\tBank 10", L"1211\tBank 11", L"1212\tBank 12",
                                       L"1213\tBank 13", L"1214\tBank 14"}));
  Choose(1);
  EXPECT_EQ(bank_.List(L"9*"), L"1214");  // none matches: the record on which the file stands
  EXPECT_EQ(listed_.size(), 1u);
  EXPECT_EQ(environment_.progress(), (std::vector<std::wstring>{L"Select Bank Account: 5/14",
                                                                L"Select Bank Account: 1/14"}));
  EXPECT_EQ(bank_.List(L"1*"), L"");
}

TEST_F(LedgersTest, WithoutFilesListsAreEmpty) {
  engine_ = CompanyBuilder().Without(L"BankData").Without(L"NominalData").Build();
  Use(bank_);
  Use(nominal_);
  for (int list = 0; list < 3; ++list) {
    environment_.Answer([](SelectDialog& dialog) {
      EXPECT_TRUE(dialog.list().rows().empty());
      EXPECT_FALSE(dialog.ok_enabled());
      dialog.Ok();
    });
  }
  EXPECT_EQ(bank_.List(L"1*"), L"");
  EXPECT_EQ(bank_.FastList(), L"");
  EXPECT_EQ(nominal_.FastList(), L"");
  EXPECT_EQ(environment_.dialogs_shown(), 3);
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
  EXPECT_EQ(supplier_.details().name.substr(0, 8), L"Supply  ");
  EXPECT_EQ(supplier_.details().contact_name.substr(0, 5), L" Sue ");
  EXPECT_EQ(supplier_.details().def_nom_code, L"5000    ");
  EXPECT_EQ(supplier_.details().def_tax_code, 1);
  supplier_.Put(L"Name", &SupplierDetails::name, L"Other");
  EXPECT_EQ(supplier_.Get(L"Name", &SupplierDetails::name), L"Other");
}

}  // namespace
}  // namespace ard::accounts
