// The logon dialog's window, the user list's and the box that asks what to do, worked by keys.

// clang-format off
#include <windows.h>  // before any other header of the system
#include <commctrl.h>
// clang-format on

#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <vector>

#include "dialogs/logon_dialog.h"
#include "dialogs/user_list_dialog.h"
#include "host_database/odbc_connection.h"
#include "simulator/testing/company_builder.h"
#include "tests/windows/dialog_view.h"
#include "tests/windows/window_test.h"

namespace ard::windows {
namespace {

using dialogs::LogonDialog;
using dialogs::UserListDialog;
using testing::Descendant;
using testing::View;

class LogonWindowTest : public testing::WindowTest {
 protected:
  LogonWindowTest() { context_.app_name = L"Manufacturing"; }

  LogonDialog::Logon Logon() {
    return [this](const std::wstring& name, const std::wstring& password) {
      tried_.push_back(name + L"/" + password);
      return password == L"right";
    };
  }
  static std::wstring Texts(HWND window) {
    std::wstring texts;
    for (HWND child = GetWindow(window, GW_CHILD); child; child = GetWindow(child, GW_HWNDNEXT)) {
      texts += L"[" + testing::TextOf(child) + L"]";
    }
    return texts;
  }

  std::vector<std::wstring> tried_;
};

TEST_F(LogonWindowTest, AUserLogsOnByKeysAlone) {
  LogonDialog dialog(context_, LogonDialog::Form::kUserDetails, Logon());
  dialog.SetCompany(L"Acme & Sons");
  Show(L"Logon", dialog, [&](HWND window) {
    EXPECT_EQ(Texts(window),
              L"[Welcome to Manufacturing.][Company:][Acme & Sons][][User &name:][][&Password:][]"
              L"[&Remember my user name][OK][Cancel][&Help]");
    const HWND name = FocusWindow();
    Keys(L"Ann{Tab}");
    const HWND password = FocusWindow();
    EXPECT_TRUE(GetWindowLongW(password, GWL_STYLE) & ES_PASSWORD);
    Keys(L"wrong{Enter}");
    EXPECT_EQ(FocusWindow(), name) << "refused, it stays open";
    Keys(L"Bob{Alt+R}{Alt+P}right{Enter}");  // over what is selected
    ExpectClosed(window);
  });
  EXPECT_EQ(tried_, (std::vector<std::wstring>{L"Ann/wrong", L"Bob/right"}));
  EXPECT_TRUE(dialog.result());
  EXPECT_TRUE(dialog.remember());
  EXPECT_EQ(dialog.name(), L"Bob");
}

TEST_F(LogonWindowTest, WhatIsRememberedIsFilledIn) {
  context_.app_name = L"Multi";
  LogonDialog dialog(context_, LogonDialog::Form::kUserDetails, Logon());
  dialog.Remember(L"Ann");
  Show(L"Logon", dialog, [&](HWND window) {
    EXPECT_EQ(Texts(window),
              L"[Welcome to Multi.][User &name:][Ann][&Password:][][&Remember my user name]"
              L"[OK][Cancel][&Help]");
    EXPECT_TRUE(GetWindowLongW(FocusWindow(), GWL_STYLE) & ES_PASSWORD);
    const HWND box = FindWindowExW(window, nullptr, WC_BUTTONW, L"&Remember my user name");
    EXPECT_EQ(SendMessageW(box, BM_GETCHECK, 0, 0), BST_CHECKED);
    Keys(L"{Esc}");
  });
  EXPECT_FALSE(dialog.result());
  EXPECT_TRUE(tried_.empty());
}

TEST_F(LogonWindowTest, TheCompanysPasswordIsAskedForAlone) {
  LogonDialog dialog(context_, LogonDialog::Form::kCompanyPassword, Logon());
  Show(L"Company Password", dialog, [&](HWND window) {
    EXPECT_EQ(Texts(window), L"[Welcome to Manufacturing.][&Password:][][OK][Cancel]");
    Keys(L"right{Enter}");
  });
  EXPECT_TRUE(dialog.result());
  EXPECT_EQ(tried_, std::vector<std::wstring>{L"MANAGER/right"});
}

class UserListWindowTest : public testing::WindowTest {
 protected:
  UserListWindowTest() {
    context_.app_name = L"Manufacturing";
    simulator::CompanyBuilder company;
    for (const wchar_t* name : {L"ann", L"bob"}) {
      company.Record(L"QueueData", {{L"LOGON_NAME", name}, {L"STATION_NAME", L"pc"}});
    }
    engine_ = company.Build();
    context_.workspace = engine_->workspace();
    database_->Execute(
        L"CREATE TABLE CurrentUsers (ID INTEGER, UserName VARCHAR(30), UniqueID VARCHAR(30), "
        L"Product VARCHAR(30))");
    database_->Execute(
        L"INSERT INTO CurrentUsers VALUES (1, 'Ann', 'u1', 'Manufacturing'), "
        L"(2, 'Bob', 'u2', 'Manufacturing'), (3, 'Cat', 'u3', 'Manufacturing')");
    context_.database = database_;
  }

