#include "addresses/delivery_address.h"

#include "tests/core/company_test.h"

namespace ard::addresses {
namespace {

using dialogs::AddressDialog;
using simulator::CompanyBuilder;

class DeliveryAddressTest : public testing::CompanyTest {};

// What is typed empties the list until it has been entered, case and blanks around it aside.
TEST_F(DeliveryAddressTest, TheListIsThatOfTheAccountEntered) {
  DeliveryAddress address(environment_);
  CompanyBuilder company;
  company.Customer(L"ABC", L"NAME=ABC Ltd");
  Open(company.Record(L"SalesDeliveryData", L"ACCOUNT_REF=ABC|ADDRESS_REF=1"), address);
  environment_.AnswerAddresses([&](AddressDialog& dialog) {
    const auto shows = [&](std::wstring_view account, bool has_list) {
      EXPECT_EQ(dialog.account(), account);
      EXPECT_EQ(dialog.account_name(), has_list ? L"ABC Ltd" : L"");
      EXPECT_EQ(dialog.list().rows().size(), has_list ? 1u : 0u);
      EXPECT_EQ(dialog.ok_enabled(), has_list);
      EXPECT_EQ(dialog.details_enabled(), has_list);
      EXPECT_EQ(dialog.entry_pending(), !has_list);
    };
    EXPECT_TRUE(dialog.AccountEntered()) << "nothing has been entered";
    dialog.AccountChange(L"ABC");
    shows(L"ABC", false);
    EXPECT_TRUE(dialog.AccountEntered());
    shows(L"ABC", true);
    dialog.AccountChange(L"abc ");  // the same account
    shows(L"abc ", true);
    for (const wchar_t* typed : {L"AB", L"ABC"}) {
      dialog.AccountChange(typed);
      shows(typed, false);
    }
    EXPECT_TRUE(dialog.AccountEntered());
    shows(L"ABC", true);
    dialog.AccountChange(L"?");
    EXPECT_FALSE(dialog.AccountEntered()) << "not known, and no other picked";
  });
  EXPECT_FALSE(address.GetAddress(L"", L"", DelAddType::kSales));
  EXPECT_EQ(environment_.dialogs_shown(), 2);
}

}  // namespace
}  // namespace ard::addresses
