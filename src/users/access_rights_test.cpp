#include "users/access_rights.h"

#include <gtest/gtest.h>

#include <memory>
#include <string>

#include "simulator/company.h"
#include "simulator/testing/company_builder.h"
#include "testing/recording_workspace.h"
#include "testing/scripted_environment.h"

namespace ard::users {
namespace {

using dialogs::SelectDialog;
using simulator::CompanyBuilder;

class AccessRightsTest : public ::testing::Test {
 protected:
  AccessRightsTest() {
    rights_.context().app_name = L"Manufacturing";
    CompanyBuilder company;
    // Each user has every right but one.
    const wchar_t* fields[] = {L"CUST_RECORD", L"SUPP_RECORD", L"NOM_RECORD", L"BANK_RECORD",
                               L"PROD_RECORD", L"INV_EDIT",    L"SOP_ENTRY",  L"POP_ENTRY"};
    for (int kind = 0; kind < 8; ++kind) {
      company.Record(L"AccessData", {{L"NAME", L"USER" + std::to_wstring(kind)},
                                     {fields[kind], 1},
                                     {fields[(kind + 1) % 8], 2}});
    }
    company.Record(L"AccessData", {{L"NAME", L" Odd One"}});
    Use(company.Build());
  }
  void Use(std::unique_ptr<simulator::Simulator> engine) {
    engine_ = std::move(engine);
    rights_.context().workspace = testing::Recorded(engine_->workspace(), recording_);
  }
  void TearDown() override {
    EXPECT_EQ(engine_->counters().open_files, 0);
    EXPECT_EQ(engine_->counters().living_objects, 0);
  }

  testing::ScriptedEnvironment environment_;
  testing::Recording recording_;
  std::unique_ptr<simulator::Simulator> engine_;
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
  EXPECT_TRUE(environment_.messages().empty());
}

TEST_F(AccessRightsTest, ExplainsARefusalToUsersWhenAskedTo) {
  const std::wstring text =
      L"You do not have the access rights to Drill To the selected option.\r\n"
      L"Please consult your Administrator.";
  EXPECT_TRUE(rights_.IsUserAllowedAccess(L"USER1", Access::kNominalRecord, true));
  EXPECT_FALSE(rights_.IsUserAllowedAccess(L"NOBODY", Access::kNominalRecord, true));
  EXPECT_TRUE(environment_.messages().empty());
  EXPECT_FALSE(rights_.IsUserAllowedAccess(L"USER2", Access::kNominalRecord, true));
  EXPECT_EQ(environment_.messages(),
            (std::vector<testing::Message>{{Icon::kExclamation, text, L"Manufacturing"}}));
}

TEST_F(AccessRightsTest, TheManagerMayDoEverythingWithoutBeingAUser) {
  Use(CompanyBuilder().Build());
  for (const wchar_t* name : {L"MANAGER", L"manager", L"  Manager "}) {
    EXPECT_TRUE(rights_.IsUserAllowedAccess(name, Access::kPopRecord));
  }
  EXPECT_TRUE(recording_.operations.empty());
  EXPECT_FALSE(rights_.IsValid(L"MANAGER"));
  EXPECT_FALSE(rights_.AddUser(L"ANN"));
  EXPECT_EQ(rights_.List(), L"");
}

TEST_F(AccessRightsTest, LooksForTheNameInThreeWaysAndThenAmongAll) {
  EXPECT_TRUE(rights_.IsValid(L"odd one"));
  std::vector<std::wstring> searches;
  for (const std::wstring& operation : recording_.operations) {
    if (operation.find(L"FindFirst") != std::wstring::npos) searches.push_back(operation);
  }
  const std::wstring pad(23, L' ');
  EXPECT_EQ(searches, (std::vector<std::wstring>{
                          L"AccessData.FindFirst(\"NAME\", \"ODD ONE" + pad + L"\")",
                          L"AccessData.FindFirst(\"NAME\", \"odd one" + pad + L"\")",
                          L"AccessData.FindFirst(\"NAME\", \"odd one" + pad + L"\")"}));
  EXPECT_TRUE(rights_.IsValid(L"user3"));
  EXPECT_FALSE(rights_.IsValid(L"USER"));
  EXPECT_FALSE(rights_.IsValid(L"USER*"));
  EXPECT_FALSE(rights_.IsValid(L""));
  EXPECT_FALSE(rights_.IsValid(std::wstring(40, L'x')));
}

TEST_F(AccessRightsTest, AddsAUserOnceWithEveryRight) {
  const simulator::Table& access = *engine_->company().Find(L"AccessData");
  EXPECT_TRUE(rights_.AddUser(L"user1"));
  EXPECT_EQ(access.size(), 9) << "there already";
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

TEST_F(AccessRightsTest, ListsTheUsers) {
  environment_.Answer([](SelectDialog& dialog) {
    EXPECT_EQ(dialog.caption(), L"Select User");
    EXPECT_EQ(dialog.list().row_count(), 9);
    dialog.list().SelectItem(9);
    dialog.Ok();
  });
  EXPECT_EQ(rights_.List(), L"Odd One");
  environment_.Answer([](SelectDialog& dialog) { dialog.Cancel(); });
  EXPECT_EQ(rights_.List(), L"");
}

}  // namespace
}  // namespace ard::users