  static std::wstring Names(const View& view) {
    std::wstring names;
    for (int row = 0; row < view.rows(); ++row) names += view.Cell(row, 0) + L" ";
    return names;
  }

  std::unique_ptr<simulator::Simulator> engine_;
  std::shared_ptr<host_database::OdbcConnection> database_ =
      std::make_shared<host_database::OdbcConnection>(L"Driver=SQLite3;Database=:memory:");
};

TEST_F(UserListWindowTest, TheManagerDeletesALogonByKeys) {
  UserListDialog dialog(context_, /*manager=*/true);
  Show(L"User List", dialog, [&](HWND window) {
    const View accounts(window);
    EXPECT_EQ(Names(accounts), L"ANN BOB ");
    EXPECT_EQ(accounts.Cell(1, 1), L"PC");
    EXPECT_EQ(FocusWindow(), accounts.list);
    Keys(L"{Ctrl+Tab}");
    const View logons(window);
    EXPECT_NE(logons.list, accounts.list);
    EXPECT_EQ(Names(logons), L"ANN BOB CAT ");
    EXPECT_EQ(FocusWindow(), logons.list);
    Keys(L"{Home}{Down}{Alt+D}");
    EXPECT_EQ(Names(logons), L"ANN CAT ");
    host_.Ask([&] {
      database_->Execute(L"INSERT INTO CurrentUsers VALUES (4, 'Dan', 'u4', 'Manufacturing')");
    });
    Keys(L"{Alt+R}");
    EXPECT_EQ(Names(logons), L"ANN CAT DAN ");
    Keys(L"{Esc}");
  });
}

TEST_F(UserListWindowTest, ForOthersTheListTakesTheButtonsPlace) {
  LONG with_button = 0;
  for (const bool manager : {true, false}) {
    UserListDialog dialog(context_, manager);
    dialog.TabClick(UserListDialog::Tab::kHost);
    Show(L"User List", dialog, [&](HWND window) {
      const View view(window);
      EXPECT_EQ(FindWindowExW(window, nullptr, WC_BUTTONW, L"&Delete") != nullptr, manager);
      const HWND tabs = Descendant(window, WC_TABCONTROLW);
      const LONG below = testing::RectOf(tabs).bottom - testing::RectOf(view.frame).bottom;
      if (manager) {
        with_button = below;
      } else {
        EXPECT_LT(below, with_button);
      }
      Keys(L"{Esc}");
    });
  }
}

using QuestionTest = testing::WindowTest;

TEST_F(QuestionTest, AsksWhatToDo) {
  const struct {
    const wchar_t* key;
    Choice choice;
  } cases[] = {{L"{A}", Choice::kAbort}, {L"{R}", Choice::kRetry}, {L"{I}", Choice::kIgnore}};
  for (const auto& c : cases) {
    Choice choice = c.choice == Choice::kAbort ? Choice::kRetry : Choice::kAbort;
    Work(
        L"A question", [&] { choice = environment_.AskWhatToDo(L"What?", L"A question"); },
        [&](HWND) { Keys(c.key); });
    EXPECT_EQ(choice, c.choice);
  }
}

}  // namespace
}  // namespace ard::windows
