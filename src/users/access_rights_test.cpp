#include "users/access_rights.h"

#include "simulator/company.h"
#include "tests/core/company_test.h"

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
    company.Record(L"AccessData", L"NAME= Odd One").Record(L"AccessData", {});
    Open(company, rights_);
  }

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
  KeepNotes();
  EXPECT_FALSE(rights_.IsUserAllowedAccess(L"USER1", Access::kSupplierRecord));
  EXPECT_FALSE(rights_.IsUserAllowedAccess(L"*", Access::kSupplierRecord));
  EXPECT_FALSE(rights_.AddUser(L" "));
  EXPECT_FALSE(rights_.IsUserAllowedAccess(L"USER1", static_cast<Access>(8)));
  EXPECT_EQ(
      notes_,
      (Texts{L"AccessData.HasRight(\"SUPP_RECORD\"): Refused: the right is 1, or cannot be read.",
             L"AccessData.FindUser: Refused: nobody can have that name.",
             L"cAccessRights.AddUser: Refused: nobody can have that name.",
             L"cAccessRights.IsUserAllowedAccess: Refused: there is no such kind of record."}));
  EXPECT_FALSE(rights_.IsUserAllowedAccess(L"USER1", static_cast<Access>(-1)));
  EXPECT_EQ(environment_.TakeMessages(), Texts{});
}

TEST_F(AccessRightsTest, ExplainsARefusalToUsersWhenAskedTo) {
  EXPECT_TRUE(rights_.IsUserAllowedAccess(L"USER1", Access::kNominalRecord, true));
  EXPECT_FALSE(rights_.IsUserAllowedAccess(L"NOBODY", Access::kNominalRecord, true));
  EXPECT_EQ(environment_.TakeMessages(), Texts{});
  EXPECT_FALSE(rights_.IsUserAllowedAccess(L"USER2", Access::kNominalRecord, true));
  EXPECT_EQ(environment_.TakeMessages().size(), 1u);
}

TEST_F(AccessRightsTest, TheManagerMayDoEverythingWithoutBeingAUser) {
  CompanyBuilder company;
  Open(company, rights_);
  for (const wchar_t* name : {L"MANAGER", L"manager", L"  Manager "}) {
    EXPECT_TRUE(rights_.IsUserAllowedAccess(name, Access::kPopRecord));
  }
  EXPECT_EQ(engine_->operations(), 0);
  EXPECT_FALSE(rights_.IsValid(L"MANAGER"));
  EXPECT_FALSE(rights_.AddUser(L"ANN"));
}

// There is a record without a name, and a pattern matches others.
TEST_F(AccessRightsTest, BlanksAndPatternsAreNobody) {
  const simulator::Table& access = *engine_->company().Find(L"AccessData");
  for (const wchar_t* user : {L"odd one", L" Odd One ", L"user3"}) {
    EXPECT_TRUE(rights_.IsValid(user)) << user;
  }
  for (const std::wstring& nobody : {std::wstring(L"USER"), std::wstring(31, L'x')}) {
    EXPECT_FALSE(rights_.IsValid(nobody)) << nobody;
  }
  for (const std::wstring& nobody :
       {std::wstring(), std::wstring(L"  "), std::wstring(L"*"), std::wstring(L"USER*"),
        L"USER" + std::wstring(26, L'*'), std::wstring(L"MANAGER*")}) {
    EXPECT_FALSE(rights_.IsValid(nobody)) << nobody;
    EXPECT_FALSE(rights_.IsUserAllowedAccess(nobody, Access::kBankRecord)) << nobody;
    EXPECT_FALSE(rights_.AddUser(nobody)) << nobody;
  }
  EXPECT_EQ(access.size(), 10);
  // Nor is a user found as long as it cannot be told how their name is padded.
  engine_->faults().FailFrom(5, false);  // the value of NAME, once the file is open
  EXPECT_FALSE(rights_.IsValid(L"USER1"));
}

// Whatever fails: not with anything of the first user's.
TEST_F(AccessRightsTest, AddsAUserOnceWithEveryFieldBlank) {
  simulator::Company& company = engine_->company();
  company.Parse(L"AccessData",
                "NAME:text(30)\tPASSWORD:text(9)\tBANK_RECORD:integer8\tA:integer16\tB:long\t"
                "C:double\tD:currency\tE:date\tF:boolean\n"
                "ANN\tSecret\t1\t1\t1\t1\t1\t2026-11-21\tyes\n",
                "AccessData.table");
  const simulator::Table& access = *company.Find(L"AccessData");
  EXPECT_TRUE(rights_.AddUser(L"ann"));
  EXPECT_FALSE(rights_.AddUser(std::wstring(31, L'x'))) << "the engine refuses it";
  EXPECT_EQ(access.size(), 1);
  std::wstring user;
  bool failed = true;
  for (std::int64_t n = 1; failed; ++n) {
    const std::int32_t before = access.size();
    user = L"User " + std::to_wstring(n);
    engine_->faults().FailFrom(n, false);
    const bool added = rights_.AddUser(user);
    failed = engine_->faults().failed() > 0;
    EXPECT_EQ(access.size(), before + added) << n;
    std::wstring record;
    for (std::size_t column = 1; column < access.columns().size(); ++column) {
      record += L"|" + access.Cell(access.size(), column).ToText();
    }
    EXPECT_TRUE(!added || record == L"||0|0|0|0|0|1899-12-31|False") << n << ToUtf8(record);
  }
  engine_->faults().Reset();
  EXPECT_TRUE(rights_.IsUserAllowedAccess(user, Access::kBankRecord));
}

}  // namespace
}  // namespace ard::users
