// Every text with which the members address their users, word for word.
#include <gtest/gtest.h>

#include <set>
#include <string>

#include "testing/members.h"

namespace ard::testing {
namespace {

// Messages as "! title: text", with "x" for a stop; questions as "title: prompt"; dialogs as
// "caption:|column|...", "caption:|label=text|..." or "caption: text".
const std::set<std::wstring> kTexts = {
    L"! Manufacturing: Account is on hold.\r\n\r\nAccount is over credit limit.\r\n\r\n"
    L"Terms have not been agreed with this account.",
    L"! Manufacturing: Account is over credit limit.",
    L"! Manufacturing: An error occurred whilst making an entry to the 'veltrix.ini' file.  The "
    L"error reported is:\r\n\r\nError Number: 5\r\nDescription: Access denied.\r\n\r\nWhat do you "
    L"want to do?",
    L"! Manufacturing: Ardenic is currently running and is a single-user version.\r\n\r\nIn order "
    L"to run Manufacturing, you will need to do one of the following:\r\n\r\n(a) Close Ardenic and "
    L"run Manufacturing again.\r\n(b) Turn access rights off and then run Manufacturing again. "
    L"(Recommended)\r\n\r\nManufacturing will now close to allow you carry out one of the above "
    L"actions.",
    L"! Manufacturing: Could not logon to Ardenic.  The following error was returned by the "
    L"Ardenic program:\r\n\r\n1101\r\nThe user name or the password is wrong.",
    L"! Manufacturing: EVE is not allowed access to Manufacturing.",
    L"! Manufacturing: You do not have the access rights to Drill To the selected option.\r\n"
    L"Please consult your Administrator.",
    L"! Manufacturing: You must enter a user name.",
    L"! User List: You must select a logon to delete.",
    L"x Select Nominal Code: Entry to a major Control Account is not permitted",

    L"Manufacturing: Enter a description for item NEW.",

    L"Company Password: Welcome to Manufacturing.",
    L"Logon: Welcome to Manufacturing.",
    L"Delivery Address Details:|Description=|Name=|Street=|Address 2=|Address 3=|Address 4=|"
    L"Address 5=|Contact=|Telephone=|Fax=|E-mail=",
    L"Delivery Addresses:|No.|Description|Default",
    L"Discount Breakdown:|Discount table=Table C|Account discount %=5|Quantity discount %=8|"
    L"Value discount %=|Unexplained discount %=8",
    L"Select Bank Account:|A/C|Name",
    L"Select Customer:|A/C|Name",
    L"Select Nominal Code:|A/C|Name",
    L"Select Product:|Stock Code|Description",
    L"Select Purchase Order:|P.Order No.|A/C|Name",
    L"Select Sales Order:|S.Order No.|A/C|Name",
    L"Select Supplier:|A/C|Name",
    L"Select User:|User",
    L"User List:",
};

TEST(TextsTest, AreShownWordForWord) {
  std::set<std::wstring> shown;
  for (const Member& member : Members()) {
    const std::shared_ptr<simulator::Simulator> engine = MembersCompany();
    ScriptedEnvironment environment;
    if (member.script) environment.Answer(member.script);
    Context context(environment);
    context.workspace = engine->workspace();
    context.engine = engine;
    context.database = MembersDatabase();
    context.app_name = L"Manufacturing";
    member.bind(context)(nullptr);
    shown.merge(std::set(environment.questions().begin(), environment.questions().end()));
    shown.merge(std::set(environment.captions().begin(), environment.captions().end()));
    for (std::wstring& message : environment.TakeMessages()) shown.insert(std::move(message));
  }
  EXPECT_EQ(shown, kTexts);
}

}  // namespace
}  // namespace ard::testing
