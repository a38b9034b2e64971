#include "users/access_rights.h"

#include "simulator/company.h"
#include "tests/core/company_test.h"

namespace ard::users {
namespace {

using simulator::CompanyBuilder;

class AccessRightsTest : public testing::CompanyTest {
 protected:
  AccessRights rights_{environment_};
};

// Nor is a user found as long as it cannot be told how their name is padded.
TEST_F(AccessRightsTest, NobodyIsFoundWithoutTheLengthOfNames) {
  CompanyBuilder company;
  Open(company.Record(L"AccessData", L"NAME=USER1"), rights_);
  engine_->faults().FailFrom(5, false);  // the value of NAME, once the file is open
  EXPECT_FALSE(rights_.IsValid(L"USER1"));
  EXPECT_TRUE(rights_.IsValid(L"USER1"));
}

// Whatever fails: not with anything of the first user's.
TEST_F(AccessRightsTest, AddsAUserOnceWithEveryFieldBlank) {
  CompanyBuilder builder;
  Open(builder, rights_);
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
