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
#include "tests/windows/window_driver.h"
#include "windows/machine/windows_environment.h"

namespace ard::windows {
namespace {

using dialogs::LogonDialog;
using dialogs::UserListDialog;
using testing::Descendant;
using testing::Eventually;
using testing::Press;
using testing::PressAll;
using testing::Type;
using testing::View;

class UsersWindowTest : public ::testing::Test {
 protected:
  UsersWindowTest() { context_.app_name = L"Manufacturing"; }

  template <class Dialog, class Act>
  void Show(const wchar_t* title, Dialog& dialog, Act act) {
    host_.Activate();
    host_.Drive(
        title, [&] { environment_.Show(dialog); }, act);
    EXPECT_FALSE(dialog.visible());
    EXPECT_TRUE(host_.focus_returned());
  }

  HWND FocusWindow() const {
    HWND focus = nullptr;
    host_.Ask([&] { focus = GetFocus(); });
    return focus;
  }

  testing::Host host_;
  WindowsEnvironment environment_{GetModuleHandleW(nullptr)};
  Context context_{environment_};
};

class LogonWindowTest : public UsersWindowTest {
 protected:
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
    Type(L"Ann");
    Press({VK_TAB});
    ASSERT_TRUE(host_.Settle());
    const HWND password = FocusWindow();
    EXPECT_TRUE(GetWindowLongW(password, GWL_STYLE) & ES_PASSWORD);
    Type(L"wrong");
    Press({VK_RETURN});
    ASSERT_TRUE(host_.Settle());
    EXPECT_EQ(FocusWindow(), name) << "refused, it stays open";
    Type(L"Bob");  // over what is selected
    Press({VK_MENU, 'R'});
    Press({VK_MENU, 'P'});
    Type(L"right");
    Press({VK_RETURN});
    EXPECT_TRUE(Eventually([&] { return !IsWindow(window); }));
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
    Press({VK_ESCAPE});
  });
  EXPECT_FALSE(dialog.result());
  EXPECT_TRUE(tried_.empty());
}

TEST_F(LogonWindowTest, TheCompanysPasswordIsAskedForAlone) {
  LogonDialog dialog(context_, LogonDialog::Form::kCompanyPassword, Logon());
  Show(L"Company Password", dialog, [&](HWND window) {
    EXPECT_EQ(Texts(window), L"[Welcome to Manufacturing.][&Password:][][OK][Cancel]");
    Type(L"right");
    Press({VK_RETURN});
  });
  EXPECT_TRUE(dialog.result());
  EXPECT_EQ(tried_, std::vector<std::wstring>{L"MANAGER/right"});
}

class UserListWindowTest : public UsersWindowTest {
 protected:
  UserListWindowTest() {
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
    Press({VK_CONTROL, VK_TAB});
    ASSERT_TRUE(host_.Settle());
    const View logons(window);
    EXPECT_NE(logons.list, accounts.list);
    EXPECT_EQ(Names(logons), L"ANN BOB CAT ");
    EXPECT_EQ(FocusWindow(), logons.list);
    PressAll({VK_HOME, VK_DOWN});
    Press({VK_MENU, 'D'});
    ASSERT_TRUE(host_.Settle());
    EXPECT_EQ(Names(logons), L"ANN CAT ");
    host_.Ask([&] {
      database_->Execute(L"INSERT INTO CurrentUsers VALUES (4, 'Dan', 'u4', 'Manufacturing')");
    });
    Press({VK_MENU, 'R'});
    ASSERT_TRUE(host_.Settle());
    EXPECT_EQ(Names(logons), L"ANN CAT DAN ");
    Press({VK_ESCAPE});
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
      Press({VK_ESCAPE});
    });
  }
}

TEST_F(UsersWindowTest, AsksWhatToDo) {
  const struct {
    WORD key;
    Choice choice;
  } cases[] = {{'A', Choice::kAbort}, {'R', Choice::kRetry}, {'I', Choice::kIgnore}};
  for (const auto& c : cases) {
    host_.Activate();
    Choice choice = c.choice == Choice::kAbort ? Choice::kRetry : Choice::kAbort;
    host_.Drive(
        L"A question", [&] { choice = environment_.AskWhatToDo(L"What?", L"A question"); },
        [&](HWND) { Press({c.key}); });
    EXPECT_EQ(choice, c.choice);
  }
}

}  // namespace
}  // namespace ard::windows
