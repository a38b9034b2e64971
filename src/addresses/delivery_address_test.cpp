#include "addresses/delivery_address.h"

#include "tests/core/company_test.h"

namespace ard::addresses {
namespace {

using dialogs::AddressDialog;
using dialogs::AddressKind;
using dialogs::SelectDialog;
using simulator::CompanyBuilder;

class DeliveryAddressTest : public testing::CompanyTest {
 protected:
  DeliveryAddressTest() {
    CompanyBuilder company;
    company.Customer(L"ABC", L"NAME=ABC Ltd")
        .Customer(L"NONE", L"NAME=No addresses")
        .Supplier(L"ABC", L"NAME=ABC Supply")
        .Setup(L"ADDRESS_PROMPT_1=Street|ADDRESS_PROMPT_6=Ask for");
    for (const auto& [table, address] :
         {std::pair(L"SalesDeliveryData",
                    L"ACCOUNT_REF=OTHER|ADDRESS_REF=1|DESCRIPTION=Not this one"),
          {L"SalesDeliveryData", L"ACCOUNT_REF=ABC|ADDRESS_REF=1|DESCRIPTION=Yard"},
          {L"SalesDeliveryData", L"ACCOUNT_REF=ABC|ADDRESS_REF=2|DESCRIPTION=Shop|DEFAULT_REF=1"},
          {L"PurchaseDeliveryData", L"ACCOUNT_REF=ABC|ADDRESS_REF=1|DESCRIPTION=Depot"},
          {L"CompanyDeliveryData",
           L"ACCOUNT_REF=|ADDRESS_REF=1|DESCRIPTION=Works|ADDRESS_1=Works Road|CONTACT_NAME=Con"},
          {L"CompanyDeliveryData", L"ACCOUNT_REF=|ADDRESS_REF=2|DESCRIPTION=Office"}}) {
      company.Record(table, address);
    }
    Open(company, address_);
  }
  // The dialog as text: the account, and the rows with the selected one marked.
  static std::wstring Shown(AddressDialog& dialog) {
    std::wstring shown = dialog.account() + L"," + dialog.account_name();
    if (!dialog.account_enabled()) shown += L"(disabled)";
    for (const dialogs::Row& row : dialog.list().rows()) {
      shown += (dialog.list().IsSelected(row) ? L"|>" : L"|") + row.text;
    }
    return shown;
  }
  std::wstring Description() {
    return std::wstring(Trimmed(address_.Get(L"Description", &dialogs::Address::description)));
  }

  DeliveryAddress address_{environment_};
};

TEST_F(DeliveryAddressTest, StartsAsTheHostAsks) {
  const struct {
    const wchar_t* acc_ref;
    const wchar_t* acc_name;
    DelAddType type;
    std::wstring shown;
    std::wstring picked;
  } cases[] = {
      {L"ABC", L"Given", DelAddType::kSales, L"ABC,Given|2\tYard\t|>3\tShop\tYes", L"Shop"},
      {L"abc", L"", DelAddType::kPurchase, L"abc,|>1\tDepot\t", L"Depot"},
  };
  for (const auto& c : cases) {
    environment_.AnswerAddresses([&](AddressDialog& dialog) {
      EXPECT_EQ(Shown(dialog), c.shown);
      dialog.Ok();
    });
    EXPECT_TRUE(address_.GetAddress(c.acc_ref, c.acc_name, c.type));
    EXPECT_EQ(Description(), c.picked);
  }
  environment_.AnswerAddresses([](AddressDialog& dialog) {
    EXPECT_EQ(Shown(dialog), L"NONE,");
    EXPECT_FALSE(dialog.ok_enabled());
    EXPECT_FALSE(dialog.details_enabled());
    dialog.Ok();
    dialog.DetailsClick();
    dialog.Cancel();
  });
  EXPECT_FALSE(address_.GetAddress(L"NONE", L"", DelAddType::kSales));
  EXPECT_EQ(Description(), L"Depot");  // unchanged
}

TEST_F(DeliveryAddressTest, FollowsTheKindAndTheAccountEntered) {
  // The list of customers that the look-up opens, then that of suppliers for an unknown reference.
  const auto confirm = [](SelectDialog& dialog) { dialog.Ok(); };
  environment_.AnswerAddresses([&](AddressDialog& dialog) {
    EXPECT_TRUE(dialog.account_enabled());
    dialog.AccountEntered();  // nothing has been entered
    dialog.AccountChange(L"ABC");
    EXPECT_EQ(Shown(dialog), L"ABC,");
    dialog.AccountEntered();
    EXPECT_EQ(Shown(dialog), L"ABC,ABC Ltd|2\tYard\t|>3\tShop\tYes");
    dialog.AccountChange(L"abc ");  // the same account
    EXPECT_EQ(Shown(dialog), L"abc ,ABC Ltd|2\tYard\t|>3\tShop\tYes");
    for (const wchar_t* typed : {L"AB", L"ABC"}) {
      dialog.AccountChange(typed);
      EXPECT_EQ(Shown(dialog), std::wstring(typed) + L",");
      EXPECT_FALSE(dialog.ok_enabled());
      EXPECT_FALSE(dialog.details_enabled());
    }
    dialog.AccountEntered();
    EXPECT_EQ(Shown(dialog), L"ABC,ABC Ltd|2\tYard\t|>3\tShop\tYes");
    dialog.KindChange(AddressKind::kPurchase);
    EXPECT_EQ(Shown(dialog), L",");
    dialog.AccountChange(L"A");
    dialog.AccountEntered();
    EXPECT_EQ(Shown(dialog), L"ABC,ABC Supply|>1\tDepot\t");
    dialog.KindChange(AddressKind::kCompany);
    EXPECT_EQ(Shown(dialog), L",(disabled)|>1\tWorks\t|2\tOffice\t");
    dialog.LookUpClick();  // there is nothing to look up
    dialog.list().SelectItem(2);
    dialog.Ok();
  });
  environment_.Answer(confirm);
  EXPECT_TRUE(address_.GetAddress(L"", L"", DelAddType::kSales));
  EXPECT_EQ(Description(), L"Office");
  EXPECT_EQ(environment_.dialogs_shown(), 2);

  environment_.AnswerAddresses([](AddressDialog& dialog) {
    dialog.LookUpClick();
    EXPECT_EQ(Shown(dialog), L"ABC,ABC Ltd|2\tYard\t|>3\tShop\tYes");
    dialog.LookUpClick();  // cancelled
    EXPECT_EQ(Shown(dialog), L"ABC,ABC Ltd|2\tYard\t|>3\tShop\tYes");
    dialog.AccountChange(L"?");
    dialog.AccountEntered();  // a search, and that cancelled
    EXPECT_EQ(Shown(dialog), L"?,");
    dialog.CloseBox();
  });
  environment_.Answer(confirm);
  EXPECT_FALSE(address_.GetAddress(L"", L"", DelAddType::kSales));
}

}  // namespace
}  // namespace ard::addresses
