#include "host_database/odbc_connection.h"
#include "settings/general.h"
#include "tests/core/company_test.h"

namespace ard::settings {
namespace {

using dialogs::UserListDialog;
using host_database::OdbcConnection;

class CurrentUsersTest : public testing::CompanyTest {};

TEST_F(CurrentUsersTest, WhatOthersDoMeanwhileIsSeenAfterADeletionAndARefresh) {
  const auto database = std::make_shared<OdbcConnection>(L"Driver=SQLite3;Database=:memory:");
  database->Execute(
      L"CREATE TABLE CurrentUsers (ID INTEGER, UserName TEXT, UniqueID TEXT,"
      L" Product TEXT)");
  const auto log_on = [&](const wchar_t* values) {
    database->Execute(L"INSERT INTO CurrentUsers VALUES (" + std::wstring(values) + L")");
  };
  for (const wchar_t* user : {L"7, 'ANN', 'U1'", L"8, 'BOB', 'U2'", L"9, 'EVE', 'U3'"}) {
    log_on((std::wstring(user) + L", 'Manufacturing'").c_str());
  }
  General general(environment_);
  simulator::CompanyBuilder company;
  Open(company, general);
  general.context().database = database;
  environment_.AnswerUserList([&](UserListDialog& dialog) {
    dialog.TabClick(UserListDialog::Tab::kHost);
    EXPECT_EQ(Keys(dialog.list()), (testing::Texts{L"ANN", L"BOB", L"EVE"}));
    database->Execute(L"DELETE FROM CurrentUsers WHERE ID=8");
    dialog.list().SelectItem(2);
    dialog.DeleteClick();
    EXPECT_EQ(Keys(dialog.list()), (testing::Texts{L"ANN", L"EVE"})) << "gone already";
    log_on(L"11, 'New', 'u5', 'Manufacturing'");
    dialog.RefreshClick();
    EXPECT_EQ(Keys(dialog.list()), (testing::Texts{L"ANN", L"EVE", L"NEW"}));
  });
  general.ShowUserList(true);
  EXPECT_EQ(database->open_recordsets(), 0);
}

}  // namespace
}  // namespace ard::settings
