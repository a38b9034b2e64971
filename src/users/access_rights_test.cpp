#include "users/access_rights.h"

#include "simulator/company.h"
#include "testing/company_test.h"
#include "testing/recording_workspace.h"

namespace ard::users {
namespace {

using simulator::CompanyBuilder;
using testing::Texts;

class AccessRightsTest : public testing::CompanyTest {
 protected:
  AccessRightsTest() {
    CompanyBuilder company;
    // Each user has every right but one.
    const wchar_t* fields[] = {L"CUST_RECORD", L"SUPP_RECORD", L"NOM_RECORD", L"BANK_RECORD",
                               L"PROD_RECORD", L"INV_EDIT",    L"SOP_ENTRY",  L"POP_ENTRY"};
    for (int kind = 0; kind < 8; ++kind) {
      company.Record(L"AccessData", {{L"NAME", L"USER" + std::to_wstring(kind)},
                                     {fields[kind], 1},
                                     {fields[(kind + 1) % 8], 2}});
    }
    company.Record(L"AccessData", L"NAME= Odd One");
    OpenRecorded(company);
  }
  void OpenRecorded(CompanyBuilder& company) {
    Open(company, rights_);
    rights_.context().workspace = testing::Recorded(engine_->workspace(), recording_);
  }

  testing::Recording recording_;
  AccessRights rights_{environment_};
};

TEST_F(AccessRightsTest, EachKindOfRecordHasItsRight) {
  for (int user = 0; user < 8; ++user) {
    for (int kind = 0; kind < 8; ++kind) {
      EXPECT_EQ(
          rights_.IsUserAllowedAccess(L"User" + std::to_wstring(user), static_cast<Access>(kind)),
          user != kind)
          << user << " " << kind;
    }
  }
  EXPECT_FALSE(rights_.IsUserAllowedAccess(L"USER1", static_cast<Access>(8)));
  EXPECT_FALSE(rights_.IsUserAllowedAccess(L"USER1", static_cast<Access>(-1)));
  EXPECT_EQ(environment_.TakeMessages(), Texts{});
}

TEST_F(AccessRightsTest, ExplainsARefusalToUsersWhenAskedTo) {
  EXPECT_TRUE(rights_.IsUserAllowedAccess(L"USER1", Access::kNominalRecord, true));
  EXPECT_FALSE(rights_.IsUserAllowedAccess(L"NOBODY", Access::kNominalRecord, true));
  EXPECT_EQ(environment_.TakeMessages(), Texts{});
  EXPECT_FALSE(rights_.IsUserAllowedAccess(L"USER2", Access::kNominalRecord, true));
  EXPECT_EQ(environment_.TakeMessages(),
            Texts{L"! Manufacturing: You do not have the access rights to Drill To the selected "
                  L"option.\r\nPlease consult your Administrator."});
}

TEST_F(AccessRightsTest, TheManagerMayDoEverythingWithoutBeingAUser) {
  CompanyBuilder company;
  OpenRecorded(company);
  for (const wchar_t* name : {L"MANAGER", L"manager", L"  Manager "}) {
    EXPECT_TRUE(rights_.IsUserAllowedAccess(name, Access::kPopRecord));
  }
  EXPECT_TRUE(recording_.operations.empty());
  EXPECT_FALSE(rights_.IsValid(L"MANAGER"));
  EXPECT_FALSE(rights_.AddUser(L"ANN"));
}

TEST_F(AccessRightsTest, LooksForTheNameInThreeWaysAndThenAmongAll) {
  EXPECT_TRUE(rights_.IsValid(L"odd one"));
  Texts searches;
  for (const std::wstring& operation : recording_.operations) {
    if (operation.find(L"FindFirst") != std::wstring::npos) searches.push_back(operation);
  }
  const std::wstring pad(23, L' ');
  EXPECT_EQ(searches, (Texts{L"AccessData.FindFirst(\"NAME\", \"ODD ONE" + pad + L"\")",
                             L"AccessData.FindFirst(\"NAME\", \"odd one" + pad + L"\")",
                             L"AccessData.FindFirst(\"NAME\", \"odd one" + pad + L"\")"}));
  EXPECT_TRUE(rights_.IsValid(L"user3"));
  for (const wchar_t* nobody :
       {L"USER", L"USER*", L"", L"xxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxx"}) {
    EXPECT_FALSE(rights_.IsValid(nobody)) << nobody;
  }
}

TEST_F(AccessRightsTest, AddsAUserOnceWithEveryRight) {
  const simulator::Table& access = *engine_->company().Find(L"AccessData");
  EXPECT_TRUE(rights_.AddUser(L"user1"));
  EXPECT_TRUE(rights_.AddUser(L"Newcomer"));
  ASSERT_EQ(access.size(), 10);
  for (std::size_t column = 0; column < access.columns().size(); ++column) {
    const Value cell = access.Cell(10, column);
    const std::wstring& name = access.columns()[column].name;
    EXPECT_EQ(cell.ToText(), name == L"NAME" ? L"Newcomer" : name == L"PASSWORD" ? L"" : L"0");
  }
  EXPECT_TRUE(rights_.IsUserAllowedAccess(L"NEWCOMER", Access::kCustomerRecord));
  EXPECT_FALSE(rights_.AddUser(std::wstring(31, L'x'))) << "the engine refuses it";
  EXPECT_EQ(access.size(), 10);
}

}  // namespace
}  // namespace ard::users
