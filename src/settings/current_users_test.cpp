#include "host_database/odbc_connection.h"
#include "settings/general.h"
#include "tests/core/company_test.h"

namespace ard::settings {
namespace {

using database::Cursor;
using database::Lock;
using dialogs::UserListDialog;
using host_database::OdbcConnection;
using simulator::CompanyBuilder;
using Tab = UserListDialog::Tab;

class CurrentUsersTest : public testing::CompanyTest {
 protected:
  CurrentUsersTest() {
    general_.context().database = database_;
    CompanyBuilder company;
    const auto slot = [&](const wchar_t* name, const wchar_t* station, bool empty = false) {
      company.Record(L"QueueData",
                     {{L"LOGON_NAME", name}, {L"STATION_NAME", station}, {L"EMPTY_FLAG", empty}});
    };
    slot(L" ann ", L" pc1 ");
    slot(L"GONE", L"PC9", /*empty=*/true);
    slot(L"  ", L"PC8");
    slot(L"Bob", L"PC2");
    slot(L"EVE", L"PC3");
    Open(company, general_);
    database_->Execute(
        L"CREATE TABLE CurrentUsers (ID INTEGER, UserName VARCHAR(30), UniqueID VARCHAR(30), "
        L"Product VARCHAR(30))");
    database_->Execute(
        L"INSERT INTO CurrentUsers VALUES (7, ' eve', 'u3 ', 'Manufacturing'),"
        L"(8, 'Ann', 'u1', 'Manufacturing'), (9, 'Bob', 'u2', 'Stock'),"
        L"(10, 'Ann', 'u4', 'Manufacturing')");
  }
  void TearDown() override {
    CompanyTest::TearDown();
    EXPECT_EQ(database_->open_recordsets(), 0);
  }

  static std::wstring Shown(dialogs::ListModel& list) {
    std::wstring text;
    for (const dialogs::Row& row : list.rows()) text += row.text + L"|";
    return text;
  }
  // The IDs that the table still has.
  std::wstring Ids() {
    std::wstring ids;
    const auto rows = database_->OpenRecordset(L"SELECT ID FROM CurrentUsers ORDER BY ID",
                                               Cursor::kForwardOnly, Lock::kReadOnly);
    for (; !rows->Eof(); rows->MoveNext()) ids += rows->GetValue(0).ToText() + L" ";
    return ids;
  }

  General general_{environment_};
  std::shared_ptr<OdbcConnection> database_ =
      std::make_shared<OdbcConnection>(L"Driver=SQLite3;Database=:memory:");
};

TEST_F(CurrentUsersTest, CountsWhoIsLoggedOnAndNamesTheFirstOther) {
  EXPECT_EQ(general_.GetNumActiveUsers(), 3);
  for (const auto& [own, other] : {std::pair(L" ann  ", L"Bob PC2"), {L"Bob", L"ann pc1"}}) {
    std::wstring name = own;
    std::wstring machine = L"before";
    EXPECT_EQ(general_.GetNumActiveUsersInclDet(name, machine), 3);
    EXPECT_EQ(name + L" " + machine, other);
  }
  CompanyBuilder alone;
  Open(alone.Record(L"QueueData", L"LOGON_NAME=ANN").Record(L"QueueData", {}), general_);
  std::wstring name = L" ANN ";
  std::wstring machine = L"before";
  EXPECT_EQ(general_.GetNumActiveUsersInclDet(name, machine), 1);
  EXPECT_EQ(name, L" ANN ");
  EXPECT_EQ(machine, L"before");
}

TEST_F(CurrentUsersTest, TheManagerDeletesExactlyTheLogonSelected) {
  environment_.AnswerUserList([&](UserListDialog& dialog) {
    EXPECT_EQ(Shown(dialog.list()), L"ANN\tPC1|BOB\tPC2|EVE\tPC3|");
    dialog.list().SelectItem(2);
    dialog.DeleteClick();
    EXPECT_EQ(Ids(), L"7 8 9 10 ") << "a selection in the other list does not count";
    EXPECT_EQ(environment_.TakeMessages().size(), 1u);

    dialog.TabClick(Tab::kHost);
    EXPECT_EQ(Shown(dialog.list()), L"EVE\tU3|ANN\tU1|ANN\tU4|");
    dialog.list().SelectItem(3);
    dialog.DeleteClick();
    EXPECT_EQ(Ids(), L"7 8 9 ");
    EXPECT_EQ(Shown(dialog.list()), L"EVE\tU3|ANN\tU1|");
    database_->Execute(L"DELETE FROM CurrentUsers WHERE ID=8");
    dialog.list().SelectItem(2);
    dialog.DeleteClick();
    EXPECT_EQ(Ids(), L"7 9 ") << "gone already";
    database_->Execute(L"INSERT INTO CurrentUsers VALUES (11, 'New', 'u5', 'Manufacturing')");
    dialog.RefreshClick();
    EXPECT_EQ(Shown(dialog.list()), L"EVE\tU3|NEW\tU5|");
  });
  general_.ShowUserList(true);
}

TEST_F(CurrentUsersTest, OthersOnlyLook) {
  environment_.AnswerUserList([&](UserListDialog& dialog) {
    EXPECT_FALSE(dialog.can_delete());
    EXPECT_EQ(dialog.host_list_height(), 3120);
    dialog.TabClick(Tab::kHost);
    dialog.list().SelectItem(1);
    dialog.DeleteClick();
    EXPECT_EQ(Ids(), L"7 8 9 10 ");
  });
  general_.ShowUserList(false);
  EXPECT_TRUE(environment_.messages().empty());
}

}  // namespace
}  // namespace ard::settings
